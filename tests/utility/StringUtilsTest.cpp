#include <brindle/utility/StringUtils.h>

#include <gtest/gtest.h>

#include <random>

using namespace brindle;
using namespace brindle::utility;

namespace {

UTF16String Replaced(UTF16String inText, UTF16String const& inFind, UTF16String const& inBy) {
    ReplaceAllStringInString(inText, inFind, inBy);
    return inText;
}

} // namespace

TEST(StringUtils, ReplaceAllAgreesWithAModelAndStaysLinear) {
    std::mt19937 random(7);
    auto const randomText = [&random](std::size_t inBelow) {
        UTF16String text(random() % inBelow, 'a');
        for (std::uint16_t& unit : text) {
            unit = static_cast<std::uint16_t>('a' + random() % 2);
        }
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        UTF16String const text = randomText(60), find = randomText(6), by = randomText(4);
        UTF16String model = text;
        for (std::size_t at = 0; !find.empty() && (at = model.find(find, at)) != model.npos;
             at += by.size()) {
            model.replace(at, find.size(), by);
        }
        EXPECT_EQ(Replaced(text, find, by), model);
    }

    // These would take hours if each step searched the rest of the text again.
    UTF16String units(2'000'000, 'a');
    EXPECT_EQ(Replaced(units, u"a"_utf16, u"bc"_utf16).size(), 4'000'000u);
    EXPECT_EQ(Replaced(units, UTF16String(500'000, 'a') + u"b"_utf16, u""_utf16), units);
    ReplaceAllStringInString(units, units, units);
    EXPECT_EQ(units.size(), 2'000'000u);
}

TEST(StringUtils, ReplaceInStringExpandsPlaceholders) {
    EXPECT_EQ(ReplaceInString(u"@0@1@2@3@4@5@6@7@8@9 a@@b@@0 @x@:@/@"_utf16, u"Edit"_utf16,
                              u"1"_utf16, u"2"_utf16, u"3"_utf16, u"4"_utf16, u"5"_utf16,
                              u"6"_utf16, u""_utf16, u"8"_utf16, u"@0"_utf16),
              u"Edit1234568@0 a@b@0 @x@:@/@"_utf16);
}

TEST(StringUtils, LineEndings) {
    auto const undefined = static_cast<LineEndingType>(3);
    struct {
        LineEndingType type;
        UTF16String text;
        UTF16String converted;
    } const cases[] = {
        {kLineEnding_LF, u"a\r\nb\n"_utf16, u"a\nb\n"_utf16},
        {kLineEnding_CRLF, u"\r\r\n\n\r"_utf16, u"\r\n\r\n\r\n\r\n"_utf16},
        {kLineEnding_CR, u"a\n\rb"_utf16, u"a\r\rb"_utf16},
        {undefined, u"a\r\nb"_utf16, u"ab"_utf16},
        {undefined, u"\r\n"_utf16, u"\r\n"_utf16},
    };
    for (auto const& each : cases) {
        UTF16String text = each.text;
        ConvertLineEndings(each.type, text);
        EXPECT_EQ(text, each.converted);
    }
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
