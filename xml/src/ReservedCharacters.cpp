#include <brindle/xml/ReservedCharacters.h>

#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace brindle::xml::utils {

namespace {

struct Reserved {
    std::uint8_t character;
    std::string_view reference;
};

/// In the order of decoding. The ampersand is last, so that no reference is decoded twice.
constexpr Reserved kReserved[] = {
    {'<', "&lt;"}, {'>', "&gt;"}, {'\'', "&apos;"}, {'"', "&quot;"}, {'&', "&amp;"}};

constexpr auto kReferences = [] {
    std::array<std::string_view, 256> references{};
    for (Reserved const& reserved : kReserved) {
        references[reserved.character] = reserved.reference;
    }
    return references;
}();

constexpr std::size_t kBlock = 16;

/// Has no branch, so that the compiler makes a few vector instructions of it.
bool HasReserved(std::uint8_t const* inBlock) noexcept {
    unsigned seen = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        std::uint8_t const byte = inBlock[i];
        seen |= static_cast<unsigned>(byte == '<') | static_cast<unsigned>(byte == '>') |
                static_cast<unsigned>(byte == '\'') | static_cast<unsigned>(byte == '"') |
                static_cast<unsigned>(byte == '&');
    }
    return seen != 0;
}

std::uint8_t const* FindReserved(std::uint8_t const* inText, std::uint8_t const* inEnd) noexcept {
    while (inEnd - inText >= std::ptrdiff_t{kBlock} && !HasReserved(inText)) {
        inText += kBlock;
    }
    while (inText != inEnd && kReferences[*inText].empty()) {
        ++inText;
    }
    return inText;
}

} // namespace

void EncodeReservedCharacters(UTF8String const& inText, UTF8String& ioText) {
    if (&inText == &ioText) {
        EncodeReservedCharacters(UTF8String(inText), ioText);
        return;
    }
    std::uint8_t const* text = inText.data();
    std::uint8_t const* const end = text + inText.size();
    for (;;) {
        std::uint8_t const* const reserved = FindReserved(text, end);
        ioText.append(text, reserved);
        if (reserved == end) {
            return;
        }
        std::string_view const reference = kReferences[*reserved];
        ioText.append(reference.begin(), reference.end());
        text = reserved + 1;
    }
}

void EncodeReservedCharacters(UTF16String const& inText, UTF16String& outText) {
    UTF8String encoded;
    EncodeReservedCharacters(brindle::utility::UTF16to8(inText), encoded);
    outText = brindle::utility::UTF8to16(encoded);
}

void DecodeReservedCharacters(UTF16String const& inText, UTF16String& outText) {
    outText = inText;
    for (Reserved const& reserved : kReserved) {
        brindle::utility::ReplaceAllStringInString(
            outText, UTF16String(reserved.reference.begin(), reserved.reference.end()),
            UTF16String(1, reserved.character));
    }
}

void DecodeReservedCharacters(UTF8String const& inText, UTF8String& outText) {
    UTF16String decoded = brindle::utility::UTF8to16(inText);
    DecodeReservedCharacters(decoded, decoded);
    outText = brindle::utility::UTF16to8(decoded);
}

} // namespace brindle::xml::utils
