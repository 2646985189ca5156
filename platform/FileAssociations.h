#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

/// The path of the program with which the user's desktop opens files with an extension (".txt",
/// with its dot): the most preferred one that is installed. Reads the desktop's files at every
/// call; a file that is malformed, or far larger than such files are, counts as missing. Error: 2
/// there is no such program.
Result<UTF16String> FindApplication(UTF16String const& inExtension);

} // namespace brindle::platform
