#include <brindle/filesupport/DequeByteStream.h>

namespace brindle::filesupport {

template class IContainerByteStream<std::deque<std::uint8_t>>;
template class OContainerByteStream<std::deque<std::uint8_t>>;

IDequeByteStream::~IDequeByteStream() = default;
ODequeByteStream::~ODequeByteStream() = default;

} // namespace brindle::filesupport
