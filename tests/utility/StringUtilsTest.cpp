#include <brindle/utility/StringUtils.h>

#include <gtest/gtest.h>

using namespace brindle;
using namespace brindle::utility;

namespace {

UTF16String Replaced(UTF16String inText, UTF16String const& inFind, UTF16String const& inBy) {
    ReplaceAllStringInString(inText, inFind, inBy);
    return inText;
}

UTF16String Converted(LineEndingType inType, UTF16String inText) {
    ConvertLineEndings(inType, inText);
    return inText;
}

} // namespace

TEST(StringUtils, ReplaceAllGoesOnBehindTheReplacement) {
    EXPECT_EQ(Replaced(u"aaa"_utf16, u"a"_utf16, u"aa"_utf16), u"aaaaaa"_utf16);
    EXPECT_EQ(Replaced(u"abab"_utf16, u"ab"_utf16, u""_utf16), u""_utf16);
    EXPECT_EQ(Replaced(u"aaaaa"_utf16, u"aa"_utf16, u"b"_utf16), u"bba"_utf16);
    EXPECT_EQ(Replaced(u"xababacx"_utf16, u"abac"_utf16, u"-"_utf16), u"xab-x"_utf16);
    EXPECT_EQ(Replaced(u"aab"_utf16, u"ab"_utf16, u"b"_utf16), u"ab"_utf16);
    EXPECT_EQ(Replaced(u"abc"_utf16, u""_utf16, u"x"_utf16), u"abc"_utf16);
    UTF16String text = u"self"_utf16;
    ReplaceAllStringInString(text, text, text);
    EXPECT_EQ(text, u"self"_utf16);
}

TEST(StringUtils, ReplaceAllAgreesWithAModelAndStaysLinear) {
    unsigned seed = 7;
    auto const random = [&seed](unsigned inBelow) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 16) % inBelow;
    };
    auto const randomText = [&random](unsigned inBelow) {
        UTF16String text(random(inBelow), 'a');
        for (std::uint16_t& unit : text) {
            unit = static_cast<std::uint16_t>('a' + random(2));
        }
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        UTF16String const text = randomText(60), find = u"b"_utf16 + randomText(5);
        UTF16String const by = randomText(4);
        UTF16String model = text;
        for (std::size_t at = 0; (at = model.find(find, at)) != UTF16String::npos;
             at += by.size()) {
            model.replace(at, find.size(), by);
        }
        EXPECT_EQ(Replaced(text, find, by), model);
    }

    // Hours where each step would look at the rest of the text again.
    UTF16String const units(2'000'000, 'a');
    EXPECT_EQ(Replaced(units, u"a"_utf16, u"bc"_utf16).size(), 4'000'000u);
    EXPECT_EQ(Replaced(units, UTF16String(500'000, 'a') + u"b"_utf16, u""_utf16), units);
}

TEST(StringUtils, ReplaceInStringExpandsPlaceholders) {
    auto const expand = [](char16_t const* inPattern) {
        UTF16String pattern(inPattern, inPattern + std::char_traits<char16_t>::length(inPattern));
        return ReplaceInString(pattern, u"Edit"_utf16, u"one"_utf16, u""_utf16, u""_utf16,
                               u""_utf16, u""_utf16, u""_utf16, u""_utf16, u""_utf16, u"@0"_utf16);
    };
    EXPECT_EQ(expand(u"@0 Debug Event"), u"Edit Debug Event"_utf16);
    EXPECT_EQ(expand(u"@1@0"), u"oneEdit"_utf16);
    EXPECT_EQ(expand(u"a@@b@@0"), u"a@b@0"_utf16);
    EXPECT_EQ(expand(u"a@"), u"a@"_utf16);
    EXPECT_EQ(expand(u"@x@:@/"), u"@x@:@/"_utf16);
    EXPECT_EQ(expand(u"@9@2."), u"@0."_utf16);
}

TEST(StringUtils, LineEndings) {
    auto const undefined = static_cast<LineEndingType>(3);
    EXPECT_EQ(Converted(kLineEnding_LF, u"a\r\nb\n"_utf16), u"a\nb\n"_utf16);
    EXPECT_EQ(Converted(kLineEnding_CRLF, u"a\nb"_utf16), u"a\r\nb"_utf16);
    EXPECT_EQ(Converted(kLineEnding_CRLF, u"\r\r\n\n\r"_utf16), u"\r\n\r\n\r\n\r\n"_utf16);
    EXPECT_EQ(Converted(kLineEnding_CR, u"a\n\rb"_utf16), u"a\r\rb"_utf16);
    EXPECT_EQ(Converted(kLineEnding_CR, u"plain"_utf16), u"plain"_utf16);
    EXPECT_EQ(Converted(undefined, u"a\r\nb"_utf16), u"ab"_utf16);
    EXPECT_EQ(Converted(undefined, u"\r\n"_utf16), u"\r\n"_utf16);

    UTF16String unchanged = u"a long line that has storage of its own\r\n"_utf16;
    std::uint16_t const* const storage = unchanged.data();
    ConvertLineEndings(kLineEnding_CRLF, unchanged);
    EXPECT_EQ(unchanged.data(), storage);
}

TEST(StringUtils, HexAndFullWidthDigits) {
    UTF16String hex = u"0xFf-12\uFB00\uFF21g"_utf16;
    ValidateForHex(hex);
    EXPECT_EQ(hex, u"0FF12FF"_utf16);

    UTF16String digits = u"\uFF00\uFF01\uFF11\uFF1F\uFF20"_utf16;
    EXPECT_TRUE(ToNumericCase(digits));
    EXPECT_EQ(digits, u"\uFF00!1?\uFF20"_utf16);
    EXPECT_FALSE(ToNumericCase(digits));
}
