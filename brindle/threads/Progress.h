#pragma once

#include <brindle/threads/AsyncExecutor.h>
#include <brindle/threads/LoopCall.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

namespace brindle::threads {

namespace impl {

/// The latest value that was set and not yet taken.
template <typename Value>
class LatestValue : public LoopCall {
public:
    void Set(std::optional<Value> inValue) {
        std::lock_guard const lock(mMutex);
        mValue.swap(inValue); // the old value is destroyed outside the lock
    }

protected:
    std::optional<Value> Take() {
        std::optional<Value> value;
        std::lock_guard const lock(mMutex);
        value.swap(mValue);
        return value;
    }

private:
    std::mutex mMutex;
    std::optional<Value> mValue;
};

template <typename Value, typename Function>
class LatestValueCall final : public LatestValue<Value> {
public:
    template <typename Argument>
    explicit LatestValueCall(std::in_place_t, Argument&& inFunction)
        : mFunction(std::in_place, std::forward<Argument>(inFunction)) {}

private:
    void Call() override {
        if (auto value = this->Take()) {
            (*mFunction)(*std::move(value));
        }
    }
    void ReleaseFunction() noexcept override { mFunction.reset(); }

    std::optional<Function> mFunction;
};

} // namespace impl

/// Shows on a loop how far work on other threads has come: they may set values as often as they
/// like, the function is called on the loop with the latest one only, and the loop never has more
/// than one call to make.
///
///     Progress<int> progress(loop, [&](int percent) { bar.Show(percent); });
///     group.Run([&] { progress.Set(50); }); // `group` is a TaskGroup, declared after `progress`
///
/// The destructor drops a value that is not shown yet. No call begins after it, and it waits for a
/// call that another thread is in; so the function may use what lives as long as this object. A
/// value that was set before another function was posted to the same loop is shown before that.
template <typename Value>
class Progress {
public:
    /// Throws `std::bad_alloc`.
    template <typename Function>
    Progress(boost::shared_ptr<AsyncExecutor> inLoop, Function&& inFunction)
        : mLoop(std::move(inLoop)), mCall(new impl::LatestValueCall<Value, std::decay_t<Function>>(
                                        std::in_place, std::forward<Function>(inFunction))) {}
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;
    ~Progress() { mCall->Close(); }

    /// Any thread may call. Has no effect if the loop accepts nothing more. Throws
    /// `std::bad_alloc`.
    void Set(Value inValue) {
        mCall->Set(std::move(inValue));
        mCall->Post(*mLoop);
    }

private:
    boost::shared_ptr<AsyncExecutor> const mLoop;
    boost::intrusive_ptr<impl::LatestValue<Value>> const mCall;
};

} // namespace brindle::threads
