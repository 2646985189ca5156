#include <brindle/utility/Calculator.h>
#include <brindle/utility/Locale.h>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Text.h"
#include "tests/utility/NumbersModel.h"
#include "utility/src/numbers/Separators.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <sstream>

namespace brindle::utility {

namespace {

using tests::Narrow;

class Numbers : public testing::Test {
protected:
    Numbers() { SetUserSeparators({u'.', u','}); }

    int Below(int inBound) { return static_cast<int>(mRandom() % static_cast<unsigned>(inBound)); }

    char16_t AnyOf(std::u16string const& inUnits) { return inUnits[mRandom() % inUnits.size()]; }

    /// Any bits, an everyday number, or a neighbour of a number at which the format changes.
    double AnyDouble() {
        double const edges[] = {0.0, 0.5, 2147483647.5, 1e18, 1e21, 1e22, INFINITY, NAN};
        auto const bits = std::uint64_t{mRandom()} << 32 | mRandom();
        double any;
        std::memcpy(&any, &bits, sizeof any);
        double const everyday = (Below(2'000'001) - 1'000'000) / 8.0;
        double const choices[] = {any, everyday, everyday * std::pow(10.0, Below(45) - 25),
                                  std::nextafter(edges[Below(8)], edges[Below(8)])};
        return choices[Below(4)] * (Below(2) == 0 ? 1 : -1);
    }

    /// Tries random cases with two pairs of separators in turn. BRINDLE_CASES in the environment
    /// sets their number.
    template <typename Case>
    void TryMany(std::uint16_t inThousands, Case inCase) {
        char const* const cases = std::getenv("BRINDLE_CASES");
        for (int left = cases != nullptr ? std::atoi(cases) : 30'000; left > 0; --left) {
            SetUserSeparators(left % 2 == 0 ? platform::NumberSeparators{u'.', u','}
                                            : platform::NumberSeparators{u',', inThousands});
            ASSERT_NO_FATAL_FAILURE(inCase());
        }
    }

    std::mt19937 mRandom{20'260'801};
};

TEST_F(Numbers, OfAllTypesAreWritten) {
    EXPECT_EQ(Narrow(NumberToString(5.0, 6, 0, 0x0A)), "   ,  5");
    EXPECT_EQ(Narrow(NumberToString(1.0, 1, 1 << 30, 0)), "1.000000e+00");
    EXPECT_EQ(Narrow(NumberToString(3.14159)), "3.14");
    EXPECT_EQ(Narrow(NumberToString(std::numeric_limits<std::int64_t>::min())),
              "-9223372036854775808");
    EXPECT_EQ(Narrow(NumberToString(~0ULL)), "18446744073709551615");
    EXPECT_EQ(Narrow(NumberToString(-5LL) + NumberToString(5u) + NumberToString(sizeof(int)) +
                     NumberToString(-6) + NumberToString(std::uint16_t{65535})),
              "-554-665535");
    EXPECT_EQ(Narrow(NumberToHexString(-1) + NumberToHexString(0x1A0)), "FFFFFFFF1A0");
}

TEST_F(Numbers, HaveTheDigitsOfTheCLibrary) {
    TryMany(u'\u202F', [this] {
        double const value = AnyDouble();
        int const integerDigits = Below(25);
        int const decimals = Below(2) == 0 ? Below(61) : Below(8) - 1;
        auto const flags = static_cast<std::uint16_t>(Below(128));
        ASSERT_EQ(Narrow(NumberToString(value, integerDigits, decimals, flags)),
                  Narrow(model::NumberToString(value, integerDigits, decimals, flags)))
            << value << ' ' << integerDigits << ' ' << decimals << ' ' << flags;
    });
}

TEST_F(Numbers, AreWrittenInTheNeutralFormIfNothingElseIsAsked) {
    EXPECT_EQ(NumberToString(1234.5, 6, 2), u"001234.50"_utf16);
}

TEST_F(Numbers, AreTranslatedUnitByUnit) {
    SetUserSeparators({u',', u'.'});
    UTF16String text = u"1,234.5 a.b 1."_utf16;
    InternationalizeNum(text);
    EXPECT_EQ(text, u"1.234,5 a.b 1."_utf16);
    text = u"\uFF11\u30012\u3002\uFF1F\uFF20\u3003.,"_utf16;
    DeInternationalizeNum(text);
    EXPECT_EQ(text, u"1.2,?\uFF20\u3003,."_utf16);
}

TEST_F(Numbers, AreReadAsAStreamReadsThem) {
    EXPECT_EQ(StringToNumber(u"\uFF11\uFF12\u3002\uFF15"_utf16, 0), 12.5);
    EXPECT_EQ(StringToNumber(u"\uFF11"_utf16, kNumberParse_NoDeInternationalize), 0.0);
    EXPECT_EQ(StringToNumber(u"-1e999"_utf16, 0), 0.0) << "the extraction fails";
    EXPECT_EQ(StringToNumber(UTF16String(1 << 20, u'0') + u"2"_utf16, 0), 2.0);
    TryMany(u'\u00A0', [this] {
        UTF16String text(mRandom() % 3, u' ');
        for (int left = Below(30); left > 0; --left) {
            text += AnyOf(Below(2) == 0 ? u"0123456789"
                                        : u"00119..,,eE+-  \t\u00A0\u3001\u3002\uFF11\uFF0Exinf");
        }
        auto const flags = static_cast<std::uint16_t>(Below(4));
        ASSERT_EQ(StringToNumber(text, flags), model::StringToNumber(text, flags)) << Narrow(text);
    });
}

constexpr char kLocaleSources[] = "/usr/share/i18n/locales/";

/// Makes a locale of the C library, compiled from a source, the user's for numbers. A process that
/// does so ends by `_Exit`, without the search for leaks, for the C library leaks LOCPATH.
void BecomeUserOf(std::string const& inSource, std::string const& inName,
                  tests::TemporaryDirectory const& inDirectory) {
    auto const compile = "localedef -c -i " + inSource + " -f UTF-8 " + inDirectory.Native(inName);
    EXPECT_NE(std::system((compile + " 2>/dev/null").c_str()), -1);
    ::setenv("LOCPATH", inDirectory.Native().c_str(), 1);
    ::unsetenv("LC_ALL");
    ::setenv("LC_NUMERIC", inName.c_str(), 1);
    SetUserSeparators({0, 0}); // as at load
}

/// Writes what a user of the locale sees and types to standard error.
void WriteAndReadAsUserOf(std::string const& inLocale) {
    tests::TemporaryDirectory const directory;
    BecomeUserOf(inLocale, "x.UTF-8", directory);
    std::cerr << Narrow(NumberToString(-1234.5, 1, 2, kNumberFormat_Group));
    for (char const* const text : {"1,5", "1\u202F234,5", "2.5", "-1,2345", "x", "", "1e999"}) {
        std::cerr << ' ' << Locale::GetValueFromDisplayString(AsciiToUTF16(text));
    }
    std::_Exit(0);
}

TEST_F(Numbers, FollowTheUsersLocale) {
    if (!std::filesystem::exists(kLocaleSources)) {
        GTEST_SKIP() << "no locale can be made here";
    }
    // In processes of their own, where no test has asked for the locale yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(WriteAndReadAsUserOf("fr_FR"), testing::ExitedWithCode(0),
                "^-1\u202F234,50 1\\.5 1234\\.5 2\\.5 -1\\.2345 0 0 0$");
    EXPECT_EXIT(WriteAndReadAsUserOf("en_US"), testing::ExitedWithCode(0),
                "^-1,234\\.50 15 1 2\\.5 -12345 0 0 0$")
        << "digits in wrong groups keep the value that they have left";
}

/// What a locale's source says of the separators, with "copy" followed.
std::string SeparatorsOf(std::string const& inLocale) {
    std::ifstream source(kLocaleSources + inLocale);
    std::string word, separators;
    while (source >> word && word != "LC_NUMERIC") {
    }
    while (source >> word && word != "END") {
        bool const isSeparator = word == "decimal_point" || word == "thousands_sep";
        if (word == "copy" && source >> word) {
            return SeparatorsOf(word.substr(1, word.size() - 2));
        }
        separators += isSeparator && source >> word ? word + ' ' : "";
    }
    return separators;
}

/// Writes to standard error what cannot be read as it was written, and how many pairs were tried.
void WriteAndReadByAllSeparators() {
    std::map<std::string, std::string> locales; // one for each pair
    for (auto const& entry : std::filesystem::directory_iterator(kLocaleSources)) {
        locales.emplace(SeparatorsOf(entry.path().filename()), entry.path().filename());
    }
    locales.erase("");
    ::setenv("LC_CTYPE", "not_there", 1);
    tests::TemporaryDirectory const directory;
    for (auto const& [separators, locale] : locales) {
        auto const copy = directory.Native("copy");
        std::ofstream(copy) << "LC_NUMERIC\ncopy \"" << locale << "\"\nEND LC_NUMERIC\n";
        BecomeUserOf(copy, "locale" + locale,
                     directory); // the C library remembers what it has loaded
        bool const hasComma = separators[1] == ',';
        for (double const value : {1234567.5, 0.25, -999999.75, 100.0}) {
            auto const text = NumberToString(value, 1, 2, kNumberFormat_Group);
            if (StringToNumber(text, 0) != value ||
                (text.find(u',') == text.size() - 3) != hasComma) {
                std::cerr << locale << " writes " << Narrow(text) << '\n';
            }
        }
    }
    std::cerr << (locales.size() > 6 ? "tried many" : "tried few");
    std::_Exit(0);
}

TEST_F(Numbers, HaveOneMeaningInEveryLocaleThatTheCLibraryHas) {
    if (!std::filesystem::exists(kLocaleSources)) {
        GTEST_SKIP() << "no locale can be made here";
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(WriteAndReadByAllSeparators(), testing::ExitedWithCode(0), "^tried many$");
}

TEST_F(Numbers, AreCalculatedFromWhatUsersType) {
    std::istringstream rows(
        "1+2*3=7;(1+2)*3=9;(2+3)*(4-1)=15;(1)+(2)=3;((7))=7;7-2-1=4;7-(2-1)=6;8/2*3=12;10/4=2.5;"
        "100/10/5=2;10/0=10;5/(2-2)=5;0/0=0;2^10=1024;2^3^2=64;2^0.5=1.4142135623730951;-5=-5;"
        "+5=5;--5=-5;5-=5;3*=0;2**3=6;2+*3=5;*3+2=5;2*-3=-3;2^-1=0;1e3=1000;1E3=1000;1e-5=0.00001;"
        "1e5+2=10000000;2*3e2=600;e5=5;2e=2;1,000+1=1001; 1 + 2 =3;12 kg=12;abc=0;=0;1.2.3=1.2;"
        "2(3)=2;3*7/10=2.0999999999999996;((1)=0;1)+(2=1;((1)+(2))=0;*(1)=0;\uFF13\uFF0B4=7");
    for (std::string expression, value;
         std::getline(std::getline(rows, expression, '='), value, ';');) {
        EXPECT_EQ(Calculate(AsciiToUTF16(expression.c_str())), std::stod(value)) << expression;
    }
    SetUserSeparators({u',', u'.'});
    EXPECT_EQ(Calculate(u"1,5+1.500"_utf16), 1501.5);
}

TEST_F(Numbers, AreCalculatedAsByRepeatedCutting) {
    TryMany(u'.', [this] {
        std::string text;
        for (int left = Below(24); left > 0; --left) {
            text += static_cast<char>(AnyOf(Below(3) == 0 ? u"((()))" : u"1234.,+-*/^eE()"));
        }
        double const expected = model::Calculate(text);
        double const value = Calculate(UTF16String(text.begin(), text.end()));
        ASSERT_TRUE(expected == value || (std::isnan(expected) && std::isnan(value)))
            << text << " is " << expected << ", not " << value;
    });
}

TEST_F(Numbers, AreCalculatedFromTextOfAnyLengthAndDepth) {
    auto const repeated = [](std::string const& inPiece) {
        UTF16String text;
        while (text.size() < 65'536) {
            text.append(inPiece.begin(), inPiece.end());
        }
        return Calculate(text);
    };
    EXPECT_EQ(repeated("("), 0.0);
    EXPECT_EQ(repeated("-"), 0.0);
    EXPECT_EQ(repeated("1+"), 32'768.0);
    // These need only end, and without running out of stack.
    repeated("((1)+");
    repeated(")(");
    repeated("1-)^(2*e(/(");
}

} // namespace

} // namespace brindle::utility
