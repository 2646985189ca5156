#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::threads {

/// Runs `inRoutine` unless it has been run for this flag. The flag is 0 before the first call, and
/// 1 after the routine has returned. Callers wait while it runs, and see what it did. If it throws,
/// the exception reaches the caller that ran it, and a later call runs it again. Any thread may
/// call; a routine that calls for its own flag waits forever.
///
///     static std::int32_t flag = 0;
///     CallOnce(&LoadTables, flag);
BRN_API void CallOnce(void (*inRoutine)(), std::int32_t& ioFlag);

} // namespace brindle::threads
