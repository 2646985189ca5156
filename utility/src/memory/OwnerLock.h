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

/// A lock that is biased towards one thread, its owner, which locks and unlocks it without an
/// atomic read-modify-write while no other thread wants it. The other threads, called visitors, pay
/// for that with a system call. docs/concurrency/small-block-allocator.md explains why it is
/// correct.
template <typename Steps>
class BasicOwnerLock {
public:
    BasicOwnerLock() = default;
    BasicOwnerLock(BasicOwnerLock const&) = delete;
    BasicOwnerLock& operator=(BasicOwnerLock const&) = delete;

    /// For the owner. The lock is not recursive.
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
            WakeVisitors();
        }
    }

    /// Holds the lock in a thread other than the owner. That thread must not hold a lock of its
    /// own.
    class Visit {
    public:
        /// Waits until the owner has left the lock.
        explicit Visit(BasicOwnerLock& ioLock) : mLock(Announced(ioLock)), mMutex(ioLock.mMutex) {
            mLock.AwaitOwner();
        }
        Visit(Visit const&) = delete;
        Visit& operator=(Visit const&) = delete;
        // Not inlined, as compilers then warn of accesses that do not happen.
        __attribute__((noinline)) ~Visit() {
            // An owner that then sees no visitor has acquired what this one did. An owner that
            // still sees one takes the mutex, which orders the two.
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

    /// Before a fork: excludes all threads but the calling one, until one of the functions below
    /// ends that in the parent or in the child process.
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
        WakeVisitors();
        mByMutex.emplace(mMutex);
    }
    void WakeVisitors() {
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

    std::atomic<bool> mIsOwnerIn{false};                 // holds the lock without the mutex
    std::atomic<int> mVisitors{0};                       // those that hold the lock or wait for it
    std::optional<threads::FreezableMutexLock> mByMutex; // for the owner
    threads::FreezableMutex mMutex;
    Mutex mLeaving;
    Condition mHasLeft;
};

} // namespace brindle::utility
