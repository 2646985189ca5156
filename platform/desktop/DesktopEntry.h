#pragma once

#include "platform/Errors.h"

#include <string>
#include <string_view>

namespace brindle::platform {

/// The link that a desktop entry describes. All text is UTF-8.
struct DesktopLink {
    std::string path; ///< absolute, in the system's form
    std::string name;
    std::string comment;
};

/// Parses the content of a file; any bytes are allowed. Error 13: not an entry of type Link, or one
/// that does not lead to a file of this machine.
Result<DesktopLink> ParseDesktopLink(std::string_view inBytes);

/// The installed application that a desktop entry describes, in bytes of the system.
struct DesktopApplication {
    std::string
        program; ///< the first word of its command line: a name to look up in PATH, or a path
    std::string witness; ///< the program whose presence shows that the application is installed;
                         ///< may be empty
};

/// Parses the content of a file; any bytes are allowed. Error 13: not an entry of type Application,
/// a hidden one, or one without a command.
Result<DesktopApplication> ParseDesktopApplication(std::string_view inBytes);

/// The content of the file. `inLink.path` is absolute.
std::string FormatDesktopLink(DesktopLink const& inLink);

} // namespace brindle::platform
