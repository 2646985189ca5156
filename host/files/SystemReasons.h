#pragma once

#include <string>

namespace brindle::host {

// Why the system refused a file, for a diagnostic: "permission denied", "is a directory". Each asks
// the system again, and changes nothing. Native paths.

/// After the file could not be opened or read.
std::string WhyUnreadable(std::string const& inPath);

/// After the file could not be made or replaced.
std::string WhyUnwritable(std::string const& inPath);

} // namespace brindle::host
