#pragma once

#include "platform/Errors.h"

#include <string>
#include <string_view>

namespace brindle::platform {

/// A link as a desktop entry file tells it. All text is UTF-8.
struct DesktopLink {
    std::string path; ///< absolute, in the system's form
    std::string name;
    std::string comment;
};

/// Reads any bytes. Error 13: no entry of type Link, or one that leads to no file of this machine.
Result<DesktopLink> ParseDesktopLink(std::string_view inBytes);

/// An installed application as a desktop entry file tells it, in bytes of the system.
struct DesktopApplication {
    std::string program; ///< the first word of its command line: a name to look up, or a path
    std::string witness; ///< a program that is there if the application is; empty if none is told
};

/// Reads any bytes. Error 13: no entry of type Application, a hidden one, or one without a command.
Result<DesktopApplication> ParseDesktopApplication(std::string_view inBytes);

/// The content of the file. `inLink.path` is absolute.
std::string FormatDesktopLink(DesktopLink const& inLink);

} // namespace brindle::platform
