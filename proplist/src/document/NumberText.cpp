#include "proplist/src/document/NumberText.h"

#include <brindle/utility/StringStreams.h>

#include "utility/src/base/Digits.h"

#include <charconv>
#include <cstdint>
#include <locale>
#include <optional>
#include <system_error>

namespace brindle::proplist::impl {

namespace {

/// Reads the texts that writers make, and not those of which it is not sure what a stream does.
template <typename T>
std::optional<T> ReadPlain(UTF16String const& inText) noexcept {
    char text[32];
    std::size_t const length = inText.size();
    if (length > sizeof text) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (inText[i] > 0x7F) {
            return std::nullopt;
        }
        text[i] = static_cast<char>(inText[i]);
    }
    // The names of what is not finite are numbers here, but to a stream they are none.
    std::size_t const first = length != 0 && inText[0] == '-' ? 1 : 0;
    if (first == length || !utility::IsDigit(inText[first])) {
        return std::nullopt;
    }
    T number;
    auto const result = std::from_chars(text, text + length, number);
    if (result.ec != std::errc() || result.ptr != text + length) {
        return std::nullopt;
    }
    return number;
}

} // namespace

template <typename T>
T ExtractNumber(UTF16String const& inText) {
    if (auto const plain = ReadPlain<T>(inText)) {
        return *plain;
    }
    T number = 0;
    iUTF16StringStream stream(inText);
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios_base::badbit); // or memory that runs out would read as 0
    stream >> number;
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
