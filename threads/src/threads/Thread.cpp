#include <brindle/threads/Thread.h>

#include "platform/Process.h"
#include "threads/src/locks/Guarded.h"

#include <atomic>
#include <utility>

namespace brindle::threads {

namespace {

// A thread sleeps in stretches no longer than this, so that any time may be slept until.
constexpr std::int64_t kLongestSleepSeconds = 24 * 60 * 60;

bool IsBefore(boost::xtime const& inLHS, boost::xtime const& inRHS) {
    return inLHS.sec != inRHS.sec ? inLHS.sec < inRHS.sec : inLHS.nsec < inRHS.nsec;
}

thread_local std::uint64_t S_number = 0;

std::uint64_t NewNumber() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1; // nothing else hangs on it
}

std::uint64_t CurrentNumber() {
    if (S_number == 0) {
        S_number = NewNumber();
    }
    return S_number;
}

/// What a thread runs. What its function holds goes with the thread, on it.
class Body {
public:
    Body(std::uint64_t inNumber, boost::function0<void> const& inFunction)
        : mNumber(inNumber), mFunction(inFunction) {}

    void operator()() {
        S_number = mNumber;
        boost::function0<void> function;
        function.swap(mFunction);
        if (!function.empty()) {
            function();
        }
    }

private:
    std::uint64_t mNumber;
    boost::function0<void> mFunction;
};

} // namespace

std::uint32_t GetCurrentThreadID() {
    return platform::ThreadId();
}

Thread::Thread(std::string const& inName)
    : mName(inName), mThread(std::make_shared<boost::thread>()), mID(boost::this_thread::get_id()),
      mNumber(CurrentNumber()) {}

Thread::Thread(std::string const& inName, boost::function0<void> const& inFunction)
    : mName(inName), mThread(std::make_shared<boost::thread>()) {
    Guarded([&] { Start(inFunction); });
}

Thread::Thread(std::string const& inName, boost::thread* inThread)
    : mName(inName), mThread(inThread), mID(inThread->get_id()) {}

Thread::Thread(Thread& ioSource)
    : mName(ioSource.mName), mThread(std::move(ioSource.mThread)), mID(ioSource.mID),
      mNumber(ioSource.mNumber) {}

Thread& Thread::operator=(Thread& ioSource) {
    if (this != &ioSource) {
        mName = ioSource.mName;
        mThread = std::move(ioSource.mThread);
        mID = ioSource.mID;
        mNumber = ioSource.mNumber;
    }
    return *this;
}

Thread::~Thread() = default;

void Thread::Start(boost::function0<void> const& inFunction) {
    mNumber = NewNumber();
    *mThread = boost::thread(Body(mNumber, inFunction));
    mID = mThread->get_id();
}

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
    return mID == inOther.mID &&
           (mNumber == inOther.mNumber || mNumber == 0 || inOther.mNumber == 0);
}

bool Thread::operator!=(Thread const& inOther) const {
    return !(*this == inOther);
}

} // namespace brindle::threads
