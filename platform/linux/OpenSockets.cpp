#include "platform/linux/OpenSockets.h"

#include "platform/Fork.h"
#include "platform/linux/FileDescriptor.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/base/NeverDestroyed.h"

#include <fcntl.h>

#include <new>
#include <set>

namespace brindle::platform {

namespace {

struct Shared {
    utility::Mutex mutex;
    std::set<int> sockets BRN_GUARDED_BY(mutex);
};

Shared& Statics() {
    static utility::NeverDestroyed<Shared> shared;
    return shared.Get();
}

void BeforeFork() BRN_NO_THREAD_SAFETY_ANALYSIS {
    Statics().mutex.Lock();
}

void AfterForkInParent() BRN_NO_THREAD_SAFETY_ANALYSIS {
    Statics().mutex.Unlock();
}

void AfterForkInChild() BRN_NO_THREAD_SAFETY_ANALYSIS {
    FileDescriptor const nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    for (int const socket : Statics().sockets) {
        if (!nothing.IsOpen() || ::dup3(nothing.Get(), socket, O_CLOEXEC) < 0) {
            ::close(socket);
        }
    }
    Statics().sockets.clear();
    Statics().mutex.Unlock();
}

} // namespace

int KeepFromForkedChildren(int inSocket) {
    static bool const isSet = OnFork(BeforeFork, AfterForkInParent, AfterForkInChild);
    FileDescriptor socket(inSocket);
    if (!isSet) {
        throw std::bad_alloc();
    }
    if (socket.IsOpen()) {
        utility::MutexLock const lock(Statics().mutex);
        Statics().sockets.insert(inSocket);
    }
    return socket.Release();
}

void CloseSocket(int inSocket) noexcept {
    if (inSocket >= 0) {
        utility::MutexLock const lock(Statics().mutex);
        bool const isOpen = Statics().sockets.erase(inSocket) != 0; // not in a forked child
        FileDescriptor const closed(isOpen ? inSocket : -1);
    }
}

} // namespace brindle::platform
