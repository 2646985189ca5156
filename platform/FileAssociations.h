#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

/// The path of the program with which the user's desktop opens files of an extension (".txt", with
/// its dot): the most preferred one that is installed. Reads the desktop's files anew; what is not
/// of their form, or is larger than such files are, counts as not there. Error: 2 no such program.
Result<UTF16String> FindApplication(UTF16String const& inExtension);

} // namespace brindle::platform
