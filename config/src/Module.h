#pragma once

namespace brindle::config {

/// The handle of the loaded library, from the end of its load to the start of its unload; null
/// outside, and in a program that links the library statically it is the program's own.
void* ModuleHandle() noexcept;

} // namespace brindle::config
