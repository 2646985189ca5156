#pragma once

#include "platform/Barrier.h"
#include "threads/src/locks/FreezableMutex.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/base/ThreadAnnotations.h"

#include <atomic>
#include <mutex>
#include <new>
#include <optional>

namespace brindle::utility {

/// A lock that one thread, its owner, takes and gives back without an atomic read-modify-write as
/// long as nobody else wants it. Visitors pay for that with a call of the system.
/// docs/concurrency/small-block-allocator.md tells why this is right.
template <typename Steps>
class BasicOwnerLock {
public:
    BasicOwnerLock() = default;
    BasicOwnerLock(BasicOwnerLock const&) = delete;
    BasicOwnerLock& operator=(BasicOwnerLock const&) = delete;

    /// For the owner, who does not hold the lock.
    void Lock() {
        mIsOwnerIn.store(true, std::memory_order_relaxed);
        platform::LightBarrier();
        Steps::Pause();
        if (mVisitors.load(std::memory_order_acquire) != 0) {
            LockByMutex();
        }
    }
    void Unlock() {
        if (mByMutex.has_value()) {
            mByMutex.reset();
            return;
        }
        mIsOwnerIn.store(false, std::memory_order_release);
        platform::LightBarrier();
        Steps::Pause();
        if (mVisitors.load(std::memory_order_relaxed) != 0) {
            TellVisitors();
        }
    }

    /// Holds the lock for another thread than the owner, which holds no such lock itself.
    class Visit {
    public:
        /// Waits until the owner is not in.
        explicit Visit(BasicOwnerLock& ioLock) : mLock(Announced(ioLock)), mMutex(ioLock.mMutex) {
            mLock.AwaitOwner();
        }
        Visit(Visit const&) = delete;
        Visit& operator=(Visit const&) = delete;
        __attribute__((
            noinline)) ~Visit() { // inlined, it looks to compilers as if it used too much
            // An owner that sees no visitor sees what this one did; another one has the mutex.
            mLock.mVisitors.fetch_sub(1, std::memory_order_release);
        }

    private:
        static BasicOwnerLock& Announced(BasicOwnerLock& ioLock) noexcept {
            ioLock.mVisitors.fetch_add(1, std::memory_order_relaxed);
            return ioLock;
        }

        BasicOwnerLock& mLock;
        threads::FreezableMutexLock mMutex;
    };

    /// Keeps everybody but the calling thread out, before the process is copied; and lets them in
    /// again, in the process and in its copy.
    void CloseForFork() BRN_NO_THREAD_SAFETY_ANALYSIS {
        mVisitors.fetch_add(1, std::memory_order_relaxed);
        mMutex.Freeze();
        AwaitOwner();
    }
    void OpenInParent() BRN_NO_THREAD_SAFETY_ANALYSIS {
        mMutex.Thaw();
        mVisitors.fetch_sub(1, std::memory_order_release);
    }
    void OpenInChild() { new (this) BasicOwnerLock; }

private:
    void LockByMutex() {
        mIsOwnerIn.store(false, std::memory_order_release);
        TellVisitors();
        mByMutex.emplace(mMutex);
    }
    void TellVisitors() {
        MutexLock const lock(mLeaving);
        mHasLeft.NotifyAll();
    }
    void AwaitOwner() {
        platform::HeavyBarrier();
        Steps::Pause();
        MutexLock lock(mLeaving);
        while (mIsOwnerIn.load(std::memory_order_acquire)) {
            mHasLeft.Wait(lock);
        }
    }

    std::atomic<bool> mIsOwnerIn{false};                 // and not by way of the mutex
    std::atomic<int> mVisitors{0};                       // those inside and those about to enter
    std::optional<threads::FreezableMutexLock> mByMutex; // the owner's
    threads::FreezableMutex mMutex;
    Mutex mLeaving;
    Condition mHasLeft;
};

} // namespace brindle::utility
