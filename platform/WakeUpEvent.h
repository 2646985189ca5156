#pragma once

namespace brindle::platform {

/// A descriptor that any thread makes readable, for a loop that watches descriptors. Any thread may
/// call any operation; none of them blocks, but for `Await`.
class WakeUpEvent {
public:
    WakeUpEvent() noexcept; ///< the descriptor is not readable
    WakeUpEvent(WakeUpEvent const&) = delete;
    WakeUpEvent& operator=(WakeUpEvent const&) = delete;
    ~WakeUpEvent();

    /// For `poll` and the like. -1 if the system had none: then the operations below do nothing.
    int Descriptor() const noexcept { return mDescriptor; }

    /// Makes the descriptor readable. What the caller did before is visible to the thread whose
    /// `Reset` or `Await` finds it so.
    void Set() const noexcept;
    /// Makes it unreadable.
    void Reset() const noexcept;
    /// Blocks until it is readable.
    void Await() const noexcept;

private:
    int const mDescriptor;
};

} // namespace brindle::platform
