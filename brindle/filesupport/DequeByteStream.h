#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ContainerByteStream.h>

#include <cstdint>
#include <deque>

namespace brindle::filesupport {

extern template class IContainerByteStream<std::deque<std::uint8_t>>;
extern template class OContainerByteStream<std::deque<std::uint8_t>>;

/// Reads a deque of bytes that the caller keeps alive.
class BRN_API IDequeByteStream : public IContainerByteStream<std::deque<std::uint8_t>> {
public:
    /// The deque must outlive the stream.
    explicit IDequeByteStream(std::deque<std::uint8_t>& inDeque) noexcept;
    explicit IDequeByteStream(std::deque<std::uint8_t> const& inDeque) noexcept;
    /// It would be gone before it is read.
    explicit IDequeByteStream(std::deque<std::uint8_t> const&& inDeque) = delete;
    ~IDequeByteStream() override;
};

/// Appends to a deque of bytes that the caller keeps alive.
class BRN_API ODequeByteStream : public OContainerByteStream<std::deque<std::uint8_t>> {
public:
    /// The deque must outlive the stream, and keeps what it has.
    explicit ODequeByteStream(std::deque<std::uint8_t>& outDeque) noexcept;
    ~ODequeByteStream() override;
};

} // namespace brindle::filesupport
