#include <brindle/filesupport/StringByteStream.h>

namespace brindle::filesupport {

template class IContainerByteStream<std::string>;
template class OContainerByteStream<std::string>;

IStringByteStream::~IStringByteStream() = default;
OStringByteStream::~OStringByteStream() = default;

} // namespace brindle::filesupport
