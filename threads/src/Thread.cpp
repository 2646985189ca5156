#include <brindle/threads/Thread.h>

#include "platform/Process.h"
#include "threads/src/Guarded.h"

#include <algorithm>
#include <utility>

namespace brindle::threads {

namespace {

// A thread sleeps in stretches no longer than this, so that any time may be slept until.
constexpr std::int64_t kLongestSleepSeconds = 24 * 60 * 60;

bool IsBefore(boost::xtime const& inLHS, boost::xtime const& inRHS) {
    return inLHS.sec != inRHS.sec ? inLHS.sec < inRHS.sec : inLHS.nsec < inRHS.nsec;
}

void RunThread(std::string const&, boost::function0<void> const& inFunction) {
    if (!inFunction.empty()) {
        inFunction();
    }
}

} // namespace

std::uint32_t GetCurrentThreadID() {
    return platform::ThreadId();
}

Thread::Thread(std::string const& inName)
    : mName(inName), mThread(Guarded([] { return std::make_shared<boost::thread>(); })),
      mID(boost::this_thread::get_id()) {}

Thread::Thread(std::string const& inName, boost::function0<void> const& inFunction)
    : mName(inName), mThread(Guarded([&] {
          return std::make_shared<boost::thread>(boost::bind(&RunThread, inName, inFunction));
      })),
      mID(mThread->get_id()) {}

Thread::Thread(std::string const& inName, boost::thread* inThread)
    : Thread(inName, std::shared_ptr<boost::thread>(inThread)) {}

Thread::Thread(std::string const& inName, std::shared_ptr<boost::thread> inThread)
    : mName(inName), mThread(std::move(inThread)), mID(mThread->get_id()) {}

Thread::Thread(Thread& ioSource)
    : mName(ioSource.mName), mThread(std::move(ioSource.mThread)), mID(ioSource.mID) {}

Thread& Thread::operator=(Thread& ioSource) {
    if (this != &ioSource) {
        mName = ioSource.mName;
        mThread = std::move(ioSource.mThread);
        mID = ioSource.mID;
    }
    return *this;
}

Thread::~Thread() = default;

void Thread::Join() {
    Guarded([&] { mThread->join(); });
}

void Thread::Sleep(boost::xtime const& inTime) {
    Guarded([&] {
        for (;;) {
            boost::xtime now;
            boost::xtime_get(&now, boost::TIME_UTC_);
            if (!IsBefore(now, inTime)) {
                return;
            }
            boost::xtime stretch = now;
            stretch.sec += kLongestSleepSeconds;
            boost::thread::sleep(IsBefore(stretch, inTime) ? stretch : inTime);
        }
    });
}

void Thread::YieldTime() {
    Guarded([] { boost::thread::yield(); });
}

bool Thread::operator==(Thread const& inOther) const {
    return Guarded([&] { return mID == inOther.mID; });
}

bool Thread::operator!=(Thread const& inOther) const {
    return !(*this == inOther);
}

} // namespace brindle::threads
