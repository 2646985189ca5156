#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::threads {

/// Runs `inRoutine` unless it has been run for this flag, which is 0 before the first call and 1
/// after the routine has returned. Callers that come meanwhile wait; what the routine did is
/// visible to every caller. If the routine throws, the exception passes to that caller, and a later
/// call runs it again. Any thread may call; a routine that calls for its own flag waits for itself.
BRN_API void CallOnce(void (*inRoutine)(), std::int32_t& ioFlag);

} // namespace brindle::threads
