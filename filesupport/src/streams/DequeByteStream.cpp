#include <brindle/filesupport/DequeByteStream.h>

#include "filesupport/src/streams/BlockStream.h"

namespace brindle::filesupport {

template class IContainerByteStream<std::deque<std::uint8_t>>;
template class OContainerByteStream<std::deque<std::uint8_t>>;

namespace {

constexpr bool kIsFile = false;
constexpr impl::BlockStream kInputBlocks{typeid(IDequeByteStream), kIsFile, nullptr, nullptr};
constexpr impl::BlockStream kOutputBlocks{typeid(ODequeByteStream), kIsFile, nullptr, nullptr};

} // namespace

IDequeByteStream::IDequeByteStream(std::deque<std::uint8_t>& inDeque) noexcept
    : IDequeByteStream(static_cast<std::deque<std::uint8_t> const&>(inDeque)) {}

IDequeByteStream::IDequeByteStream(std::deque<std::uint8_t> const& inDeque) noexcept
    : IContainerByteStream(inDeque) {
    SetBlocks(kInputBlocks);
}

ODequeByteStream::ODequeByteStream(std::deque<std::uint8_t>& outDeque) noexcept
    : OContainerByteStream(outDeque) {
    SetBlocks(kOutputBlocks);
}

IDequeByteStream::~IDequeByteStream() = default;
ODequeByteStream::~ODequeByteStream() = default;

} // namespace brindle::filesupport
