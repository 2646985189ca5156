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

UTF16String One(std::size_t inUnit) {
    return UTF16String(1, static_cast<std::uint16_t>(inUnit));
}

struct {
    UTF16String (*convert)(UTF16String const&);
    void (*convertInPlace)(UTF16String&);
    /// FNV-1a of the mappings of all 65536 units, each followed by a NUL. It was computed from the
    /// Unicode database and the frozen set of units, independently of the library.
    std::uint32_t sum;
} const kMappings[] = {{LowerCase, ToLowerCase, 0x52FC7D32},
                       {UpperCase, ToUpperCase, 0x8B88E47C},
                       {FoldCase, ToFoldCase, 0x6C2776CC}};

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
    EXPECT_EQ(ReplaceInString(u"@1@0@2"_utf16, u"a"_utf16, u"b"_utf16), u"ba"_utf16);
}

TEST(StringUtils, LineEndings) {
    auto const undefined = static_cast<LineEndingType>(3);
    std::tuple<LineEndingType, UTF16String, UTF16String> const cases[] = {
        {kLineEnding_LF, u"a\r\nb\n"_utf16, u"a\nb\n"_utf16},
        {kLineEnding_CRLF, u"\r\r\n\n\r"_utf16, u"\r\n\r\n\r\n\r\n"_utf16},
        {kLineEnding_CR, u"a\n\rb"_utf16, u"a\r\rb"_utf16},
        {undefined, u"a\r\nb"_utf16, u"ab"_utf16},
        {undefined, u"\r\n"_utf16, u"\r\n"_utf16}};
    for (auto [type, text, converted] : cases) {
        ConvertLineEndings(type, text);
        EXPECT_EQ(text, converted);
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

TEST(Case, EveryUnitIsMappedByTheUnicodeDatabase) {
    for (auto const& mapping : kMappings) {
        std::uint32_t sum = 2166136261;
        for (std::size_t unit = 0; unit < 0x10000; ++unit) {
            for (std::uint16_t const mapped : mapping.convert(One(unit)) + One(0)) {
                sum = (sum ^ mapped) * 16777619;
            }
        }
        EXPECT_EQ(sum, mapping.sum);
    }
    EXPECT_EQ(UpperCase(u"Stra\u00DFe \u0131\u0130\u03C2"_utf16), u"STRASSE I\u0130\u03A3"_utf16);
    EXPECT_EQ(FoldCase(u"\uFB03\u0130\u0131\u03A3"_utf16), u"ffiii\u03C2"_utf16);
}

TEST(Case, LongTextsAreMappedUnitByUnit) {
    UTF16String const kinds = u"qZ\u00E9\u00DF\u0416\u6F22\xD801\u24B6\u24D0\uFB03\uFF21"_utf16;
    std::mt19937 random(1);
    for (std::size_t round = 0; round < 400; ++round) {
        UTF16String text;
        while (text.size() < round) {
            // Runs of one kind, so that every code path sees whole chunks and their borders.
            text.append(random() % 70, kinds[random() % kinds.size()]);
        }
        for (auto const& mapping : kMappings) {
            UTF16String sum;
            for (std::uint16_t const unit : text) {
                sum += mapping.convert(One(unit));
            }
            UTF16String converted = text;
            mapping.convertInPlace(converted);
            EXPECT_EQ(converted, sum);
        }
    }
}
