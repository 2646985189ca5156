#pragma once

#include <brindle/filesupport/File.h>

#include <stdexcept>
#include <string>

namespace brindle::host {

/// A file cannot be read as what it is to be; `what()` says why.
class unreadable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Why a file could not be opened for reading.
std::string WhyUnreadable(filesupport::File const& inFile);

} // namespace brindle::host
