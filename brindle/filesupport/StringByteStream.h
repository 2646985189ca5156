#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace brindle::filesupport {

/// Reads a string that the caller keeps alive. If it changes meanwhile, reading goes on at the same
/// position in what it then holds. A position past the present end is refused with `eof_error`.
class BRN_API IStringByteStream : public IByteStream {
public:
    explicit IStringByteStream(std::string& inString) noexcept : mString(inString) {}
    ~IStringByteStream() override;

    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    std::uint64_t Length() const override;

private:
    std::string& mString;
    std::size_t mPosition = 0;
};

/// Appends to a string that the caller keeps alive. The position is always its size, and setting
/// it does nothing.
class BRN_API OStringByteStream : public OByteStream {
public:
    explicit OStringByteStream(std::string& outString) noexcept : mString(outString) {}
    ~OStringByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

private:
    std::string& mString;
};

} // namespace brindle::filesupport
