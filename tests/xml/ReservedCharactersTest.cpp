#include <brindle/xml/ReservedCharacters.h>

#include <brindle/utility/Unicode.h>

#include <gtest/gtest.h>

#include <random>

namespace brindle::xml::utils {

namespace {

// Texts are made of pieces, so that both their other forms are known without looking for anything.
TEST(ReservedCharacters, GoBothWaysInBothFormsOfText) {
    struct {
        UTF8String text, encoded, decoded;
    } const pieces[] = {{"<"_utf8, "&lt;"_utf8, "<"_utf8},
                        {">"_utf8, "&gt;"_utf8, ">"_utf8},
                        {"'"_utf8, "&apos;"_utf8, "'"_utf8},
                        {"\""_utf8, "&quot;"_utf8, "\""_utf8},
                        {"& "_utf8, "&amp; "_utf8, "& "_utf8},
                        {"&lt;"_utf8, "&amp;lt;"_utf8, "<"_utf8},
                        {"&gt;"_utf8, "&amp;gt;"_utf8, ">"_utf8},
                        {"&apos;"_utf8, "&amp;apos;"_utf8, "'"_utf8},
                        {"lt;"_utf8, "lt;"_utf8, "lt;"_utf8},
                        {"&quot;"_utf8, "&amp;quot;"_utf8, "\""_utf8},
                        {"&amp;"_utf8, "&amp;amp;"_utf8, "&"_utf8},
                        {"&#65;"_utf8, "&amp;#65;"_utf8, "&#65;"_utf8},
                        {"\xE2\x82\xAC\t0123456789abcdef"_utf8,
                         "\xE2\x82\xAC\t0123456789abcdef"_utf8,
                         "\xE2\x82\xAC\t0123456789abcdef"_utf8}};
    std::mt19937 random(7);
    for (int round = 0; round < 2'000; ++round) {
        UTF8String text, encoded, decoded;
        for (auto count = random() % 12; count > 0; --count) {
            auto const& piece = pieces[random() % std::size(pieces)];
            text += piece.text;
            encoded += piece.encoded;
            decoded += piece.decoded;
        }
        UTF8String narrow = "<"_utf8;
        EncodeReservedCharacters(text, narrow);
        EXPECT_EQ(narrow, "<"_utf8 + encoded);
        EncodeReservedCharacters(narrow, narrow);
        EXPECT_EQ(narrow.substr(0, encoded.size() + 5), "<"_utf8 + encoded + "&lt;"_utf8);
        DecodeReservedCharacters(narrow = encoded, narrow);
        EXPECT_EQ(narrow, text);
        DecodeReservedCharacters(text, narrow);
        EXPECT_EQ(narrow, decoded);

        UTF16String wide = utility::UTF8to16(text);
        EncodeReservedCharacters(wide, wide);
        EXPECT_EQ(wide, utility::UTF8to16(encoded));
        DecodeReservedCharacters(wide, wide);
        EXPECT_EQ(wide, utility::UTF8to16(text));
    }
}

} // namespace

} // namespace brindle::xml::utils
