#include <brindle/utility/StringStreams.h>

#include <gtest/gtest.h>

#include "tests/support/InThreads.h"

#include <cstring>
#include <ctime>
#include <iomanip>
#include <random>
#include <tuple>
#include <vector>

using namespace brindle;

namespace {

template <typename To, typename From>
std::basic_string<To> As(std::basic_string<From> const& inText) {
    std::basic_string<To> text;
    for (From unit : inText) {
        text.push_back(static_cast<To>(std::char_traits<From>::to_int_type(unit)));
    }
    return text;
}

template <typename Character>
class Grouping : public std::numpunct<Character> {
    Character do_decimal_point() const override { return ','; }
    Character do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3\2"; }
    std::basic_string<Character> do_truename() const override { return {'y', 'e', 's'}; }
    std::basic_string<Character> do_falsename() const override { return {'n', 'o'}; }
};

std::locale GroupingLocale() {
    return std::locale(std::locale(std::locale::classic(), new Grouping<char>),
                       new Grouping<wchar_t>);
}

/// Compares the library's streams with the standard streams.
class StringStreams : public testing::Test {
protected:
    void PickLocaleAndFlags() {
        mLocale = mRandom() % 2 != 0 ? std::locale::classic() : GroupingLocale();
        mFlags = static_cast<std::ios_base::fmtflags>(mRandom() % (std::ios_base::uppercase * 2));
    }

    template <typename Stream>
    void Prepare(Stream& ioStream) const {
        ioStream.imbue(mLocale);
        ioStream.flags(mFlags);
    }

    template <typename Value>
    void ExpectSameExtraction(std::string const& inText) const {
        iUTF16StringStream ours(As<std::uint16_t>(inText).c_str());
        std::wistringstream standard(As<wchar_t>(inText));
        auto const extract = [this](auto& ioStream) {
            this->Prepare(ioStream);
            Value first{}, second{};
            ioStream >> first >> second;
            auto const state = ioStream.rdstate();
            ioStream.clear();
            decltype(ioStream.str()) word, line;
            std::getline(ioStream >> word, line);
            return std::make_tuple(first, second, state, As<char>(word), As<char>(line),
                                   ioStream.rdstate());
        };
        EXPECT_EQ(extract(ours), extract(standard)) << inText;
    }

    std::mt19937 mRandom{20};
    std::locale mLocale;
    std::ios_base::fmtflags mFlags{};
};

} // namespace

TEST_F(StringStreams, InsertWhatTheStandardStreamsInsert) {
    for (int round = 0; round < 3000; ++round) {
        PickLocaleAndFlags();
        int const width = static_cast<int>(mRandom() % 30);
        int const precision = static_cast<int>(mRandom() % 25);
        std::uint64_t bits = std::uint64_t{mRandom()} << 32 | mRandom();
        double real;
        std::memcpy(&real, &bits, sizeof real);
        // Half of the numbers are short.
        if (bits % 2 != 0) {
            bits %= 100000;
            real = static_cast<double>(bits) / 64 - 500;
        }
        auto const insert = [&](auto&& ioStream) {
            Prepare(ioStream);
            // Without a fill of its own the stream has to find one.
            if (bits % 3 != 0) {
                ioStream.fill(static_cast<decltype(ioStream.fill())>(" *0\x7F"[bits % 4]));
            }
            ioStream << std::setprecision(precision);
            auto const put = [&](auto... inValues) {
                ((ioStream << std::setw(width) << inValues << std::endl), ...);
            };
            put(bits % 4 < 2, static_cast<short>(bits), static_cast<unsigned short>(bits),
                static_cast<int>(bits), static_cast<long>(bits),
                static_cast<unsigned long long>(bits), static_cast<float>(bits), real,
                static_cast<long double>(real) / 3, reinterpret_cast<void const*>(bits),
                static_cast<char>('a' + bits % 26), "text");
            return std::make_tuple(As<char>(ioStream.str()), ioStream.rdstate(), ioStream.width());
        };
        ASSERT_EQ(insert(oUTF16StringStream()), insert(std::wostringstream()));
    }
}

TEST_F(StringStreams, ExtractWhatTheStandardStreamsExtract) {
    std::string const pieces[] = {"12", "0x1F",  "-7",  "+",         "e+3", ".5",   ",",
                                  ".",  "1.234", "1,5", "999999999", " ",   "\t\n", "yes",
                                  "no", "true",  "nan", "x",         "018", "\xFF"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t count = 1 + mRandom() % 5; count != 0; --count) {
            text += pieces[mRandom() % std::size(pieces)];
        }
        PickLocaleAndFlags();
        ExpectSameExtraction<bool>(text);
        ExpectSameExtraction<unsigned short>(text);
        ExpectSameExtraction<long>(text);
        ExpectSameExtraction<unsigned long long>(text);
        ExpectSameExtraction<double>(text);
        ExpectSameExtraction<void*>(text);
    }
}

TEST_F(StringStreams, FacetsComeFromTheLocaleAndStayOutOfIt) {
    std::locale const earlier = std::locale::global(GroupingLocale());
    oUTF16StringStream out;
    out << 1234567 << ' ' << 0.5;
    std::locale const global = std::locale::global(earlier);
    EXPECT_FALSE(std::has_facet<std::ctype<std::uint16_t>>(global));

    // A stream's own locale can be imbued again, and so can a locale that was derived from it.
    std::locale const ours = out.getloc();
    out.imbue(ours);
    EXPECT_TRUE(out.getloc() == ours);
    out.imbue(std::locale(ours, std::locale::classic(), std::locale::numeric));
    out << 1234567;
    EXPECT_EQ(As<char>(out.str()), "12.34.567 0,51234567");
}

/// Money with a currency, which the classic locale does not have.
struct Currency : std::moneypunct<wchar_t> {
    std::wstring do_curr_symbol() const override { return L"\u20AC"; }
    int do_frac_digits() const override { return 2; }
    wchar_t do_thousands_sep() const override { return L'.'; }
    wchar_t do_decimal_point() const override { return L','; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(StringStreams, TimesMoneyAndQuotedTextAreThoseOfTheStandardStreams) {
    std::locale const locale(GroupingLocale(), new Currency);
    std::tm time{};
    time.tm_year = 126;
    time.tm_mday = 23;
    auto const pass = [&](auto outStream, auto inStream, auto inConverted) {
        auto const format = inConverted("%A %d %b %Y");
        outStream.imbue(locale);
        outStream << std::showbase << std::put_time(&time, format.c_str())
                  << std::put_money(inConverted("123456")) << ' ' << std::put_money(-789.0L) << ' '
                  << std::quoted(inConverted("a \"b\\")) << std::setw(5)
                  << std::quoted(inConverted("").c_str());
        std::tm date{};
        long double amount = 0;
        decltype(inStream.str()) digits, text, empty, none;
        inStream.imbue(locale);
        inStream.str(outStream.str());
        inStream >> std::get_time(&date, format.c_str()) >> std::get_money(digits) >>
            std::get_money(amount) >> std::quoted(text) >> std::quoted(empty);
        EXPECT_EQ(As<char>(text), "a \"b\\");
        auto const state = inStream.rdstate();
        inStream >> std::quoted(none);
        return std::make_tuple(As<wchar_t>(outStream.str()), date.tm_year, date.tm_mon,
                               date.tm_mday, As<char>(digits), amount, empty.size(), state,
                               inStream.rdstate());
    };
    EXPECT_EQ(pass(oUTF16StringStream(), iUTF16StringStream(UTF16String()),
                   [](std::string const& inText) { return As<std::uint16_t>(inText); }),
              pass(std::wostringstream(), std::wistringstream(),
                   [](std::string const& inText) { return As<wchar_t>(inText); }));
}

/// Writes a letter for each number, and counts its instances.
struct Letters : std::num_put<wchar_t> {
    explicit Letters(int& ioInstances) : instances(ioInstances) { ++instances; }
    ~Letters() override { --instances; }
    iter_type do_put(iter_type inTarget, std::ios_base&, wchar_t, long) const override {
        *inTarget = L'n';
        return inTarget;
    }
    int& instances;
};

TEST_F(StringStreams, FacetsAreMadeOnceForALocaleAndLiveNoLonger) {
    int instances = 0;
    std::vector<void const*> facets(4);
    {
        std::locale const locale(GroupingLocale(), new Letters(instances));
        tests::InThreads(4, [&](unsigned int inThread) {
            oUTF16StringStream out;
            out.imbue(locale);
            out << 12 << 0.5;
            EXPECT_EQ(As<char>(out.str()), "n0,5") << "a client's facet for numbers is called";
            facets[inThread] = &std::use_facet<std::ctype<std::uint16_t>>(out.getloc());
        });
        EXPECT_EQ(std::count(facets.begin(), facets.end(), facets[0]), 4);
        EXPECT_EQ(instances, 1);
    }
    EXPECT_EQ(instances, 0);
}

TEST_F(StringStreams, CanBeReturnedAndMoved) {
    auto const written = [](auto inStream, int inNumber) {
        inStream << std::setfill(static_cast<decltype(inStream.fill())>('*')) << std::setw(4)
                 << inNumber;
        return inStream;
    };
    auto out = written(oUTF16StringStream(), 12);
    out << std::setw(4) << 3;
    EXPECT_EQ(out.str(), u"**12***3"_utf16);
    out = written(oUTF16StringStream(), 7);
    out << 8;
    EXPECT_EQ(out.str(), u"***78"_utf16);
    EXPECT_EQ(written(written(oUTF8StringStream(), 12), 3).str(), "**12***3"_utf8);

    iUTF16StringStream opened(u"12 ab"_utf16);
    iUTF16StringStream in(std::move(opened));
    iUTF8StringStream openedBytes("34"_utf8);
    iUTF8StringStream inBytes(std::move(openedBytes));
    int first = 0, second = 0;
    EXPECT_TRUE(in >> first);
    EXPECT_TRUE(inBytes >> second);
    EXPECT_EQ(first + second, 46);
}

template <typename Stream, typename Value, typename = void>
constexpr bool kTakes = false;
template <typename Stream, typename Value>
constexpr bool
    kTakes<Stream, Value, std::void_t<decltype(std::declval<Stream&>() << std::declval<Value>())>> =
        true;

template <typename Stream, typename... Values>
constexpr bool kTakesAny = (... || kTakes<Stream, Values>);

TEST(UnitInserters, LiteralsAreTextOrDoNotCompile) {
    oUTF16StringStream out;
    out << u"abc" << u'x' << 1 << u'y' << u"\u20AC" << std::setw(3) << u'z' << &u"abc"[1];
    EXPECT_EQ(out.str(), u"abcx1y\u20AC  zbc"_utf16);
    out << static_cast<char16_t const*>(nullptr);
    EXPECT_TRUE(out.bad());
    static_assert(!kTakesAny<oUTF16StringStream, wchar_t, wchar_t const*, char32_t, char32_t const*,
                             std::uint8_t const*>);
    static_assert(!kTakesAny<oUTF8StringStream, wchar_t, wchar_t const*, char16_t, char16_t const*,
                             char32_t, char32_t const*, std::uint16_t const*>);
    static_assert(kTakes<oUTF8StringStream, char const*> && kTakes<oUTF16StringStream, void*>);
}

TEST(UTF8StringStreams, ClassifyByTheCtypeOfTheLocale) {
    static std::ctype_base::mask table[std::ctype<char>::table_size];
    table[0x2C] = std::ctype_base::space;
    iUTF8StringStream in("one,two"_utf8);
    in.imbue(std::locale(in.getloc(), new std::ctype<char>(table)));
    UTF8String one, two;
    in >> one >> two;
    oUTF8StringStream out;
    out << std::setw(5) << 12 << one << two;
    EXPECT_EQ(out.str(), "   12onetwo"_utf8);
}

TEST(UTF16StringStreams, KeepUnitsThatNoNarrowStreamHolds) {
    oUTF16StringStream out;
    out.fill(0x3000);
    out << std::setw(3) << 7 << u"\xD801\uFFFF"_utf16.c_str() << std::left << std::setw(3) << 'x';
    out.put('\0');
    EXPECT_EQ(out.str(), u"\u3000\u30007\xD801\uFFFFx\u3000\u3000\0"_utf16);

    iUTF16StringStream in(out.str());
    UTF16String word;
    in >> word;
    EXPECT_EQ(word, out.str());
    auto const& ctype = std::use_facet<std::ctype<std::uint16_t>>(in.getloc());
    std::uint16_t letters[] = {'a', 'B', '1', ' '};
    EXPECT_EQ(ctype.scan_is(std::ctype_base::digit, letters, letters + 4), letters + 2);
    EXPECT_EQ(ctype.scan_not(std::ctype_base::alpha, letters, letters + 4), letters + 2);
    EXPECT_EQ(ctype.narrow(0x4E00, '?'), '?');
}
