#include <brindle/filesupport/StringByteStream.h>

#include "filesupport/src/streams/BlockStream.h"

namespace brindle::filesupport {

template class IContainerByteStream<std::string>;
template class OContainerByteStream<std::string>;

namespace {

constexpr bool kIsFile = false;
constexpr impl::BlockStream kInputBlocks{typeid(IStringByteStream), kIsFile, nullptr, nullptr};
constexpr impl::BlockStream kOutputBlocks{typeid(OStringByteStream), kIsFile, nullptr, nullptr};

} // namespace

IStringByteStream::IStringByteStream(std::string& inString) noexcept
    : IStringByteStream(static_cast<std::string const&>(inString)) {}

IStringByteStream::IStringByteStream(std::string const& inString) noexcept
    : IContainerByteStream(inString) {
    SetBlocks(kInputBlocks);
}

OStringByteStream::OStringByteStream(std::string& outString) noexcept
    : OContainerByteStream(outString) {
    SetBlocks(kOutputBlocks);
}

IStringByteStream::~IStringByteStream() = default;
OStringByteStream::~OStringByteStream() = default;

} // namespace brindle::filesupport
