#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/ForEach.h>

#include <benchmark/benchmark.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A loop over items that are independent of each other, on as many threads as there are processors.
// Each peer is used as its users would: a future for each item if there are few of them, and
// otherwise for each of some larger parts.

namespace {

std::size_t Threads() {
    return std::max(std::thread::hardware_concurrency(), 2u);
}

/// Takes some 50 ns for each step.
std::uint32_t Item(std::size_t inIndex, std::int64_t inSteps) {
    auto value = static_cast<std::uint32_t>(inIndex);
    for (std::int64_t i = 0; i < inSteps * 40; ++i) {
        value = value * 1664525 + 1013904223;
    }
    return value;
}

class Brindle {
public:
    template <class Function>
    void operator()(std::size_t inCount, Function const& inFunction) {
        brindle::threads::ForEach(mPool, inCount, inFunction);
    }

private:
    boost::shared_ptr<brindle::threads::AsyncThreadedExecutor> const mPool =
        brindle::threads::CreateAsyncThreadedExecutor("bench", static_cast<int>(Threads()) - 1,
                                                      brindle::threads::kThreadPriorityNormal);
};

class OneTbb {
public:
    template <class Function>
    void operator()(std::size_t inCount, Function const& inFunction) {
        tbb::parallel_for(std::size_t{0}, inCount, inFunction);
    }

private:
    tbb::global_control const mLimit{tbb::global_control::max_allowed_parallelism, Threads()};
};

class Async {
public:
    template <class Function>
    void operator()(std::size_t inCount, Function const& inFunction) {
        std::size_t const parts = std::min<std::size_t>(inCount, 100);
        std::vector<std::future<void>> futures;
        for (std::size_t part = 0; part < parts; ++part) {
            futures.push_back(std::async(std::launch::async, [&, part] {
                for (std::size_t i = inCount * part / parts; i < inCount * (part + 1) / parts;
                     ++i) {
                    inFunction(i);
                }
            }));
        }
        for (auto& future : futures) {
            future.get();
        }
    }
};

/// Workers that take one item at a time from a queue, as it is written by hand.
class MutexAndCondition {
public:
    MutexAndCondition() {
        for (std::size_t i = 0; i < Threads(); ++i) {
            mWorkers.emplace_back([this] { Work(); });
        }
    }
    ~MutexAndCondition() {
        {
            std::lock_guard const lock(mMutex);
            mIsEnding = true;
        }
        mPosted.notify_all();
        for (std::thread& worker : mWorkers) {
            worker.join();
        }
    }

    template <class Function>
    void operator()(std::size_t inCount, Function const& inFunction) {
        std::unique_lock lock(mMutex);
        for (std::size_t i = 0; i < inCount; ++i) {
            mItems.emplace_back([&inFunction, i] { inFunction(i); });
        }
        mLeft = inCount;
        mPosted.notify_all();
        mDone.wait(lock, [this] { return mLeft == 0; });
    }

private:
    void Work() {
        std::unique_lock lock(mMutex);
        for (;;) {
            mPosted.wait(lock, [this] { return mIsEnding || !mItems.empty(); });
            if (mIsEnding) {
                return;
            }
            std::function<void()> const item = std::move(mItems.front());
            mItems.pop_front();
            lock.unlock();
            item();
            lock.lock();
            if (--mLeft == 0) {
                mDone.notify_one();
            }
        }
    }

    std::mutex mMutex;
    std::condition_variable mPosted, mDone;
    std::deque<std::function<void()>> mItems;
    std::size_t mLeft = 0;
    bool mIsEnding = false;
    std::vector<std::thread> mWorkers;
};

template <class Loop>
void Run(benchmark::State& ioState, std::size_t inCount, std::int64_t inSteps) {
    Loop loop;
    std::vector<std::uint32_t> results(inCount);
    for (auto _ : ioState) {
        loop(inCount, [&](std::size_t inIndex) { results[inIndex] = Item(inIndex, inSteps); });
        benchmark::DoNotOptimize(results.data());
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(inCount));
}

/// One thread, for orientation.
struct Alone {
    template <class Function>
    void operator()(std::size_t inCount, Function const& inFunction) {
        for (std::size_t i = 0; i < inCount; ++i) {
            inFunction(i);
        }
    }
};

template <class Loop>
void Register(std::string const& inWho) {
    benchmark::RegisterBenchmark(("parallel loop/" + inWho + "/10,000 small items").c_str(),
                                 &Run<Loop>, 10'000, 2)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark(("parallel loop/" + inWho + "/100 large items").c_str(),
                                 &Run<Loop>, 100, 10'000)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

[[maybe_unused]] bool const S_areRegistered = [] {
    Register<Brindle>("brindle");
    Register<OneTbb>("oneTBB");
    Register<Async>("std::async");
    Register<MutexAndCondition>("mutex and condition");
    Register<Alone>("(one thread)");
    return true;
}();

} // namespace
