#pragma once

#include <brindle/console/RemoteConsole.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <optional>
#include <string>

namespace brindle::console {

/// The part of a socket's name that stands for the name of a program, in UTF-8: control characters,
/// NUL, "/", "%" and a dot at the beginning are written as "%" and two hexadecimal digits. A long
/// name is cut, so that the whole is a valid name of a socket. No text gives an empty result.
std::string EscapedProgramName(UTF16String const& inName);

/// NAME.PID, where NAME is the escaped name of the program.
std::string SocketName(UTF16String const& inName, std::uint32_t inProcessId);

/// The program behind a name of a socket; nothing if that is not made by `SocketName`.
std::optional<ListeningProgram> ProgramOf(std::string const& inSocketName);

} // namespace brindle::console
