#include "host/files/RunInOrder.h"

#include <brindle/threads/AsyncThreadedExecutor.h>

#include <boost/thread/exceptions.hpp>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace brindle::host {

namespace {

using Step = std::function<void(std::size_t)>;

using Pool = boost::shared_ptr<threads::AsyncThreadedExecutor>;

/// Null if the system refuses so many threads; that has been reported then.
Pool MakePool(std::size_t inThreadCount) {
    try {
        return threads::CreateAsyncThreadedExecutor("worker", static_cast<int>(inThreadCount),
                                                    threads::kThreadPriorityNormal);
    } catch (boost::thread_resource_error const&) {
        return {};
    }
}

class OrderedRun {
public:
    OrderedRun(std::size_t inCount, Step const& inCompute, Step const& inDeliver, Pool inPool)
        : mCount(inCount), mCompute(inCompute), mDeliver(inDeliver), mPool(std::move(inPool)) {}

    /// Waits for the workers, because they call into this object.
    ~OrderedRun() {
        try {
            mPool->Shutdown();
            mPool->Synchronize();
        } catch (std::bad_alloc const&) {
            // `Run` has waited for all calls into this object; the workers end by themselves.
        }
    }

    void Run() {
        std::unique_lock lock(mMutex);
        try {
            PostMore();
        } catch (...) {
            mFailure = std::current_exception();
        }
        mEnded.wait(lock, [this] { return mUnderWay == 0; });
        if (mFailure) {
            std::rethrow_exception(mFailure);
        }
    }

private:
    /// Posts as many indices as may be in progress. Call it with the mutex locked.
    void PostMore() {
        while (!mFailure && mPosted < std::min(mCount, mDelivered + kMostAhead)) {
            mPool->Post([this, index = mPosted] { Work(index); }, 0);
            ++mPosted;
            ++mUnderWay;
        }
    }

    void Work(std::size_t inIndex) {
        std::unique_lock lock(mMutex);
        try {
            if (!mFailure) {
                lock.unlock();
                mCompute(inIndex);
                lock.lock();
                mIsComputed[inIndex % kMostAhead] = true;
                DeliverWhatIsNext(lock);
            }
        } catch (...) {
            if (!lock.owns_lock()) {
                lock.lock();
            }
            if (!mFailure) {
                mFailure = std::current_exception();
            }
        }
        if (--mUnderWay == 0) {
            mEnded.notify_one();
        }
    }

    /// Delivers the next result if it is computed, and then those that follow it. Clearing its flag
    /// claims a result, and the next one is not looked at before it is delivered, so only one
    /// thread delivers at a time.
    void DeliverWhatIsNext(std::unique_lock<std::mutex>& ioLock) {
        while (!mFailure && mIsComputed[mDelivered % kMostAhead]) {
            mIsComputed[mDelivered % kMostAhead] = false;
            ioLock.unlock();
            mDeliver(mDelivered);
            ioLock.lock();
            ++mDelivered;
            PostMore();
        }
    }

    std::size_t const mCount;
    Step const& mCompute;
    Step const& mDeliver;
    std::mutex mMutex;
    std::condition_variable mEnded;
    std::array<bool, kMostAhead> mIsComputed{}; // and not claimed for delivery yet
    std::size_t mPosted = 0;
    std::size_t mUnderWay = 0;
    std::size_t mDelivered = 0; // only the delivering thread writes it, and may read it unlocked
    std::exception_ptr mFailure;
    Pool const mPool;
};

} // namespace

void RunInOrder(std::size_t inCount, std::uint32_t inJobs, Step const& inCompute,
                Step const& inDeliver) {
    std::size_t const jobs =
        std::min<std::size_t>(inCount, inJobs == 0 ? std::thread::hardware_concurrency() : inJobs);
    if (Pool const pool = jobs > 1 ? MakePool(jobs) : nullptr) {
        return OrderedRun(inCount, inCompute, inDeliver, pool).Run();
    }
    for (std::size_t index = 0; index < inCount; ++index) {
        inCompute(index);
        inDeliver(index);
    }
}

} // namespace brindle::host
