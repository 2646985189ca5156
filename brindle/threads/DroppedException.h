#pragma once

#include <brindle/Export.h>

#include <exception>

namespace brindle::threads {

/// Called with each exception that leaves a posted function and that the executor drops, with the
/// name that the executor was made with; the name of an adaptor is empty.
///
///     threads::SetDroppedExceptionHook([](std::exception_ptr const& exception, char const* name) {
///         CountFailure(name);
///     });
///
/// It runs on the thread that ran the function, so several threads may call it at once. What it
/// throws itself is dropped.
using DroppedExceptionHook = void (*)(std::exception_ptr const& inException,
                                      char const* inExecutorName);

/// Installs the hook; null removes it. Returns the former one. Any thread may call.
BRN_API DroppedExceptionHook SetDroppedExceptionHook(DroppedExceptionHook inHook) noexcept;

/// Installs a hook for a scope, and at its end the former one:
///
///     threads::ScopedDroppedExceptionHook const installed(&CountFailure);
class ScopedDroppedExceptionHook {
public:
    /// Installs the hook; null removes any.
    explicit ScopedDroppedExceptionHook(DroppedExceptionHook inHook) noexcept
        : mFormer(SetDroppedExceptionHook(inHook)) {}
    ScopedDroppedExceptionHook(ScopedDroppedExceptionHook const&) = delete;
    ScopedDroppedExceptionHook& operator=(ScopedDroppedExceptionHook const&) = delete;
    ~ScopedDroppedExceptionHook() { SetDroppedExceptionHook(mFormer); }

private:
    DroppedExceptionHook const mFormer;
};

} // namespace brindle::threads
