#pragma once

#include <brindle/debug/Trace.h>

namespace brindle::debug {

/// Installs a master trace handler for a scope, and at its end the former one:
///
///     RecordingHandler trace; // derives from TraceHandler
///     debug::ScopedTraceHandler const installed(trace);
///
/// The handler outlives every thread's use of it.
class ScopedTraceHandler {
public:
    /// Takes no ownership.
    explicit ScopedTraceHandler(TraceHandler& ioHandler) noexcept
        : mFormer(GetMasterTraceHandler()) {
        InstallMasterTraceHandler(&ioHandler);
    }
    ScopedTraceHandler(ScopedTraceHandler const&) = delete;
    ScopedTraceHandler& operator=(ScopedTraceHandler const&) = delete;
    ~ScopedTraceHandler() { InstallMasterTraceHandler(mFormer); }

private:
    TraceHandler* const mFormer;
};

} // namespace brindle::debug
