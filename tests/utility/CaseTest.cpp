#include <brindle/utility/StringUtils.h>

#include <gtest/gtest.h>

#include <random>

using namespace brindle;
using namespace brindle::utility;

namespace {

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
