#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>
#include <brindle/utility/RefCountedObject.h>

#include <memory>

/// What `Progress` and the completion of a `TaskGroup` are made of. Clients use these.
namespace brindle::threads::impl {

/// A function that is called on an executor as long as its owner has not closed it, so that it may
/// use objects that exist only as long as the owner. At most one call is on its way at a time.
class BRN_API LoopCall : public utility::RefCountedObject {
public:
    ~LoopCall() override;

    /// Has `Call` called on the executor, unless a call is on its way already or this is closed. A
    /// call that the executor refuses is dropped. Any thread may call. Throws `std::bad_alloc`.
    void Post(AsyncExecutor& ioExecutor);

    /// From now on no call begins. Blocks until the calls that other threads are in have returned,
    /// then releases the function; a call of the calling thread releases it when it returns.
    void Close() noexcept;

protected:
    LoopCall();

private:
    virtual void Call() = 0;
    /// Destroys the function.
    virtual void ReleaseFunction() noexcept = 0;

    void Run();
    void Leave() noexcept;

    struct State;
    std::unique_ptr<State> const mState;
};

} // namespace brindle::threads::impl
