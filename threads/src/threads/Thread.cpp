#include <brindle/threads/Thread.h>

#include "platform/Process.h"
#include "threads/src/locks/ThreadErrors.h"

#include <atomic>
#include <utility>

namespace brindle::threads {

namespace {

// A longer sleep is divided, because Boost cannot take every time.
constexpr std::int64_t kLongestSleepSeconds = 24 * 60 * 60;

thread_local std::uint64_t S_number = 0;

std::uint64_t NewNumber() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1; // it only has to be unique
}

std::uint64_t CurrentNumber() {
    if (S_number == 0) {
        S_number = NewNumber();
    }
    return S_number;
}

/// What a thread runs. The function is destroyed on that thread, before it ends.
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
    ReportingThreadErrors([&] { Start(inFunction); });
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
    ReportingThreadErrors([&] { mThread->join(); });
}

void Thread::Sleep(boost::xtime const& inTime) {
    ReportingThreadErrors([&] {
        for (;;) {
            boost::xtime now;
            boost::xtime_get(&now, boost::TIME_UTC_);
            if (boost::xtime_cmp(now, inTime) >= 0) {
                return;
            }
            boost::xtime stretch = now;
            stretch.sec += kLongestSleepSeconds;
            boost::thread::sleep(boost::xtime_cmp(stretch, inTime) < 0 ? stretch : inTime);
        }
    });
}

void Thread::YieldTime() {
    ReportingThreadErrors([] { boost::thread::yield(); });
}

bool Thread::operator==(Thread const& inOther) const {
    return mID == inOther.mID &&
           (mNumber == inOther.mNumber || mNumber == 0 || inOther.mNumber == 0);
}

bool Thread::operator!=(Thread const& inOther) const {
    return !(*this == inOther);
}

} // namespace brindle::threads
