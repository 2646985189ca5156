#pragma once

#include <brindle/filesupport/File.h>

#include <string>

namespace brindle::host {

/// The reason, for a diagnostic, why a file could not be opened.
std::string WhyUnreadable(filesupport::File const& inFile);

} // namespace brindle::host
