#pragma once

namespace brindle::config {

/// The handle of the library from the end of its load to the start of its unload, otherwise null.
/// In a program that links the library statically it is the handle of the program.
void* ModuleHandle() noexcept;

} // namespace brindle::config
