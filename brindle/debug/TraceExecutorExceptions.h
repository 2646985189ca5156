#pragma once

#include <brindle/Export.h>

namespace brindle::debug {

/// Chooses whether exceptions that leave a function posted to an executor are traced; initially
/// they are not. They are messages of volume 6 of the category "Executors", so that a developer
/// hears of them after raising that category above its default of 5. Where nothing is thrown this
/// costs nothing. Any thread may call.
BRN_API void TraceExecutorExceptions(bool inTrace) noexcept;

} // namespace brindle::debug
