#include "platform/CompletionPort.h"

#include "platform/portable/PacketPort.h"
#include "utility/src/base/NoPause.h"

namespace brindle::platform {

namespace {

constexpr std::size_t kSlotsOfSegment = 1024;

} // namespace

struct CompletionPort::State {
    PacketPort<utility::NoPause, kSlotsOfSegment> port;
};

CompletionPort::CompletionPort() : mState(std::make_unique<State>()) {}

CompletionPort::~CompletionPort() = default;

bool CompletionPort::Post(void* inPacket) noexcept {
    return mState->port.Post(inPacket);
}

bool CompletionPort::Take(void*& outPacket) noexcept {
    return mState->port.Take(outPacket);
}

bool CompletionPort::Wait(void*& outPacket, Deadline const& inDeadline) noexcept {
    return mState->port.Wait(outPacket, inDeadline);
}

} // namespace brindle::platform
