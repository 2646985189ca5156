#pragma once

#include <boost/noncopyable.hpp>

#include <cstddef>

namespace brindle::threads {

/// Calls that the current thread is in on behalf of an owner, as long as it lives. The owner finds
/// out by it that it is being destroyed, or waited for, by one of its own calls.
class CallFrame : boost::noncopyable {
public:
    explicit CallFrame(void const* inOwner, std::size_t inCount = 1) noexcept;
    ~CallFrame();

    /// How many calls of this owner the current thread is in.
    [[nodiscard]] static std::size_t CountOf(void const* inOwner) noexcept;

private:
    void const* const mOwner;
    std::size_t const mCount;
    CallFrame const* const mOuter;
};

} // namespace brindle::threads
