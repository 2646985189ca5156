#pragma once

namespace brindle::threads {

/// What a lock calls as it goes through its steps: nothing. Tests put delays and signals in place
/// of it.
struct Undelayed {
    /// Between two atomic steps, where another thread may come in.
    static void Step() noexcept {}
    /// Before the caller sleeps until another thread wakes it.
    static void BeforeSleep() noexcept {}
};

} // namespace brindle::threads
