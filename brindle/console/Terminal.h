#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::console {

/// True if a person at a terminal reads standard output, or standard error, of this process.
BRN_API bool OutputIsTerminal() noexcept;
BRN_API bool ErrorOutputIsTerminal() noexcept;

/// The columns of the terminal that standard error leads to; 80 if that is unknown.
BRN_API std::uint32_t ErrorOutputWidth() noexcept;

} // namespace brindle::console
