#include <brindle/utility/Unicode.h>
#include <brindle/xml/ReservedCharacters.h>

#include <gtest/gtest.h>

#include <random>

namespace brindle::xml::utils {

TEST(ReservedCharacters, GoBothWaysOnceInBothFormsOfText) {
    char const* const pieces[][2] = {
        {"<", "&lt;"},   {">", "&gt;"},    {"&", "&amp;"},
        {"'", "&apos;"}, {"\"", "&quot;"}, {"lt;#65;\xE2\x82\xAC", "lt;#65;\xE2\x82\xAC"}};
    std::mt19937 random(7);
    for (int round = 0; round < 2'000; ++round) {
        UTF8String text, encoded, narrow = "<"_utf8;
        for (auto count = random() % 12; count > 0; --count) {
            auto const& piece = pieces[random() % std::size(pieces)];
            text += utility::AsciiToUTF8Impl(piece[0]);
            encoded += utility::AsciiToUTF8Impl(piece[1]);
        }
        EncodeReservedCharacters(text, narrow);
        EncodeReservedCharacters(narrow, narrow);
        DecodeReservedCharacters(narrow, narrow);
        EXPECT_EQ(narrow, "<"_utf8 + text + "<"_utf8 + encoded);
        UTF16String wide = utility::UTF8to16(text);
        EncodeReservedCharacters(wide, wide);
        EXPECT_EQ(wide, utility::UTF8to16(encoded));
    }
}

} // namespace brindle::xml::utils
