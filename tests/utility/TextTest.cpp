#include <brindle/utility/Calculator.h>
#include <brindle/utility/DecodeText.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/ParseNumbers.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/TextConversions.h>
#include <brindle/utility/TextOperations.h>

#include "utility/src/numbers/Separators.h"

#include <gtest/gtest.h>

#include <iostream>
#include <limits>
#include <random>
#include <set>
#include <sstream>
#include <unordered_set>

using namespace brindle;
using namespace brindle::utility;
using namespace std::string_literals;

namespace {

struct Malformed {
    std::string bytes;
    std::u16string text;
};

/// The examples of the Unicode standard, and ends that are cut off.
Malformed const kMalformed[] = {
    {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82"
     "A",
     u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
    {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF"
     "A",
     u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
    {"\xF4\x91\x92\x93\xFF"
     "A\x80\xBF"
     "B",
     u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB"},
    {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
     "A",
     u"\uFFFD\uFFFD\uFFFD\uFFFDA"},
    {"a\0\xED\x9F\xBF\xF0\x9F\x98\x80z"s, u"a\0\uD7FF\U0001F600z"s},
    {"cut\xF0\x9F\x98 off\xED", u"cut\uFFFD off\uFFFD"},
};

} // namespace

TEST(Text, IsDecodedToItsEndWhateverIsMalformed) {
    for (auto const& each : kMalformed) {
        EXPECT_EQ(ToStdUtf16(Utf16(each.bytes)), each.text);
    }
    // What is malformed stands anywhere in the blocks of a long text.
    std::minstd_rand random(1);
    std::string bytes;
    std::u16string text;
    for (int piece = 0; piece < 3000; ++piece) {
        auto const& each = kMalformed[random() % std::size(kMalformed)];
        auto const count = random() % (piece % 40 == 0 ? 5000 : 20);
        (bytes += each.bytes) += std::string(count, 'x') + "\xC3\xA9.";
        (text += each.text) += std::u16string(count, u'x') + u"\u00E9.";
    }
    TextReport report;
    EXPECT_EQ(ToStdUtf16(DecodeText(bytes.data(), bytes.size(), &report)), text);
    EXPECT_EQ(report.replacedCount,
              static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\uFFFD')));
    EXPECT_EQ(report.firstReplaced, text.find(u'\uFFFD'));
}

TEST(Text, GoesToTheStandardLibraryAndBack) {
    UTF16String const text = u"a\0\u20AC\U0001F600"_utf16;
    std::string const utf8 = "a\0\xE2\x82\xAC\xF0\x9F\x98\x80"s;
    EXPECT_EQ(ToStd(text), utf8);
    EXPECT_EQ(ToStd(Utf8(utf8)), utf8);
    EXPECT_EQ(Utf16(Utf8(text)), text);
    EXPECT_EQ(Utf16(ToStdWide(text)), text);
    EXPECT_EQ(Utf8(ToStdUtf16(text)), Utf8(L"a\0\u20AC\U0001F600"s));
    EXPECT_EQ("a\0\u20AC\U0001F600"_utf16, text);

    UTF16String const lone = {0xDC00, 'a', 0xD800, 0xD83D, 0xDE00, 0xD800};
    EXPECT_EQ(ToStd(lone), "\uFFFDa\uFFFD\U0001F600\uFFFD");
    EXPECT_EQ(ToStdWide(lone), L"\uFFFDa\uFFFD\U0001F600\uFFFD");
    EXPECT_EQ(Utf16(std::wstring{static_cast<wchar_t>(0x110000), wchar_t{0xD800}, L'x'}),
              u"\uFFFD\uFFFDx");
    EXPECT_EQ(Utf16(ToStdUtf16(lone)), u"\uFFFDa\uFFFD\U0001F600\uFFFD");
}

TEST(Text, OfAnyTypeIsComparedAndInserted) {
    EXPECT_TRUE(u"caf\u00E9"_utf16 == u"caf\u00E9");
    EXPECT_TRUE(u"a"s != u"b"_utf16);
    EXPECT_FALSE(u"a"_utf16 == u"ab");
    EXPECT_TRUE("caf\u00E9"_utf8 == "caf\u00E9"s);
    EXPECT_TRUE("a" != "b"_utf8);

    std::ostringstream bytes;
    bytes << u"\u20AC "_utf16 << "\u20AC"_utf8;
    EXPECT_EQ(bytes.str(), "\u20AC \u20AC");
    oUTF16StringStream units;
    units << "\u20AC "_utf8
          << "\u20AC "s << u"\u20AC"s << std::string_view(" x");
    EXPECT_EQ(units.str(), u"\u20AC \u20AC \u20AC x");
    oUTF8StringStream text;
    text << u"\u20AC "_utf16 << "\u20AC"s;
    EXPECT_EQ(text.str(), "\u20AC \u20AC");
}

TEST(Text, GoesToStandardOutputAsItIs) {
    testing::internal::CaptureStdout();
    std::string const longLine(1000, 'x');
    streams::TextOut << u"\u20AC "_utf16 << Utf16(longLine);
    streams::TextOut.put(0xD83D);
    std::cout << "between";
    streams::TextOut.put(0xDE00) << '\n' << std::flush;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\u20AC " + longLine + "between\U0001F600\n");
    testing::internal::CaptureStderr();
    streams::TextErr << "error";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error");
}

TEST(DecodeText, FindsTheEncoding) {
    using E = TextEncoding;
    struct Case {
        char const* name;
        std::string bytes;
        std::u16string text;
        E encoding;
        std::size_t replaced = 0;
    } const cases[] = {
        {"nothing", "", u"", E::kUTF8},
        {"UTF-8", "caf\xC3\xA9", u"caf\u00E9", E::kUTF8},
        {"UTF-8 with a mark", "\xEF\xBB\xBFx", u"x", E::kUTF8},
        {"UTF-16 with a mark", "\xFF\xFE\xAC\x20"s, u"\u20AC", E::kUTF16LittleEndian},
        {"the other byte order", "\xFE\xFF\x20\xAC"s, u"\u20AC", E::kUTF16BigEndian},
        {"UTF-16 without a mark", "a\0b\0\xAC\x20"s, u"ab\u20AC", E::kUTF16LittleEndian},
        {"the other byte order", "\0a\0b\x20\xAC"s, u"ab\u20AC", E::kUTF16BigEndian},
        {"a lone surrogate and half a unit", "\xFE\xFF\xD8\0\0x\0"s, u"\uFFFDx\uFFFD",
         E::kUTF16BigEndian, 2},
        {"malformed behind a mark", "\xEF\xBB\xBF\xE9", u"\uFFFD", E::kUTF8, 1},
        {"Latin-1", "caf\xE9", u"caf\u00E9", E::kLatin1},
    };
    for (auto const& each : cases) {
        SCOPED_TRACE(each.name);
        TextReport report;
        auto const text = DecodeText(each.bytes.data(), each.bytes.size(), &report, E::kLatin1);
        EXPECT_EQ(ToStdUtf16(text), each.text);
        EXPECT_EQ(report.encoding, each.encoding);
        EXPECT_EQ(report.replacedCount, each.replaced);
    }
    EXPECT_EQ(DecodeText(nullptr, 0), u"");
}

TEST(TextOperations, TakeTextApart) {
    auto const joined = [](std::vector<UTF16String> const& inTexts) {
        std::string text;
        for (auto const& each : inTexts) {
            text += ToStd(each) + '|';
        }
        return text;
    };
    EXPECT_EQ(joined(Lines(u""_utf16)), "");
    EXPECT_EQ(joined(Lines(u"a\r\nb\rc\n\n\r\r\nd"_utf16)), "a|b|c||||d|");
    EXPECT_EQ(joined(Lines(u"a\n"_utf16)), "a|");
    EXPECT_EQ(joined(Words(u" \t one\u00A0two\u3000\r\nthree"_utf16)), "one|two|three|");
    EXPECT_EQ(joined(Words(u" "_utf16)), "");
    EXPECT_EQ(Trim(u"\u2003 a b\t"_utf16), u"a b");
    EXPECT_EQ(Trim(u" \n"_utf16), u"");
    EXPECT_TRUE(StartsWith(u"abc"_utf16, u"ab"_utf16));
    EXPECT_FALSE(StartsWith(u"a"_utf16, u"ab"_utf16));
    EXPECT_TRUE(EndsWith(u"abc"_utf16, u"bc"_utf16));
    EXPECT_FALSE(EndsWith(u"c"_utf16, u"bc"_utf16));
    EXPECT_TRUE(StartsWithIgnoringCase(u"Stra\u00DFe 1"_utf16, u"STRASSE"_utf16));
    EXPECT_FALSE(StartsWithIgnoringCase(u"Stra"_utf16, u"STRASSE"_utf16));
}

TEST(TextOperations, SortNamesAsPeopleDo) {
    std::vector<UTF16String> const inOrder =
        Lines(u"\n007\n7\n10\na\nClip 9\nclip 9\nclip 10\nclip 10 b\nclip 99999999999999999999999\n"
              u"clip 100000000000000000000000\nclip b\n\u00C9"_utf16);
    for (std::size_t i = 0; i < std::size(inOrder); ++i) {
        for (std::size_t j = 0; j < std::size(inOrder); ++j) {
            auto const order = CompareNatural(inOrder[i], inOrder[j]);
            SCOPED_TRACE(ToStd(inOrder[i] + u" and "_utf16 + inOrder[j]));
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order > 0, i > j);
        }
    }
    std::set<UTF16String, NaturalLess> const names(std::begin(inOrder), std::end(inOrder));
    EXPECT_EQ(names.size(), std::size(inOrder));
    std::unordered_set<UTF16String, TextHash> const hashed(names.begin(), names.end());
    EXPECT_EQ(hashed.count(u"clip 10"_utf16), 1u);
}

TEST(ParseNumbers, TakeTheWholeTextOrNothing) {
    EXPECT_EQ(ParseInteger(u" +42\n"_utf16), 42);
    EXPECT_EQ(ParseInteger(u"\uFF0D\uFF11\uFF12"_utf16), -12);
    EXPECT_EQ(ParseInteger(u"-9223372036854775808"_utf16),
              std::numeric_limits<std::int64_t>::min());
    for (auto const* const text : {u"", u"+", u"-", u"+-1", u"9223372036854775808", u"1 2", u"1.0",
                                   u"0x1", u"1e3", u"\u0661", u"1a"}) {
        EXPECT_EQ(ParseInteger(Utf16(text)), std::nullopt) << Utf16(text);
    }
    EXPECT_EQ(ParseNumber(u"-1.5e3"_utf16), -1500.0);
    EXPECT_EQ(ParseNumber(u" +.5"_utf16), 0.5);
    for (auto const* const text : {u"", u".", u"inf", u"-nan", u"--1", u"1e", u"1,5", u"1,000",
                                   u"1e999", u"1.5 m", u"1..5"}) {
        EXPECT_EQ(ParseNumber(Utf16(text)), std::nullopt) << Utf16(text);
    }
    SetUserSeparators({u',', u'.'});
    EXPECT_EQ(ParseNumber(u"1.234.567,25"_utf16, NumberForm::kUser), 1234567.25);
    for (auto const* const text : {u"1.", u"1..000", u".1", u"1,000.5", u"1,2,3"}) {
        EXPECT_EQ(ParseNumber(Utf16(text), NumberForm::kUser), std::nullopt) << Utf16(text);
    }
    EXPECT_EQ(NumberToString(std::numeric_limits<std::int64_t>::min(), kNumberFormat_Group),
              u"-9.223.372.036.854.775.808");
    EXPECT_EQ(NumberToString(~std::uint64_t{0}, kNumberFormat_Group | kNumberFormat_ForcePlus),
              u"+18.446.744.073.709.551.615");
    std::mt19937_64 random(1);
    for (int count = 0; count < 10'000; ++count) {
        auto const number = static_cast<std::int64_t>(random()) >> random() % 64;
        auto const text = NumberToString(number, kNumberFormat_Group);
        EXPECT_EQ(ParseInteger(text, NumberForm::kUser), number);
        if (number == static_cast<std::int32_t>(number)) {
            auto const asDouble = static_cast<double>(number);
            EXPECT_EQ(text, NumberToString(asDouble, 1, 1,
                                           kNumberFormat_Group | kNumberFormat_TrimZeros));
        }
    }
    EXPECT_EQ(ParseInteger(u"1.000,0"_utf16, NumberForm::kUser), std::nullopt);
    EXPECT_EQ(TryCalculate(u" ((1.080+200)*(-2,5)) /2 ^ 2"_utf16), -800.0);
    EXPECT_EQ(TryCalculate(u"2*-3e2-1"_utf16), -601.0);
    EXPECT_EQ(TryCalculate(u"\uFF12\uFF0B\uFF13"_utf16), 5.0);
    for (auto const* const text : {u"", u"1+", u"*2", u"(1", u"1)", u"1 2", u"1/0", u"(1/0)^0",
                                   u"1e999", u"10^999", u"1e", u"x", u"1,2,3", u"2 px", u"()"}) {
        EXPECT_EQ(TryCalculate(Utf16(text)), std::nullopt) << Utf16(text);
    }
    SetUserSeparators({0, 0});
}
