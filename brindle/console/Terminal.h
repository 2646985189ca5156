#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::console {

/// True if a person at a terminal types the standard input of this process.
BRN_API bool InputIsTerminal() noexcept;

/// True if a person at a terminal reads standard output, or standard error, of this process.
BRN_API bool OutputIsTerminal() noexcept;
BRN_API bool ErrorOutputIsTerminal() noexcept;

/// The columns of the terminal that standard error leads to; 80 if that is unknown.
BRN_API std::uint32_t ErrorOutputWidth() noexcept;

/// Keeps a file that is opened later from taking the place of a standard stream that was closed
/// when the process started: what is printed would end up in that file. Using such a stream still
/// fails. A program calls this first in `main`.
BRN_API void ReserveStandardStreams() noexcept;

} // namespace brindle::console
