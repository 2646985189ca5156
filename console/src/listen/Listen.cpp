#include <brindle/console/Listen.h>

#include "console/src/listen/ListenService.h"
#include "console/src/listen/SocketNames.h"
#include "console/src/registry/AtTerminate.h"
#include "platform/Fork.h"
#include "platform/Process.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/debug/Contract.h>
#include <brindle/utility/TextConversions.h>

#include <new>
#include <system_error>
#include <type_traits>
#include <utility>

namespace brindle::console {

namespace {

using utility::MutexLock;

struct Shared {
    utility::Mutex mutex;
    std::unique_ptr<ListenService> service BRN_GUARDED_BY(mutex); // null if nothing listens
};

std::aligned_storage_t<sizeof(Shared), alignof(Shared)> S_storage;

/// Never destroyed, because a host may end without closing its listeners. Made again in a forked
/// child, where the thread of the service does not exist.
Shared& Make() {
    return *new (&S_storage) Shared;
}

Shared& Statics() {
    static Shared& shared = Make();
    static bool const isRemade = platform::OnFork(nullptr, nullptr, [] { Make(); });
    static_cast<void>(isRemade);
    return shared;
}

/// Closes it, if nobody else has, and ends the service with the last.
void CloseListening(std::shared_ptr<Listening> const& inListening) {
    if (!inListening->Close()) {
        return;
    }
    std::unique_ptr<ListenService> last; // stopped without the lock
    Shared& shared = Statics();
    MutexLock const lock(shared.mutex);
    if (shared.service != nullptr && shared.service->Remove(inListening)) {
        last = std::move(shared.service);
    }
}

void CloseAll() {
    std::vector<std::shared_ptr<Listening>> all;
    {
        Shared& shared = Statics();
        MutexLock const lock(shared.mutex);
        if (shared.service != nullptr) {
            all = shared.service->All();
        }
    }
    for (auto const& listening : all) {
        CloseListening(listening);
    }
}

void Serve(std::shared_ptr<Listening> const& inListening) {
    S_atTerminate.store(CloseAll, std::memory_order_release);
    Shared& shared = Statics();
    MutexLock const lock(shared.mutex);
    if (shared.service == nullptr) {
        shared.service = std::make_unique<ListenService>();
    }
    shared.service->Add(inListening);
}

std::string ReasonOf(platform::ErrorCode inError) {
    switch (inError) {
    case platform::kError_PathNotFound:
        return "the user has no runtime directory: XDG_RUNTIME_DIR names none";
    case platform::kError_AccessDenied:
        return "the runtime directory, which XDG_RUNTIME_DIR names, is not this user's alone";
    case platform::kError_SharingViolation:
        return "this process listens under the same name already";
    case platform::kError_TooManyOpenFiles:
        return "the process has too many open files";
    default:
        return "the socket cannot be created: error " +
               std::to_string(static_cast<std::uint32_t>(inError));
    }
}

/// In a forked child, the listener of the parent is of no use and not to be touched.
void Abandon(std::shared_ptr<Listening>& ioListening) {
    new std::shared_ptr<Listening>(std::move(ioListening));
}

} // namespace

Listener::Listener() noexcept = default;

Listener::Listener(Listener&& inOther) noexcept = default;

Listener& Listener::operator=(Listener&& inOther) noexcept {
    if (this != &inOther) {
        Close();
        mListening = std::move(inOther.mListening);
        mFailure = std::move(inOther.mFailure);
        mForkCount = inOther.mForkCount;
    }
    return *this;
}

Listener::~Listener() {
    Close();
}

void Listener::Close() noexcept {
    if (mListening == nullptr) {
        return;
    }
    if (mForkCount != platform::ForkCount()) {
        Abandon(mListening);
        return;
    }
    CloseListening(mListening);
    mListening.reset();
}

bool Listener::IsListening() const noexcept {
    return mListening != nullptr && mForkCount == platform::ForkCount() && !mListening->IsClosed();
}

Listener Listen(UTF16String const& inName,
                boost::shared_ptr<threads::AsyncExecutor> const& inExecutor) {
    debug::CheckContract(inExecutor != nullptr, "inExecutor != nullptr", __FILE__, __LINE__);
    Listener listener;
    listener.mForkCount = platform::ForkCount();
    if (inExecutor == nullptr) {
        listener.mFailure = "there is no executor to run commands on";
        return listener;
    }
    auto const name = inName.empty() ? config::GetClientName() : inName;
    auto socket = platform::LocalListener::Open(SocketName(name, platform::ProcessId()));
    if (!socket) {
        listener.mFailure = ReasonOf(socket.error);
        return listener;
    }
    try {
        auto const listening =
            std::make_shared<Listening>(utility::ToStd(name), std::move(socket.value), inExecutor);
        Serve(listening);
        listener.mListening = listening;
    } catch (std::system_error const& error) {
        listener.mFailure = "the library's thread cannot be started: " + error.code().message();
    }
    return listener;
}

} // namespace brindle::console
