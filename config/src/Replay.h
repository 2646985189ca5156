#pragma once

#include <boost/core/noncopyable.hpp>

namespace brindle::config {

/// Says for as long as it lives whether the error that this thread is reporting is a replay.
class Replay : private boost::noncopyable {
public:
    explicit Replay(bool inIsReplay) noexcept : mFormer(S_isInProgress) {
        S_isInProgress = inIsReplay;
    }
    ~Replay() { S_isInProgress = mFormer; }

    static bool IsInProgress() noexcept { return S_isInProgress; }

private:
    static thread_local bool S_isInProgress;

    bool const mFormer;
};

} // namespace brindle::config
