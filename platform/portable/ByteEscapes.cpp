#include "platform/portable/ByteEscapes.h"

#include <brindle/utility/Unicode.h>

#include <brindle/utility/UTF8Sequence.h>

#include <cstdint>
#include <cstring>

namespace brindle::platform {

namespace {

constexpr std::uint16_t kBackslashInName = 0xF05C;
constexpr std::uint16_t kEscapedByte = 0xDC00;

constexpr std::uint16_t WidenInPath(unsigned char inByte) {
    return inByte == '/' ? '\\' : inByte == '\\' ? kBackslashInName : inByte;
}

/// True if the unit at `inUnits` and the next one are a surrogate pair.
bool IsPair(std::uint16_t const* inUnits, std::uint16_t const* inEnd) {
    return utility::UnicodeSurrogate(inUnits[0]) == utility::kSurrogate_High &&
           inEnd - inUnits > 1 && utility::UnicodeSurrogate(inUnits[1]) == utility::kSurrogate_Low;
}

} // namespace

void AppendText(UTF16String& ioText, char const* inBytes, std::size_t inCount, ByteForm inForm) {
    auto const oldSize = ioText.size();
    // A byte becomes at most one unit.
    ioText.resize(oldSize + inCount);
    auto* out = &ioText[oldSize];
    auto const* in = reinterpret_cast<unsigned char const*>(inBytes);
    auto const* const end = in + inCount;
    bool const isPath = inForm == ByteForm::kPath;

    while (in != end) {
        constexpr std::size_t kBlock = 8;
        std::uint64_t block = 0;
        while (static_cast<std::size_t>(end - in) >= kBlock) {
            std::memcpy(&block, in, kBlock);
            if ((block & 0x8080808080808080U) != 0) {
                break;
            }
            for (std::size_t i = 0; i < kBlock; ++i) {
                out[i] = isPath ? WidenInPath(in[i]) : in[i];
            }
            in += kBlock;
            out += kBlock;
        }
        if (in == end) {
            break;
        }
        if (*in < 0x80) {
            *out++ = isPath ? WidenInPath(*in) : *in;
            ++in;
            continue;
        }
        auto const sequence = utility::DecodeUTF8Sequence(in, static_cast<std::size_t>(end - in));
        bool const isSurrogate = 0xD800 <= sequence.value && sequence.value <= 0xDFFF;
        if (sequence.length == 0 || isSurrogate || (isPath && sequence.value == kBackslashInName)) {
            *out++ = static_cast<std::uint16_t>(kEscapedByte + *in++);
        } else if (sequence.value < 0x10000) {
            *out++ = static_cast<std::uint16_t>(sequence.value);
            in += sequence.length;
        } else {
            *out++ = utility::HighSurrogate(sequence.value);
            *out++ = utility::LowSurrogate(sequence.value);
            in += sequence.length;
        }
    }
    ioText.resize(static_cast<std::size_t>(out - ioText.data()));
}

void AppendBytes(std::string& ioBytes, std::uint16_t const* inUnits, std::size_t inCount,
                 ByteForm inForm) {
    constexpr std::size_t kMostBytesOfAUnit = 3;
    auto const oldSize = ioBytes.size();
    ioBytes.resize(oldSize + inCount * kMostBytesOfAUnit);
    auto* out = &ioBytes[oldSize];
    bool const isPath = inForm == ByteForm::kPath;

    for (std::size_t i = 0; i < inCount; ++i) {
        auto const unit = inUnits[i];
        if (isPath && (unit == '\\' || unit == kBackslashInName)) {
            *out++ = unit == '\\' ? '/' : '\\';
        } else if (unit < 0x80) {
            *out++ = static_cast<char>(unit);
        } else if (IsPair(inUnits + i, inUnits + inCount)) {
            out = utility::EncodeUTF8Sequence(utility::JoinSurrogates(unit, inUnits[i + 1]), out);
            ++i;
        } else if (kEscapedByte + 0x80 <= unit && unit <= kEscapedByte + 0xFF) {
            *out++ = static_cast<char>(unit - kEscapedByte);
        } else {
            out = utility::EncodeUTF8Sequence(unit, out);
        }
    }
    ioBytes.resize(static_cast<std::size_t>(out - ioBytes.data()));
}

} // namespace brindle::platform
