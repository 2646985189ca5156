#include <brindle/threads/SyncPoint.h>
#include <brindle/threads/ThreadGroup.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/InThreads.h"
#include "tests/support/RecordingErrorManager.h"
#include "threads/src/threads/CurrentThreadPriority.h"

#include <boost/thread/thread.hpp>
#include <boost/thread/xtime.hpp>
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <limits>
#include <memory>

namespace brindle::threads {

namespace {

/// Makes the protected members public.
class OpenThread : public Thread {
public:
    using Thread::GetThread;
    using Thread::Thread;
    OpenThread(std::string const& inName, boost::thread* inThread) : Thread(inName, inThread) {}
};

TEST(Thread, ComparesByThreadAndNotByName) {
    EXPECT_TRUE(Thread("here") == Thread("the same"));
    std::unique_ptr<Thread> there;
    std::uint32_t id = 0;
    auto const body = [&] {
        there = std::make_unique<Thread>("there");
        id = GetCurrentThreadID();
    };
    Thread started("started", body);
    started.Join();
    EXPECT_TRUE(started == *there);
    EXPECT_TRUE(started != Thread("here"));
    EXPECT_NE(id, GetCurrentThreadID());
    // The system gives the id of a thread that has ended to a later one.
    for (int i = 0; i < 20; ++i) {
        Thread next("next", body);
        next.Join();
        EXPECT_TRUE(next == *there);
        EXPECT_TRUE(started != *there);
    }
    OpenThread adopted("adopted", new boost::thread(body));
    adopted.Join();
    EXPECT_TRUE(adopted == *there);
}

TEST(Thread, IsTransferredAndJoinedOnce) {
    int value = 0;
    Thread source("source", [&] { value = 1; });
    Thread thread(source);
    source = thread;
    source.Join();
    EXPECT_EQ(value, 1);
    source.Join();
    Thread("empty", boost::function0<void>()).Join();
    Thread("this one").Join();

    tests::RecordingErrorManager errors;
    SyncPoint made(2);
    Thread self("self", [&] {
        made.Wait();
        EXPECT_THROW(self.Join(), boost::thread_resource_error);
    });
    made.Wait();
    self.Join();
    EXPECT_EQ(errors.codes, tests::RecordingErrorManager::Codes{20});
}

TEST(Thread, SleepsUntilAnyTimeFarOrPast) {
    boost::xtime time{};
    Thread::Sleep(time);
    boost::xtime_get(&time, boost::TIME_UTC_);
    time.nsec += 20'000'000;
    Thread::Sleep(time);
    boost::xtime now;
    boost::xtime_get(&now, boost::TIME_UTC_);
    EXPECT_GE((now.sec - time.sec) * 1'000'000'000 + now.nsec, time.nsec);
    time.sec = std::numeric_limits<std::int64_t>::max();
    OpenThread sleeper("sleeper",
                       [&] { EXPECT_THROW(Thread::Sleep(time), boost::thread_interrupted); });
    sleeper.GetThread()->interrupt();
    sleeper.Join();
}

TEST(ThreadGroup, CountsAndJoinsItsThreads) {
    auto group = std::make_unique<ThreadGroup>("Workers");
    std::atomic<int> runs{0};
    std::unique_ptr<Thread> first(group->CreateThread([&] { ++runs; }));
    std::unique_ptr<Thread> second(group->CreateThread(boost::function0<void>()));
    Thread other("other", [&] { ++runs; });
    group->RemoveThread(&other);
    group->AddThread(first.get());
    EXPECT_EQ(group->Size(), 2);
    group->AddThread(&other);
    second.reset(); // the group still owns the thread
    group = std::make_unique<ThreadGroup>(*group);
    group->JoinAll();
    EXPECT_EQ(runs, 2);
    group->RemoveThread(first.get());
    EXPECT_EQ(group->Size(), 2);
    group.reset();
    other.Join(); // joined before, so it returns at once
}

TEST(ThreadGroup, GrowsFromManyThreadsWhileOthersJoin) {
    ThreadGroup group("group");
    std::atomic<int> runs{0};
    tests::InThreads(3, [&](unsigned) {
        for (int i = 0; i < 25; ++i) {
            delete group.CreateThread([&] { ++runs; });
            group.JoinAll();
        }
    });
    EXPECT_EQ(runs, 75);
    EXPECT_EQ(group.Size(), 75);
}

TEST(ThreadGroup, StartsNothingWithoutMemory) {
    std::atomic<int> runs{0};
    boost::function0<void> const body = [&runs] { ++runs; };
    std::string const name(100, 'n');
    EXPECT_GT(tests::RefuseEachAllocation([&] { SyncPoint(name, 2); }, [] {}), 1);
    ThreadGroup group(name);
    auto const create = [&] { delete group.CreateThread(body); };
    auto const isAsBefore = [&] { EXPECT_EQ(group.Size(), 0); };
    EXPECT_GT(tests::RefuseEachAllocation(create, isAsBefore), 3);
    group.JoinAll();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(group.Size(), 1);
}

TEST(Thread, ReportsThatTheSystemHasNoMoreThreads) {
    auto const work = [] {
        // The limit does not apply to root.
        EXPECT_TRUE(geteuid() != 0 || setuid(65534) == 0);
        tests::RecordingErrorManager errors;
        ThreadGroup group("group");
        boost::function0<void> const body = [] {};
        {
            tests::ResourceLimit const none(RLIMIT_NPROC, 0);
            EXPECT_THROW(Thread("refused", body), boost::thread_resource_error);
            EXPECT_THROW(static_cast<void>(group.CreateThread(body)), boost::thread_resource_error);
        }
        EXPECT_EQ(errors.codes, (tests::RecordingErrorManager::Codes{20, 20}));
        EXPECT_EQ(group.Size(), 0);
        delete group.CreateThread(body);
        group.JoinAll();
        return testing::Test::HasFailure() ? 1 : 0;
    };
    EXPECT_EQ(tests::ChildProcess(work).Wait(), 0);
}

TEST(ThreadPriority, IsSetForTheCallingThreadAndUnknownValuesAreNormal) {
    std::int32_t const expected[] = {0, -15, -2, -1, 0, 1, 2, 0};
    for (std::int32_t priority = -1; priority <= 6; ++priority) {
        EXPECT_EQ(PlatformPriority(static_cast<ThreadPriority>(priority)), expected[priority + 1]);
    }
    int const normal = getpriority(PRIO_PROCESS, 0);
    Thread("low", [&] {
        SetCurrentThreadPriority(kThreadPriorityIdle);
        SetCurrentThreadPriority(kThreadPriorityLowest);
        EXPECT_GT(getpriority(PRIO_PROCESS, 0), normal);
    }).Join();
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), normal);
}

} // namespace

} // namespace brindle::threads
