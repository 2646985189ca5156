#pragma once

#include <brindle/Export.h>

namespace brindle::console {

/// True if a person at a terminal reads standard output, or standard error, of this process.
BRN_API bool OutputIsTerminal() noexcept;
BRN_API bool ErrorOutputIsTerminal() noexcept;

} // namespace brindle::console
