#pragma once

namespace brindle::utility {

/// What a lock-free structure calls between its atomic steps: nothing. The structures take this as
/// a template parameter; tests replace it by policies that halt, delay or count threads at these
/// places.
struct NoPause {
    /// Between two atomic steps, where another thread may come in.
    static void Pause() noexcept {}
    /// Before the thread blocks until another one wakes it.
    static void BeforeSleep() noexcept {}
};

} // namespace brindle::utility
