#include "platform/Fork.h"

#include <pthread.h>

namespace brindle::platform {

bool OnFork(void (*inPrepare)(), void (*inParent)(), void (*inChild)()) noexcept {
    return ::pthread_atfork(inPrepare, inParent, inChild) == 0;
}

} // namespace brindle::platform
