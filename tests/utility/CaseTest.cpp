#include <brindle/utility/StringUtils.h>

#include <gtest/gtest.h>

#include <locale.h>
#include <set>
#include <wctype.h>

using namespace brindle;
using namespace brindle::utility;

namespace {

UTF16String One(unsigned inUnit) {
    return UTF16String(1, static_cast<std::uint16_t>(inUnit));
}

} // namespace

TEST(Case, SpecialMappings) {
    EXPECT_EQ(UpperCase(u"Stra\u00DFe"_utf16), u"STRASSE"_utf16);
    EXPECT_EQ(LowerCase(u"STRASSE"_utf16), u"strasse"_utf16);
    EXPECT_EQ(FoldCase(u"\u00DF\uFB03"_utf16), u"ssffi"_utf16);
    EXPECT_EQ(UpperCase(u"\uFB03\u0390\u1FB7"_utf16),
              u"FFI\u0399\u0308\u0301\u0391\u0342\u0399"_utf16);
    EXPECT_EQ(FoldCase(u"\u03A3\u03C2\u03C3\u03F2"_utf16), u"\u03C2\u03C2\u03C2\u03C2"_utf16);
    EXPECT_EQ(UpperCase(u"\u03A3\u03C2\u03C3\u03F2"_utf16), u"\u03A3\u03A3\u03A3\u03A3"_utf16);
    EXPECT_EQ(LowerCase(u"\u039F\u03A3 \u03C2\u03F2"_utf16), u"\u03BF\u03C3 \u03C2\u03F2"_utf16);
    EXPECT_EQ(FoldCase(u"\u0130\u0131"_utf16), u"ii"_utf16);
    EXPECT_EQ(UpperCase(u"\u0130\u0131"_utf16), u"\u0130I"_utf16);
    EXPECT_EQ(LowerCase(u"\u0130\u0131"_utf16), u"i\u0131"_utf16);
    UTF16String const outside = u"\u0180\u0250\u0500\u2C00\U00010400\xDC00\xD801\u6F22"_utf16;
    EXPECT_EQ(UpperCase(outside) + LowerCase(outside) + FoldCase(outside),
              outside + outside + outside);
}

TEST(Case, TableHasTheFrozenUnitsAndObeysTheLawsOfCase) {
    std::set<unsigned> converted;
    unsigned expanding = 0;
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        UTF16String const text = One(unit);
        UTF16String const lower = LowerCase(text), upper = UpperCase(text), fold = FoldCase(text);
        if (lower != text || upper != text || fold != text) {
            converted.insert(unit);
        }
        expanding += upper.size() > 1 && fold.size() > 1;
        EXPECT_EQ(UpperCase(upper), upper) << unit;
        EXPECT_EQ(LowerCase(lower), lower) << unit;
        EXPECT_EQ(FoldCase(fold), fold) << unit;
        EXPECT_EQ(FoldCase(upper), fold) << unit;
    }
    EXPECT_EQ(converted.size(), 1446u);
    EXPECT_EQ(expanding, 102u);
}

TEST(Case, SingleMappingsAgreeWithTheSystem) {
    locale_t const system = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    if (system == nullptr) {
        GTEST_SKIP() << "the system has no locale C.UTF-8";
    }
    std::set<unsigned> const exceptions{0x0130, 0x0131, 0x03A3, 0x03C2, 0x03C3, 0x03F2};
    unsigned compared = 0;
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        UTF16String const text = One(unit);
        UTF16String const lower = LowerCase(text), upper = UpperCase(text);
        if ((lower == text && upper == text) || exceptions.count(unit) != 0) {
            continue;
        }
        EXPECT_EQ(lower, One(towlower_l(unit, system))) << unit;
        if (upper.size() == 1) {
            EXPECT_EQ(upper, One(towupper_l(unit, system))) << unit;
        }
        ++compared;
    }
    EXPECT_GT(compared, 1400u);
    freelocale(system);
}

TEST(Case, LongTextsAreTheSumOfTheirUnits) {
    std::uint16_t const kinds[] = {'q',    'Z',    0x00E9, 0x00DF, 0x0416,
                                   0x6F22, 0xD801, 0xFB03, 0xFF21};
    unsigned seed = 1;
    for (int round = 0; round < 400; ++round) {
        UTF16String text, lower, upper, fold;
        while (text.size() < static_cast<std::size_t>(round)) {
            seed = seed * 1664525u + 1013904223u;
            // Runs of one kind, so that every path meets whole chunks and their borders.
            UTF16String const run((seed >> 8) % 70, kinds[(seed >> 20) % std::size(kinds)]);
            text += run;
            for (std::uint16_t unit : run) {
                lower += LowerCase(One(unit));
                upper += UpperCase(One(unit));
                fold += FoldCase(One(unit));
            }
        }
        EXPECT_EQ(LowerCase(text), lower);
        EXPECT_EQ(UpperCase(text), upper);
        ToFoldCase(text);
        EXPECT_EQ(text, fold);
    }
}
