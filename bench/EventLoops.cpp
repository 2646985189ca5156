#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/EventLoop.h>

#include <benchmark/benchmark.h>
#include <boost/thread/barrier.hpp>
#include <glib-unix.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

using namespace brindle::threads;

constexpr int kItems = 100'000;

/// Counts the items that have run on the loop; the poster waits for the last of a batch.
class Batch {
public:
    void Run() {
        if (++mRun == kItems) {
            mRun = 0;
            std::lock_guard<std::mutex> const lock(mMutex);
            mIsDone = true;
            mDone.notify_one();
        }
    }

    void Await() {
        std::unique_lock<std::mutex> lock(mMutex);
        mDone.wait(lock, [this] { return mIsDone; });
        mIsDone = false;
    }

private:
    int mRun = 0; // the loop's
    std::mutex mMutex;
    std::condition_variable mDone;
    bool mIsDone = false;
};

void SetItems(benchmark::State& ioState) {
    ioState.SetItemsProcessed(ioState.iterations() * kItems);
}

void PostBatches(benchmark::State& ioState, AsyncExecutor& ioExecutor) {
    Batch batch;
    for (auto _ : ioState) {
        for (int i = 0; i < kItems; ++i) {
            ioExecutor.Post([&batch] { batch.Run(); }, 0);
        }
        batch.Await();
    }
    SetItems(ioState);
}

void Post_Brindle(benchmark::State& ioState) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    PostBatches(ioState, *executor);
    executor->Shutdown();
    executor->Join();
}

/// A thread that runs GLib's default loop.
class GLibThread {
public:
    template <typename Prepare>
    explicit GLibThread(Prepare inPrepare) {
        boost::barrier ready(2);
        mThread = std::thread([&, inPrepare] {
            inPrepare();
            ready.wait();
            g_main_loop_run(mLoop);
        });
        ready.wait();
    }
    GLibThread(GLibThread const&) = delete;
    GLibThread& operator=(GLibThread const&) = delete;
    ~GLibThread() {
        g_idle_add(
            [](gpointer inLoop) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(inLoop));
                return G_SOURCE_REMOVE;
            },
            mLoop);
        mThread.join();
        g_main_loop_unref(mLoop);
    }

private:
    GMainLoop* const mLoop = g_main_loop_new(nullptr, FALSE);
    std::thread mThread;
};

void Post_BrindleOnGLib(benchmark::State& ioState) {
    boost::shared_ptr<AsyncEventLoopAdaptor> adaptor;
    guint source = 0;
    {
        GLibThread const thread([&] {
            adaptor = AdaptCurrentEventLoopAsExecutor();
            source = g_unix_fd_add(
                EventLoopDescriptor(), G_IO_IN,
                [](gint, GIOCondition, gpointer) -> gboolean {
                    DispatchMessages();
                    return G_SOURCE_CONTINUE;
                },
                nullptr);
        });
        PostBatches(ioState, *adaptor);
    }
    g_source_remove(source);
}

void Post_GLib(benchmark::State& ioState) {
    GLibThread const thread([] {});
    Batch batch;
    auto const run = [](gpointer inBatch) -> gboolean {
        static_cast<Batch*>(inBatch)->Run();
        return G_SOURCE_REMOVE;
    };
    for (auto _ : ioState) {
        for (int i = 0; i < kItems; ++i) {
            g_idle_add(run, &batch);
        }
        batch.Await();
    }
    SetItems(ioState);
}

BENCHMARK(Post_Brindle)->Name("post to a loop/brindle/100,000 items")->UseRealTime();
BENCHMARK(Post_BrindleOnGLib)
    ->Name("post to a loop/(brindle on GLib)/100,000 items")
    ->UseRealTime();
BENCHMARK(Post_GLib)->Name("post to a loop/GLib/100,000 items")->UseRealTime();

} // namespace
