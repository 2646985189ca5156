#include "platform/WakeUpEvent.h"

#include "platform/linux/FileDescriptor.h"

#include <poll.h>
#include <sys/eventfd.h>

namespace brindle::platform {

WakeUpEvent::WakeUpEvent() noexcept : mDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WakeUpEvent::~WakeUpEvent() {
    FileDescriptor const closed(mDescriptor);
}

void WakeUpEvent::Set() const noexcept {
    ::eventfd_write(mDescriptor, 1);
}

void WakeUpEvent::Reset() const noexcept {
    eventfd_t count = 0;
    ::eventfd_read(mDescriptor, &count);
}

void WakeUpEvent::Await() const noexcept {
    pollfd watched{mDescriptor, POLLIN, 0};
    Uninterrupted([&] { return ::poll(&watched, 1, -1); });
}

} // namespace brindle::platform
