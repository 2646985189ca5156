#include "console/src/listen/Listening.h"

#include "console/src/listen/RunRequest.h"

#include <atomic>
#include <exception>
#include <utility>

namespace brindle::console {

namespace {

using utility::MutexLock;

/// A request that waits on the executor. The function that the executor owns owns it, so that it is
/// answered also if that function is dropped.
class WaitingRequest {
public:
    WaitingRequest(std::weak_ptr<Listening> inListening, Request inRequest,
                   std::weak_ptr<ReplyInbox> inInbox, ClientId inClient)
        : mListening(std::move(inListening)), mRequest(std::move(inRequest)),
          mInbox(std::move(inInbox)), mClient(inClient) {}
    WaitingRequest(WaitingRequest const&) = delete;
    WaitingRequest& operator=(WaitingRequest const&) = delete;
    ~WaitingRequest() {
        if (!mIsTaken.exchange(true)) {
            Answer({ReplyKind::kRefused, "the program does not run commands any more", {}});
        }
    }

    void Run() {
        // An executor may call a function twice.
        if (!mIsTaken.exchange(true) && IsWanted()) {
            Answer(RunRequestOrFail());
        }
    }

private:
    bool IsWanted() const {
        auto const listening = mListening.lock();
        return listening != nullptr && !listening->IsClosed();
    }

    Reply RunRequestOrFail() const {
        try {
            return RunRequest(mRequest);
        } catch (std::exception const& error) {
            return {ReplyKind::kFailed, error.what(), {}};
        }
    }

    void Answer(Reply inReply) const noexcept {
        try {
            if (auto const inbox = mInbox.lock()) {
                inbox->Deliver(mClient, std::move(inReply));
            }
        } catch (std::bad_alloc const&) {
            // Without memory for an answer, the client goes without.
        }
    }

    std::weak_ptr<Listening> const mListening;
    Request const mRequest;
    std::weak_ptr<ReplyInbox> const mInbox;
    ClientId const mClient;
    std::atomic<bool> mIsTaken{false};
};

} // namespace

Listening::Listening(std::string inName, platform::LocalListener inSocket,
                     boost::shared_ptr<threads::AsyncExecutor> inExecutor)
    : mName(std::move(inName)), mSocket(std::move(inSocket)), mExecutor(std::move(inExecutor)) {}

bool Listening::IsClosed() const {
    MutexLock const lock(mMutex);
    return mExecutor == nullptr;
}

void Listening::Post(std::shared_ptr<Listening> const& inSelf, Request inRequest,
                     std::shared_ptr<ReplyInbox> const& inInbox, ClientId inClient) {
    auto const request =
        std::make_shared<WaitingRequest>(inSelf, std::move(inRequest), inInbox, inClient);
    // If the executor refuses it, or drops it, the last reference answers.
    inSelf->PostToExecutor([request] { request->Run(); });
}

void Listening::PostToExecutor(boost::function0<void> const& inFunction) {
    MutexLock lock(mMutex);
    auto executor = mExecutor;
    if (executor == nullptr) {
        return;
    }
    mPosting = std::this_thread::get_id();
    lock.Unlock();
    try {
        static_cast<void>(executor->Post(inFunction, 0));
    } catch (...) {
        // As if it had refused.
    }
    executor.reset();
    lock.Lock();
    mPosting = std::thread::id();
    mHasPosted.NotifyAll();
}

bool Listening::Close() {
    boost::shared_ptr<threads::AsyncExecutor> executor; // released without the lock
    MutexLock lock(mMutex);
    if (mExecutor == nullptr) {
        return false;
    }
    executor.swap(mExecutor);
    mSocket.Remove();
    // An executor that runs the function inside `Post` may run a command that closes this.
    while (mPosting != std::thread::id() && mPosting != std::this_thread::get_id()) {
        mHasPosted.Wait(lock);
    }
    return true;
}

} // namespace brindle::console
