#include "platform/portable/ByteEscapes.h"

#include <cstdint>
#include <cstring>

namespace brindle::platform {

namespace {

constexpr std::uint16_t kBackslashInName = 0xF05C;
constexpr std::uint16_t kEscapedByte = 0xDC00;

struct Sequence {
    char32_t value = 0;
    std::size_t length = 0; // 0: the first byte begins no valid sequence
};

constexpr bool IsBetween(unsigned char inByte, unsigned char inLow, unsigned char inHigh) {
    return inLow <= inByte && inByte <= inHigh;
}

constexpr bool IsContinuation(unsigned char inByte) {
    return IsBetween(inByte, 0x80, 0xBF);
}

/// Decodes one sequence of two to four bytes; overlong forms, surrogates and values above U+10FFFF
/// are invalid.
Sequence Decode(unsigned char const* inBytes, std::size_t inLeft) noexcept {
    auto const first = inBytes[0];
    auto const bits = [inBytes](std::size_t inIndex) {
        return static_cast<char32_t>(inBytes[inIndex] & 0x3F);
    };
    if (IsBetween(first, 0xC2, 0xDF)) {
        if (inLeft >= 2 && IsContinuation(inBytes[1])) {
            return {static_cast<char32_t>(first & 0x1F) << 6 | bits(1), 2};
        }
    } else if (IsBetween(first, 0xE0, 0xEF)) {
        unsigned char const low = first == 0xE0 ? 0xA0 : 0x80;
        unsigned char const high = first == 0xED ? 0x9F : 0xBF;
        if (inLeft >= 3 && IsBetween(inBytes[1], low, high) && IsContinuation(inBytes[2])) {
            return {static_cast<char32_t>(first & 0x0F) << 12 | bits(1) << 6 | bits(2), 3};
        }
    } else if (IsBetween(first, 0xF0, 0xF4)) {
        unsigned char const low = first == 0xF0 ? 0x90 : 0x80;
        unsigned char const high = first == 0xF4 ? 0x8F : 0xBF;
        if (inLeft >= 4 && IsBetween(inBytes[1], low, high) && IsContinuation(inBytes[2]) &&
            IsContinuation(inBytes[3])) {
            return {static_cast<char32_t>(first & 0x07) << 18 | bits(1) << 12 | bits(2) << 6 |
                        bits(3),
                    4};
        }
    }
    return {};
}

constexpr std::uint16_t WidenInPath(unsigned char inByte) {
    return inByte == '/' ? '\\' : inByte == '\\' ? kBackslashInName : inByte;
}

constexpr bool IsHighSurrogate(std::uint16_t inUnit) {
    return (inUnit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(std::uint16_t inUnit) {
    return (inUnit & 0xFC00) == 0xDC00;
}

char* Encode(char* outBytes, char32_t inValue) noexcept {
    auto const put = [&outBytes](char32_t inByte) { *outBytes++ = static_cast<char>(inByte); };
    if (inValue < 0x80) {
        put(inValue);
    } else if (inValue < 0x800) {
        put(0xC0 | inValue >> 6);
        put(0x80 | (inValue & 0x3F));
    } else if (inValue < 0x10000) {
        put(0xE0 | inValue >> 12);
        put(0x80 | (inValue >> 6 & 0x3F));
        put(0x80 | (inValue & 0x3F));
    } else {
        put(0xF0 | inValue >> 18);
        put(0x80 | (inValue >> 12 & 0x3F));
        put(0x80 | (inValue >> 6 & 0x3F));
        put(0x80 | (inValue & 0x3F));
    }
    return outBytes;
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
        auto const sequence = Decode(in, static_cast<std::size_t>(end - in));
        if (sequence.length == 0 || (isPath && sequence.value == kBackslashInName)) {
            *out++ = static_cast<std::uint16_t>(kEscapedByte + *in++);
        } else if (sequence.value < 0x10000) {
            *out++ = static_cast<std::uint16_t>(sequence.value);
            in += sequence.length;
        } else {
            auto const offset = sequence.value - 0x10000;
            *out++ = static_cast<std::uint16_t>(0xD800 + (offset >> 10));
            *out++ = static_cast<std::uint16_t>(0xDC00 + (offset & 0x3FF));
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
        } else if (IsHighSurrogate(unit) && i + 1 < inCount && IsLowSurrogate(inUnits[i + 1])) {
            out = Encode(out, 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) +
                                  (inUnits[++i] - 0xDC00U));
        } else if (kEscapedByte + 0x80 <= unit && unit <= kEscapedByte + 0xFF) {
            *out++ = static_cast<char>(unit - kEscapedByte);
        } else {
            out = Encode(out, unit);
        }
    }
    ioBytes.resize(static_cast<std::size_t>(out - ioBytes.data()));
}

} // namespace brindle::platform
