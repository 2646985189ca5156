#include "proplist/src/NumberText.h"

#include <brindle/utility/StringStreams.h>

#include <charconv>
#include <cstdint>
#include <locale>
#include <system_error>

namespace brindle::proplist::impl {

namespace {

constexpr bool IsDigit(std::uint16_t inUnit) noexcept {
    return inUnit >= '0' && inUnit <= '9';
}

/// Reads the texts that writers make. False, for any other, if it is not sure what a stream does.
template <typename T>
bool ReadPlain(UTF16String const& inText, T& outNumber) noexcept {
    char text[32];
    std::size_t const length = inText.size();
    if (length > sizeof text) {
        return false;
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (inText[i] > 0x7F) {
            return false;
        }
        text[i] = static_cast<char>(inText[i]);
    }
    // The names of what is not finite are numbers here, but to a stream they are none.
    std::size_t const first = length != 0 && inText[0] == '-' ? 1 : 0;
    if (first == length || !IsDigit(inText[first])) {
        return false;
    }
    auto const result = std::from_chars(text, text + length, outNumber);
    return result.ec == std::errc() && result.ptr == text + length;
}

} // namespace

template <typename T>
T ExtractNumber(UTF16String const& inText) {
    T number = 0;
    if (!ReadPlain(inText, number)) {
        number = 0;
        iUTF16StringStream stream(inText);
        stream.imbue(std::locale::classic());
        stream >> number;
    }
    return number;
}

template std::uint16_t ExtractNumber(UTF16String const&);
template std::uint32_t ExtractNumber(UTF16String const&);
template std::int32_t ExtractNumber(UTF16String const&);
template std::int64_t ExtractNumber(UTF16String const&);
template std::uint64_t ExtractNumber(UTF16String const&);
template float ExtractNumber(UTF16String const&);
template double ExtractNumber(UTF16String const&);

} // namespace brindle::proplist::impl
