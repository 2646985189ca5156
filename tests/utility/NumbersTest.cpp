#include <brindle/utility/Calculator.h>
#include <brindle/utility/Locale.h>

#include "tests/utility/NumbersModel.h"
#include "utility/src/Separators.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <thread>

namespace brindle::utility {

namespace {

/// How many random cases a test goes through; BRINDLE_CASES asks for more.
int Cases() {
    char const* const cases = std::getenv("BRINDLE_CASES");
    return cases != nullptr ? std::atoi(cases) : 30'000;
}

class Numbers : public testing::Test {
protected:
    Numbers() { SetUserSeparators({u'.', u','}); }
    ~Numbers() override { SetUserSeparators({u'.', u','}); }

    std::mt19937 mRandom{20'260'801};

    int Below(int inBound) { return std::uniform_int_distribution<>(0, inBound - 1)(mRandom); }

    template <std::size_t Size>
    char16_t AnyOf(char16_t const (&inUnits)[Size]) {
        return inUnits[Below(static_cast<int>(Size) - 1)];
    }

    /// Any bits, a magnitude of everyday, or a number near a tie of its decimals.
    double AnyDouble() {
        switch (Below(4)) {
        case 0: {
            auto const bits = std::uint64_t{mRandom()} << 32 | mRandom();
            double value;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        case 1:
            return (Below(2'000'001) - 1'000'000) / 8.0;
        case 2:
            return (Below(2'000'001) - 1'000'000) * std::pow(10.0, Below(45) - 25);
        default: {
            double const edges[] = {0.0, 0.5, 2147483647.5, 1e18, 1e21, 1e22, INFINITY, NAN};
            return std::nextafter(edges[Below(8)], edges[Below(8)]) * (Below(2) * 2 - 1);
        }
        }
    }
};

std::string Narrow(UTF16String const& inText) {
    UTF8String const bytes = UTF16to8(inText);
    return {bytes.begin(), bytes.end()};
}

TEST_F(Numbers, AreWrittenAsFieldsShowThem) {
    struct {
        double value;
        int integerDigits, decimals;
        std::uint16_t flags;
        char const* text;
    } const rows[] = {
        {-0.001, 1, 2, 0x00, "-0.00"},
        {-0.0, 1, 2, 0x00, "0.00"},
        {2.5, 1, 0, 0x00, "3"},
        {0.5, 1, 0, 0x00, "1"},
        {5.0, 3, 0, 0x02, "  5"},
        {5.0, 6, 0, 0x0A, "   ,  5"},
        {12.5, 5, 1, 0x08, "00,012.5"},
        {1234567.0, 1, 0, 0x08, "1,234,567"},
        {2.0, 1, 2, 0x04, "2"},
        {100.0, 1, 0, 0x04, "100"},
        {0.0, 1, 0, 0x10, "+0"},
        {0.0, 1, 0, 0x50, "0"},
        {1.0, 1, 0, 0x20, " 1"},
        {-1.0, 1, 0, 0x30, "-1"},
        {3e9, 1, 0, 0x1F, "+3.000000e+09"},
        {1.0, 1, 1 << 30, 0x00, "1.000000e+00"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.text,
                  Narrow(NumberToString(row.value, row.integerDigits, row.decimals, row.flags)));
    }
    EXPECT_EQ("3.14", Narrow(NumberToString(3.14159)));
    EXPECT_EQ("-2147483648", Narrow(NumberToString(std::numeric_limits<std::int32_t>::min())));
    EXPECT_EQ("-9223372036854775808",
              Narrow(NumberToString(std::numeric_limits<std::int64_t>::min())));
    EXPECT_EQ("FFFFFFFF", Narrow(NumberToHexString(-1)));
    EXPECT_EQ("1A0", Narrow(NumberToHexString(0x1A0)));
    SetUserSeparators({u',', u'.'});
    EXPECT_EQ("1.234,50", Narrow(NumberToString(1234.5, 1, 2, kNumberFormat_Group)));
    EXPECT_EQ("1,234.50", Narrow(NumberToString(1234.5, 1, 2, 0x09)));
}

TEST_F(Numbers, HaveTheDigitsOfTheCLibrary) {
    for (int i = 0; i < Cases(); ++i) {
        platform::NumberSeparators const user =
            i % 2 == 0 ? platform::NumberSeparators() : platform::NumberSeparators{u',', u'\u202F'};
        SetUserSeparators(user);
        double const value = AnyDouble();
        int const integerDigits = Below(25);
        int const decimals = Below(2) == 0 ? Below(61) : Below(8) - 1;
        auto const flags = static_cast<std::uint16_t>(Below(128));
        ASSERT_EQ(Narrow(model::NumberToString(value, integerDigits, decimals, flags, user)),
                  Narrow(NumberToString(value, integerDigits, decimals, flags)))
            << value << ' ' << integerDigits << ' ' << decimals << ' ' << flags;
    }
}

TEST_F(Numbers, TranslateBothWaysUnitByUnit) {
    SetUserSeparators({u',', u'.'});
    UTF16String text = u"1,234.5 a.b 1."_utf16;
    InternationalizeNum(text);
    EXPECT_EQ(u"1.234,5 a.b 1."_utf16, text);
    text = u"\uFF11\u30012\u3002\uFF1F\uFF20\u3003.,"_utf16;
    DeInternationalizeNum(text);
    EXPECT_EQ(u"1.2,?\uFF20\u3003,."_utf16, text);
    SetUserSeparators({u'|', u'|'});
    text = u"1|2"_utf16;
    DeInternationalizeNum(text);
    EXPECT_EQ(u"1.2"_utf16, text);
}

TEST_F(Numbers, AreReadAsAStreamReadsThem) {
    EXPECT_EQ(1234.5, StringToNumber(u"1,234.5"_utf16, 0));
    EXPECT_EQ(12.5, StringToNumber(u"\uFF11\uFF12\u3002\uFF15"_utf16, 0));
    EXPECT_EQ(0.0, StringToNumber(u"\uFF11"_utf16, kNumberParse_NoDeInternationalize));
    EXPECT_EQ(0.0, StringToNumber(u"-1e999"_utf16, 0)) << "the extraction fails";
    EXPECT_EQ(2.0, StringToNumber(UTF16String(1 << 20, u'0') + u"2"_utf16, 0));
    for (int i = 0; i < Cases(); ++i) {
        SetUserSeparators(i % 2 == 0 ? platform::NumberSeparators{u'.', u','}
                                     : platform::NumberSeparators{u',', u'\u00A0'});
        UTF16String text(static_cast<std::size_t>(Below(3)), u' ');
        for (int left = Below(30); left > 0; --left) {
            text += Below(2) == 0 ? static_cast<char16_t>(u'0' + Below(10))
                                  : AnyOf(u"00119..,,eE+-  \t\u00A0\u3001\u3002\uFF11\uFF0Exinf\0");
        }
        auto const flags = static_cast<std::uint16_t>(Below(4));
        ASSERT_EQ(model::StringToNumber(text, flags), StringToNumber(text, flags)) << Narrow(text);
    }
}

TEST_F(Numbers, DisplayedOnesAreReadInTheLocaleThatReadsMore) {
    struct {
        char const* text;
        double value;
    } const rows[] = {{"", 0.0}, {"12.5 kg", 12.5}, {"-3", -3.0}, {"abc", 0.0}, {"1e999", 0.0}};
    for (auto const& row : rows) {
        EXPECT_EQ(row.value, Locale::GetValueFromDisplayString(AsciiToUTF16(row.text)));
    }
}

TEST_F(Numbers, SeparatorsAreReadOnceWhateverThreadComesFirst) {
    SetUserSeparators({0, 0}); // as at load
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            auto const expected = platform::UserNumberSeparators();
            EXPECT_EQ(expected.decimal, UserSeparators().decimal);
            EXPECT_EQ(expected.thousands, UserSeparators().thousands);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST_F(Numbers, CalculatedAsTold) {
    struct {
        char16_t const* expression;
        double value;
    } const rows[] = {
        {u"1+2*3", 7},
        {u"(1+2)*3", 9},
        {u"(2+3)*(4-1)", 15},
        {u"(1)+(2)", 3},
        {u"((7))", 7},
        {u"7-2-1", 4},
        {u"7-(2-1)", 6},
        {u"8/2*3", 12},
        {u"100/10/5", 2},
        {u"10/4", 2.5},
        {u"10/0", 10},
        {u"5/(2-2)", 5},
        {u"0/0", 0},
        {u"2^10", 1024},
        {u"2^3^2", 64},
        {u"2^0.5", std::sqrt(2)},
        {u"-5", -5},
        {u"+5", 5},
        {u"--5", -5},
        {u"5-", 5},
        {u"3*", 0},
        {u"2**3", 6},
        {u"2+*3", 5},
        {u"*3+2", 5},
        {u"2*-3", -3},
        {u"2^-1", 0},
        {u"1e3", 1000},
        {u"1E3", 1000},
        {u"1e-5", 0.00001},
        {u"1e5+2", 1e7},
        {u"2*3e2", 600},
        {u"e5", 5},
        {u"2e", 2},
        {u"1,000+1", 1001},
        {u" 1 + 2 ", 3},
        {u"12 kg", 12},
        {u"abc", 0},
        {u"", 0},
        {u"1.2.3", 1.2},
        {u"2(3)", 2},
        {u"((1)", 0},
        {u"1)+(2", 1},
        {u"((1)+(2))", 0},
        {u"*(1)", 0},
        {u"\uFF13\uFF0B4", 7},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.value,
                  Calculate(UTF16String(row.expression,
                                        row.expression + std::u16string(row.expression).size())))
            << std::string(row.expression, row.expression + std::u16string(row.expression).size());
    }
    SetUserSeparators({u',', u'.'});
    EXPECT_EQ(2.5, Calculate(u"1,5+1"_utf16));
    EXPECT_EQ(1501.0, Calculate(u"1.500+1"_utf16));
}

TEST_F(Numbers, CalculatedAsCutByCut) {
    for (int i = 0; i < Cases(); ++i) {
        SetUserSeparators(i % 2 == 0 ? platform::NumberSeparators{u'.', u','}
                                     : platform::NumberSeparators{u',', u'.'});
        std::string text;
        for (int left = Below(24); left > 0; --left) {
            text += static_cast<char>(Below(3) == 0 ? AnyOf(u"((()))") : AnyOf(u"1234.,+-*/^eE()"));
        }
        double const expected = model::Calculate(text);
        double const value = Calculate(UTF16String(text.begin(), text.end()));
        ASSERT_TRUE(expected == value || (std::isnan(expected) && std::isnan(value)))
            << text << " is " << expected << ", not " << value;
    }
}

TEST_F(Numbers, CalculatedInTimeHoweverDeep) {
    std::string soup, nested, closed;
    for (int i = 0; i < 65'536; ++i) {
        soup += static_cast<char>(AnyOf(u"1+-*/^e()"));
        nested += i < 32'768 ? (i % 2 == 0 ? "(" : "1+") : "";
    }
    std::string const balanced = nested + std::string(16'384, ')');
    for (std::string const& piece :
         {std::string("("), std::string(")"), std::string("1+"), std::string("-"),
          std::string("((1)+"), std::string("(1)*"), std::string(")("), soup, balanced}) {
        UTF16String text;
        while (text.size() < 65'536) {
            text.append(piece.begin(), piece.end());
        }
        auto const start = std::chrono::steady_clock::now();
        Calculate(text);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2))
            << piece.substr(0, 10);
    }
    EXPECT_EQ(0.0, Calculate(UTF16String(1 << 20, u'(') + UTF16String(1 << 20, u')')));
}

} // namespace

} // namespace brindle::utility
