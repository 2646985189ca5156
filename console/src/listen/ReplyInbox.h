#pragma once

#include "console/src/listen/Protocol.h"
#include "platform/WakeUpEvent.h"
#include "utility/src/base/Mutex.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace brindle::console {

/// A number of a client, never used again.
using ClientId = std::uint64_t;

/// Where the threads that run commands leave their replies for the thread that sends them. Any
/// thread may call.
class ReplyInbox {
public:
    using Replies = std::vector<std::pair<ClientId, Reply>>;

    void Deliver(ClientId inClient, Reply inReply) {
        {
            utility::MutexLock const lock(mMutex);
            mReplies.emplace_back(inClient, std::move(inReply));
        }
        Wake();
    }
    Replies Take() {
        utility::MutexLock const lock(mMutex);
        return std::exchange(mReplies, {});
    }

    /// Readable once something was delivered, or `Wake` was called. -1 if the system had none.
    platform::WakeUpEvent const& Event() const noexcept { return mEvent; }
    void Wake() const noexcept { mEvent.Set(); }

private:
    utility::Mutex mMutex;
    Replies mReplies BRN_GUARDED_BY(mMutex);
    platform::WakeUpEvent mEvent;
};

} // namespace brindle::console
