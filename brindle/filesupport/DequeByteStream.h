#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstddef>
#include <cstdint>
#include <deque>

namespace brindle::filesupport {

/// Reads a deque that the caller keeps alive. If it changes meanwhile, reading goes on at the same
/// position in what it then holds. A position past the present end is refused with `eof_error`.
class BRN_API IDequeByteStream : public IByteStream {
public:
    explicit IDequeByteStream(std::deque<std::uint8_t>& inDeque) noexcept : mDeque(inDeque) {}
    ~IDequeByteStream() override;

    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    std::uint64_t Length() const override;

private:
    std::deque<std::uint8_t>& mDeque;
    std::size_t mPosition = 0;
};

/// Appends to a deque that the caller keeps alive. The position is always its size, and setting
/// it does nothing.
class BRN_API ODequeByteStream : public OByteStream {
public:
    explicit ODequeByteStream(std::deque<std::uint8_t>& outDeque) noexcept : mDeque(outDeque) {}
    ~ODequeByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

private:
    std::deque<std::uint8_t>& mDeque;
};

} // namespace brindle::filesupport
