#include "platform/ThreadEnd.h"

#include <pthread.h>

namespace brindle::platform {

namespace {

pthread_key_t S_key; // set before any thread requests the call

} // namespace

bool SetThreadEndCall(void (*inCall)(void* inArgument)) noexcept {
    return ::pthread_key_create(&S_key, inCall) == 0;
}

bool CallAtThreadEnd(void* inArgument) noexcept {
    return ::pthread_setspecific(S_key, inArgument) == 0;
}

} // namespace brindle::platform
