#include "proplist/src/document/NumberText.h"

#include "utility/src/base/CharConversions.h"

#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/StringStreams.h>

#include <brindle/utility/Digits.h>

#include <locale>
#include <optional>
#include <system_error>

namespace brindle::proplist::impl {

namespace {

/// Reads the texts that the writer makes. Returns nothing for any other text, which is left to a
/// stream.
template <typename T>
std::optional<T> ReadPlain(UTF16String const& inText) {
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
    // `from_chars` accepts "inf" and "nan", a stream does not.
    std::size_t const first = length != 0 && inText[0] == '-' ? 1 : 0;
    if (first == length || !utility::IsDigit(inText[first])) {
        return std::nullopt;
    }
    T number;
    auto const result = utility::FromChars(text, text + length, number);
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
    stream.exceptions(std::ios_base::badbit); // otherwise a failed allocation would read as 0
    stream >> number;
    return number;
}

#define BRN_INSTANTIATE(Name, T, ...) template T ExtractNumber(UTF16String const&);
BRN_PROPERTY_NUMBER_TYPES(BRN_INSTANTIATE)
#undef BRN_INSTANTIATE

} // namespace brindle::proplist::impl
