#pragma once

#include "console/src/listen/ReplyInbox.h"
#include "platform/LocalSocket.h"
#include "utility/src/base/Mutex.h"

#include <brindle/threads/AsyncExecutor.h>
#include <brindle/utility/TextTypes.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <memory>
#include <string>
#include <thread>

namespace brindle::console {

/// A name under which the process listens, and the executor that runs what its clients ask for.
/// Shared by the host's `Listener`, the service, and the requests that wait on the executor.
class Listening {
public:
    Listening(std::string inName, platform::LocalListener inSocket,
              boost::shared_ptr<threads::AsyncExecutor> inExecutor);

    std::string const& Name() const noexcept { return mName; } ///< in UTF-8
    bool IsClosed() const;

    /// For the service's thread.
    platform::LocalListener& Socket() noexcept { return mSocket; }

    /// Has the executor run the request, and the reply delivered. There is one for each request,
    /// unless this is closed. Called by the service's thread alone.
    static void Post(std::shared_ptr<Listening> const& inSelf, Request inRequest,
                     std::shared_ptr<ReplyInbox> const& inInbox, ClientId inClient);

    /// Removes the socket and releases the executor, which the service no longer uses when this
    /// returns, unless it was called inside the executor's `Post`. Requests that have not begun do
    /// nothing any more; one that has begun is not waited for. False if it was closed before.
    bool Close();

private:
    void PostToExecutor(boost::function0<void> const& inFunction);

    std::string const mName;
    platform::LocalListener mSocket;
    mutable utility::Mutex mMutex;
    utility::Condition mHasPosted;
    boost::shared_ptr<threads::AsyncExecutor> mExecutor BRN_GUARDED_BY(mMutex); // null once closed
    std::thread::id mPosting BRN_GUARDED_BY(mMutex); // the thread that is in the executor's `Post`
};

} // namespace brindle::console
