#pragma once

#include "utility/src/base/ThreadAnnotations.h"

#include <boost/noncopyable.hpp>

#include <mutex>

namespace brindle::debug {

/// A mutex that its owner may lock again, known to Clang's analysis of locks. Locking allocates
/// nothing and reports nothing, so that also an error manager may trace. Locked through a
/// `ReentrantLock`.
class BRN_CAPABILITY("mutex") ReentrantMutex : boost::noncopyable {
public:
    ReentrantMutex() = default;

private:
    friend class ReentrantLock;

    std::recursive_mutex mMutex;
};

/// Holds the mutex for as long as it lives.
class BRN_SCOPED_CAPABILITY ReentrantLock : boost::noncopyable {
public:
    explicit ReentrantLock(ReentrantMutex& ioMutex) BRN_ACQUIRE(ioMutex) : mLock(ioMutex.mMutex) {}
    ~ReentrantLock() BRN_RELEASE() {}

private:
    std::lock_guard<std::recursive_mutex> mLock;
};

} // namespace brindle::debug
