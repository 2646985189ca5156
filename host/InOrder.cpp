#include "host/InOrder.h"

#include <brindle/threads/AsyncThreadedExecutor.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>

namespace brindle::host {

namespace {

using Step = std::function<void(std::size_t)>;

class OrderedRun {
public:
    OrderedRun(std::size_t inCount, std::uint32_t inJobs, Step const& inCompute,
               Step const& inDeliver)
        : mCount(inCount), mCompute(inCompute), mDeliver(inDeliver),
          mPool(threads::CreateAsyncThreadedExecutor("worker",
                                                     inJobs == 0 ? -1 : static_cast<int>(inJobs),
                                                     threads::kThreadPriorityNormal)) {}

    /// The workers call into this object, so it waits for their end.
    ~OrderedRun() {
        mPool->Shutdown();
        mPool->Synchronize();
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
    /// Under the lock: posts whatever may be under way.
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

    /// Whoever finds the next result computed takes it and delivers it, then the one behind it.
    /// Until it is delivered there is no next one, so nobody else delivers.
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
    std::array<bool, kMostAhead> mIsComputed{}; // and not taken yet
    std::size_t mPosted = 0;
    std::size_t mUnderWay = 0;
    std::size_t mDelivered = 0; // changed by who delivers alone, who may read it without the lock
    std::exception_ptr mFailure;
    boost::shared_ptr<threads::AsyncThreadedExecutor> const mPool;
};

} // namespace

void RunInOrder(std::size_t inCount, std::uint32_t inJobs, Step const& inCompute,
                Step const& inDeliver) {
    if (inCount != 0) {
        auto const jobs = static_cast<std::uint32_t>(std::min<std::size_t>(inJobs, inCount));
        OrderedRun(inCount, jobs, inCompute, inDeliver).Run();
    }
}

} // namespace brindle::host
