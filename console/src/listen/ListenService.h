#pragma once

#include "console/src/listen/ClientSession.h"
#include "console/src/listen/Listening.h"
#include "console/src/listen/ReplyInbox.h"
#include "utility/src/base/Mutex.h"

#include <atomic>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace brindle::console {

/// The thread that serves what listens in this process: it accepts clients, reads their requests,
/// has them run by the executors, and sends the replies. It calls an executor's `Post` and nothing
/// else of a client, and never with a lock.
class ListenService {
public:
    /// Starts the thread. Throws `std::system_error` if there is none, or no descriptor for it.
    ListenService();
    ListenService(ListenService const&) = delete;
    ListenService& operator=(ListenService const&) = delete;
    /// Stops the thread and waits for its end. On that thread itself, as when a command that an
    /// executor runs inside `Post` stops it, it ends soon after.
    ~ListenService();

    void Add(std::shared_ptr<Listening> const& inListening);
    /// Of one that is closed. True if none is left.
    bool Remove(std::shared_ptr<Listening> const& inListening);
    std::vector<std::shared_ptr<Listening>> All() const;

private:
    class Loop;
    struct Shared;

    std::shared_ptr<Shared> const mShared; // with the thread
    std::thread mThread;
};

} // namespace brindle::console
