#include "threads/src/locks/ThreadErrors.h"

#include <brindle/config/Errors.h>

namespace brindle::threads {

namespace {

void Report(char const* inKey, std::int32_t inCode) {
    config::ReplacementValue const none;
    config::ThrowError(config::kErrorLevel_NonFatal, inKey, config::kErrorModule_Threads, inCode,
                       true, none, none, none, none);
}

} // namespace

void ReportNoThreadResources() {
    Report("$$$/brn/threads/Error/NotEnoughThreadResources=Not enough thread resources.", 20);
}

void ReportLockFailure() {
    Report("$$$/brn/threads/Error/FailedToAcquireThreadLock=Failure to acquire thread lock.", 21);
}

} // namespace brindle::threads
