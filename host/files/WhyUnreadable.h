#pragma once

#include <brindle/filesupport/File.h>

#include <string>

namespace brindle::host {

/// Why a file could not be opened, in the words of a diagnostic.
std::string WhyUnreadable(filesupport::File const& inFile);

} // namespace brindle::host
