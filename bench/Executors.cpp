#include <brindle/threads/AsyncThreadedExecutor.h>

#include <benchmark/benchmark.h>
#include <boost/asio.hpp>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/task_arena.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

class Brindle {
public:
    explicit Brindle(int inWorkers)
        : mPool(brindle::threads::CreateAsyncThreadedExecutor(
              "bench", inWorkers, brindle::threads::kThreadPriorityNormal)) {}
    ~Brindle() {
        mPool->Shutdown();
        mPool->Synchronize();
    }

    template <class Item>
    void Post(Item inItem) {
        mPool->Post(inItem, 0);
    }
    template <class Item>
    void PostIn(std::uint32_t inMilliseconds, Item inItem) {
        mPool->Post(inItem, inMilliseconds);
    }

private:
    boost::shared_ptr<brindle::threads::AsyncThreadedExecutor> mPool;
};

class Asio {
public:
    explicit Asio(int inWorkers) : mPool(static_cast<std::size_t>(inWorkers)) {}
    ~Asio() {
        mPool.stop(); // a timer an hour away would be waited for
        mPool.join();
    }

    template <class Item>
    void Post(Item inItem) {
        boost::asio::post(mPool, inItem);
    }
    template <class Item>
    void PostIn(std::uint32_t inMilliseconds, Item inItem) {
        auto& timer = mTimers.emplace_back(mPool, std::chrono::milliseconds(inMilliseconds));
        timer.async_wait([inItem](boost::system::error_code const&) { inItem(); });
    }

private:
    boost::asio::thread_pool mPool;
    std::deque<boost::asio::steady_timer> mTimers;
};

class OneTbb {
public:
    explicit OneTbb(int inWorkers)
        : mLimit(tbb::global_control::max_allowed_parallelism,
                 static_cast<std::size_t>(inWorkers) + 1),
          mArena(inWorkers, 0) {}

    template <class Item>
    void Post(Item inItem) {
        mArena.enqueue(inItem);
    }

private:
    tbb::global_control mLimit;
    tbb::task_arena mArena;
};

class MutexAndDeque {
public:
    explicit MutexAndDeque(int inWorkers) {
        for (int i = 0; i < inWorkers; ++i) {
            mWorkers.emplace_back([this] { Run(); });
        }
    }
    ~MutexAndDeque() {
        for (std::size_t i = 0; i < mWorkers.size(); ++i) {
            Post(nullptr);
        }
        for (std::thread& worker : mWorkers) {
            worker.join();
        }
    }

    void Post(std::function<void()> inItem) {
        {
            std::lock_guard const lock(mMutex);
            mItems.push_back(std::move(inItem));
        }
        mPosted.notify_one();
    }

private:
    void Run() {
        for (;;) {
            std::unique_lock lock(mMutex);
            mPosted.wait(lock, [this] { return !mItems.empty(); });
            std::function<void()> const item = std::move(mItems.front());
            mItems.pop_front();
            lock.unlock();
            if (item == nullptr) {
                return;
            }
            item();
        }
    }

    std::mutex mMutex;
    std::condition_variable mPosted;
    std::deque<std::function<void()>> mItems;
    std::vector<std::thread> mWorkers;
};

/// Lets one thread sleep until a number of items have run.
class Countdown {
public:
    explicit Countdown(std::int64_t inCount) : mLeft(inCount) {}

    void Step() {
        if (mLeft.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            std::lock_guard const lock(mMutex);
            mIsDone = true;
            mDone.notify_one();
        }
    }
    void Wait() {
        std::unique_lock lock(mMutex);
        mDone.wait(lock, [this] { return mIsDone; });
    }

private:
    std::atomic<std::int64_t> mLeft;
    std::mutex mMutex;
    std::condition_variable mDone;
    bool mIsDone = false;
};

/// Range: posters, workers.
template <class Pool>
void PostAndRun(benchmark::State& ioState) {
    constexpr std::int64_t kCount = 1'000'000;
    auto const posters = ioState.range(0);
    Pool pool(static_cast<int>(ioState.range(1)));
    for (auto _ : ioState) {
        Countdown countdown(kCount);
        auto const post = [&] {
            for (std::int64_t i = 0; i < kCount / posters; ++i) {
                pool.Post([&countdown] { countdown.Step(); });
            }
        };
        std::vector<std::thread> others;
        for (std::int64_t i = 1; i < posters; ++i) {
            others.emplace_back(post);
        }
        post();
        countdown.Wait();
        for (std::thread& other : others) {
            other.join();
        }
    }
    ioState.SetItemsProcessed(ioState.iterations() * kCount);
}

/// From posting to the first instruction, on a pool that has gone to sleep. The time of a row is
/// the mean; the counters tell the median and the 99th percentile in microseconds.
template <class Pool>
void Latency(benchmark::State& ioState) {
    Pool pool(2);
    std::vector<double> seconds;
    for (auto _ : ioState) {
        std::this_thread::sleep_for(std::chrono::microseconds(300));
        Countdown countdown(1);
        Clock::time_point begun;
        auto const posted = Clock::now();
        pool.Post([&] {
            begun = Clock::now();
            countdown.Step();
        });
        countdown.Wait();
        seconds.push_back(std::chrono::duration<double>(begun - posted).count());
        ioState.SetIterationTime(seconds.back());
    }
    std::sort(seconds.begin(), seconds.end());
    ioState.counters["median_us"] = seconds[seconds.size() / 2] * 1e6;
    ioState.counters["p99_us"] = seconds[seconds.size() * 99 / 100] * 1e6;
}

/// All of them are due soon, so that the work decides and not the waiting. A row that ran items
/// before their time is no row.
template <class Pool>
void Delayed(benchmark::State& ioState) {
    constexpr std::size_t kCount = 100'000;
    std::mt19937 random(1);
    std::uniform_int_distribution<std::uint32_t> delays(1, 20);
    for (auto _ : ioState) {
        Pool pool(1);
        Countdown countdown(kCount);
        std::int64_t early = 0;
        for (std::size_t i = 0; i < kCount; ++i) {
            auto const delay = delays(random);
            // The clock that items are due by has microseconds.
            auto const posted =
                std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
            pool.PostIn(delay,
                        [&countdown, &early, due = posted + std::chrono::milliseconds(delay)] {
                            early += std::chrono::system_clock::now() < due ? 1 : 0;
                            countdown.Step();
                        });
        }
        countdown.Wait();
        if (early > 0) {
            ioState.SkipWithError("items ran before they were due");
        }
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(kCount));
}

std::int64_t ProcessorMicroseconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1'000'000 + usage.ru_utime.tv_usec +
           usage.ru_stime.tv_usec;
}

/// The time of a row is the processor's, in a second of doing nothing.
template <class Pool>
void Idle(benchmark::State& ioState) {
    Pool pool(2);
    pool.PostIn(3'600'000, [] {});
    for (auto _ : ioState) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        std::int64_t const before = ProcessorMicroseconds();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        ioState.SetIterationTime(static_cast<double>(ProcessorMicroseconds() - before) * 1e-6);
    }
}

template <class Pool>
void RegisterPool(std::string const& inWho) {
    auto const add = [](std::string const& inName, void (*inFunction)(benchmark::State&)) {
        return benchmark::RegisterBenchmark(inName.c_str(), inFunction);
    };
    std::string const subject = "post and run 1,000,000 items/" + inWho;
    for (auto const& [posters, workers] : {std::pair(1, 1), {1, 2}, {2, 2}}) {
        add(subject + "/" + std::to_string(posters) + " posting to " + std::to_string(workers),
            &PostAndRun<Pool>)
            ->Args({posters, workers})
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    add("post to an idle pool/" + inWho + "/until the first instruction", &Latency<Pool>)
        ->Iterations(2000)
        ->UseManualTime();
}

template <class Pool>
void RegisterTimers(std::string const& inWho) {
    std::string const subject = "delayed items/" + inWho;
    benchmark::RegisterBenchmark((subject + "/100,000 within 20 ms").c_str(), &Delayed<Pool>)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark((subject + "/an hour away, processor time of a second").c_str(),
                                 &Idle<Pool>)
        ->Iterations(1)
        ->UseManualTime();
}

[[maybe_unused]] bool const S_areRegistered = [] {
    RegisterPool<Brindle>("brindle");
    RegisterPool<Asio>("asio");
    RegisterPool<OneTbb>("oneTBB");
    RegisterPool<MutexAndDeque>("mutex and deque");
    RegisterTimers<Brindle>("brindle");
    RegisterTimers<Asio>("asio");
    return true;
}();

} // namespace
