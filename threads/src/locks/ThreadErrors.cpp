#include "threads/src/locks/ThreadErrors.h"

#include <brindle/config/ErrorCodes.h>

namespace brindle::threads {

void ReportNoThreadResources() {
    config::ThrowError(config::kError_ThreadResources);
}

void ReportLockFailure() {
    config::ThrowError(config::kError_ThreadLock);
}

} // namespace brindle::threads
