#pragma once

#include <brindle/Export.h>
#include <brindle/utility/PlatformTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace brindle {

class iUTF16StringStream;
class oUTF16StringStream;

namespace utility {

/// A 128-bit identifier, with the layout of the platform's own structure.
///
///     utility::Guid const id = utility::Guid::CreateUnique();
///     std::cout << id << '\n'; // 12345678-9abc-def0-0102-030405060708
///
/// That text form has 36 characters with lower-case hexadecimal digits. Only this form is parsed,
/// with digits of either case. Any other text is reported through `config::ThrowError`; if that
/// returns, the Guid is all zero.
///
/// Beside the standard library: there is none. It has a whole order and a hash, so that it is a key
/// of every container, and is written to streams as other values are.
class BRN_API Guid {
public:
    /// All zero.
    constexpr Guid() noexcept = default;

    /// The fields in the order of the text form, whose last two groups are the last eight bytes.
    constexpr Guid(std::uint32_t in1, std::uint16_t in2, std::uint16_t in3, std::uint8_t in4,
                   std::uint8_t in5, std::uint8_t in6, std::uint8_t in7, std::uint8_t in8,
                   std::uint8_t in9, std::uint8_t in10, std::uint8_t in11) noexcept
        : mValue{in1, in2, in3, {in4, in5, in6, in7, in8, in9, in10, in11}} {}

    /// From the platform's structure.
    constexpr Guid(_GUID const& inValue) noexcept : mValue(inValue) {}

    /// Parses the text form. A null pointer is reported like a malformed text.
    explicit Guid(char const* inText);
    explicit Guid(std::basic_string<char> const& inText);
    /// The text ends before its first NUL, as in the conversion to UTF-8.
    explicit Guid(UTF16String const& inText);

    /// A new random identifier (version 4). A failure of the system's random source is reported
    /// through `config::ThrowError`; if that returns, the Guid is all zero. Any thread may call.
    [[nodiscard]] static Guid CreateUnique();

    /// The same bytes as the platform's structure.
    [[nodiscard]] constexpr _GUID const& GetGUID() const noexcept { return mValue; }

    /// The text form. Only the allocator can throw.
    [[nodiscard]] UTF16String AsString() const;

    /// Splits the value into the four groups of the platform's structure: a 32-bit number, two
    /// 16-bit numbers and eight bytes.
    static constexpr void GuidToComponents(Guid const& inGuid, std::uint32_t& out1,
                                           std::uint16_t& out2, std::uint16_t& out3,
                                           std::uint8_t& out4, std::uint8_t& out5,
                                           std::uint8_t& out6, std::uint8_t& out7,
                                           std::uint8_t& out8, std::uint8_t& out9,
                                           std::uint8_t& out10, std::uint8_t& out11) noexcept {
        out1 = inGuid.mValue.Data1;
        out2 = inGuid.mValue.Data2;
        out3 = inGuid.mValue.Data3;
        std::uint8_t* const bytes[] = {&out4, &out5, &out6, &out7, &out8, &out9, &out10, &out11};
        for (int i = 0; i < 8; ++i) {
            *bytes[i] = inGuid.mValue.Data4[i];
        }
    }

private:
    _GUID mValue{};
};

/// Compares all 16 bytes.
constexpr bool operator==(Guid const& inLHS, Guid const& inRHS) noexcept {
    _GUID const& lhs = inLHS.GetGUID();
    _GUID const& rhs = inRHS.GetGUID();
    bool isEqual = lhs.Data1 == rhs.Data1 && lhs.Data2 == rhs.Data2 && lhs.Data3 == rhs.Data3;
    for (int i = 0; i < 8; ++i) {
        isEqual = isEqual && lhs.Data4[i] == rhs.Data4[i];
    }
    return isEqual;
}

constexpr bool operator!=(Guid const& inLHS, Guid const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

namespace impl {

/// Four bytes as a little-endian signed number.
constexpr std::int32_t SignedLittleEndian(std::uint8_t const* inBytes) noexcept {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) {
        value = value << 8 | inBytes[i];
    }
    return static_cast<std::int32_t>(value);
}

} // namespace impl

/// Compares the first three groups as unsigned numbers, then the first four and the last four of
/// the eight bytes, each four as a little-endian signed number. This is not the order of the texts.
constexpr bool operator<(Guid const& inLHS, Guid const& inRHS) noexcept {
    _GUID const& lhs = inLHS.GetGUID();
    _GUID const& rhs = inRHS.GetGUID();
    if (lhs.Data1 != rhs.Data1) {
        return lhs.Data1 < rhs.Data1;
    }
    if (lhs.Data2 != rhs.Data2) {
        return lhs.Data2 < rhs.Data2;
    }
    if (lhs.Data3 != rhs.Data3) {
        return lhs.Data3 < rhs.Data3;
    }
    std::int32_t const first = impl::SignedLittleEndian(lhs.Data4);
    std::int32_t const otherFirst = impl::SignedLittleEndian(rhs.Data4);
    return first != otherFirst
               ? first < otherFirst
               : impl::SignedLittleEndian(lhs.Data4 + 4) < impl::SignedLittleEndian(rhs.Data4 + 4);
}

/// The reverse of `<`.
constexpr bool operator>(Guid const& inLHS, Guid const& inRHS) noexcept {
    return inRHS < inLHS;
}

constexpr bool operator<=(Guid const& inLHS, Guid const& inRHS) noexcept {
    return !(inRHS < inLHS);
}

constexpr bool operator>=(Guid const& inLHS, Guid const& inRHS) noexcept {
    return !(inLHS < inRHS);
}

/// Inserts the text form into a stream of any unit type of text.
BRN_API std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream,
                                             Guid const& inGuid);
BRN_API std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                      Guid const& inGuid);
BRN_API std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                                     Guid const& inGuid);
BRN_API oUTF16StringStream& operator<<(oUTF16StringStream& ioStream, Guid const& inGuid);

/// Extracts one word, which ends at white space, and parses it. If no word is left, the stream
/// fails, nothing is reported and the Guid stays as it was.
BRN_API std::basic_istream<char>& operator>>(std::basic_istream<char>& ioStream, Guid& outGuid);
BRN_API std::basic_istream<std::uint16_t>& operator>>(std::basic_istream<std::uint16_t>& ioStream,
                                                      Guid& outGuid);
BRN_API std::basic_istream<std::uint8_t>& operator>>(std::basic_istream<std::uint8_t>& ioStream,
                                                     Guid& outGuid);
BRN_API iUTF16StringStream& operator>>(iUTF16StringStream& ioStream, Guid& outGuid);

} // namespace utility

} // namespace brindle

/// Agrees with `==`.
template <>
struct std::hash<brindle::utility::Guid> {
    /// Equal values have equal hashes.
    std::size_t operator()(brindle::utility::Guid const& inGuid) const noexcept {
        auto const& guid = inGuid.GetGUID();
        std::uint64_t mixed = std::uint64_t{guid.Data1} << 32 | std::uint64_t{guid.Data2} << 16 |
                              std::uint64_t{guid.Data3};
        for (std::uint8_t const byte : guid.Data4) {
            mixed = (mixed ^ byte) * 0x100000001b3u; // the step of FNV-1a
        }
        return static_cast<std::size_t>(mixed ^ mixed >> 32);
    }
};
