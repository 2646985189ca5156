#include <brindle/threads/Thread.h>

#include "platform/Process.h"
#include "threads/src/locks/ThreadErrors.h"

#include <boost/thread/thread.hpp>
#include <boost/thread/xtime.hpp>

#include <atomic>
#include <memory>
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

/// Boost's thread, and its id, which outlives the joining.
struct Thread::State {
    boost::thread own;
    std::unique_ptr<boost::thread> adopted; ///< in place of `own`, for an adopted thread
    boost::thread::id id;

    static std::shared_ptr<boost::thread> ThreadOf(std::shared_ptr<State> const& inState) {
        boost::thread* const thread = inState->adopted ? inState->adopted.get() : &inState->own;
        return {inState, thread};
    }
};

std::uint32_t GetCurrentThreadID() {
    return platform::ThreadId();
}

Thread::Thread(std::string const& inName) : mName(inName), mNumber(CurrentNumber()) {
    auto const state = std::make_shared<State>();
    mState = state.get();
    mThread = State::ThreadOf(state);
    mState->id = boost::this_thread::get_id();
}

Thread::Thread(std::string const& inName, boost::function0<void> const& inFunction)
    : mName(inName) {
    auto const state = std::make_shared<State>();
    mState = state.get();
    mThread = State::ThreadOf(state);
    ReportingThreadErrors([&] { Start(inFunction); });
}

Thread::Thread(std::string const& inName, boost::thread* inThread) : mName(inName) {
    std::unique_ptr<boost::thread> adopted(inThread);
    auto const state = std::make_shared<State>();
    state->adopted = std::move(adopted);
    mState = state.get();
    mThread = State::ThreadOf(state);
    mState->id = inThread->get_id();
}

Thread::Thread(Thread& ioSource)
    : mName(ioSource.mName), mThread(std::move(ioSource.mThread)),
      mState(std::exchange(ioSource.mState, nullptr)), mNumber(ioSource.mNumber) {}

Thread& Thread::operator=(Thread& ioSource) {
    if (this != &ioSource) {
        mName = ioSource.mName;
        mThread = std::move(ioSource.mThread);
        mState = std::exchange(ioSource.mState, nullptr);
        mNumber = ioSource.mNumber;
    }
    return *this;
}

Thread::~Thread() = default;

void Thread::Start(boost::function0<void> const& inFunction) {
    mNumber = NewNumber();
    *mThread = boost::thread(Body(mNumber, inFunction));
    mState->id = mThread->get_id();
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
    if (mState == nullptr || inOther.mState == nullptr) {
        return mState == inOther.mState;
    }
    return mState->id == inOther.mState->id &&
           (mNumber == inOther.mNumber || mNumber == 0 || inOther.mNumber == 0);
}

bool Thread::operator!=(Thread const& inOther) const {
    return !(*this == inOther);
}

} // namespace brindle::threads
