#include <brindle/utility/StringStreams.h>

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <random>
#include <tuple>
#include <vector>

using namespace brindle;

namespace {

/// Our streams of one unit type beside the standard ones that they must be equal to.
struct Wide {
    using Unit = std::uint16_t;
    using Character = wchar_t;
    using In = iUTF16StringStream;
    using Out = oUTF16StringStream;
};
struct Narrow {
    using Unit = std::uint8_t;
    using Character = char;
    using In = iUTF8StringStream;
    using Out = oUTF8StringStream;
};

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

class CommaIsSpace : public std::ctype<char> {
public:
    CommaIsSpace() : std::ctype<char>(Table()) {}

private:
    static mask const* Table() {
        static std::vector<mask> table(classic_table(), classic_table() + table_size);
        table[','] = space;
        return table.data();
    }
};

std::locale GroupingLocale() {
    return std::locale(std::locale(std::locale::classic(), new Grouping<char>),
                       new Grouping<wchar_t>);
}

/// A buffer that takes a few characters and then fails.
template <typename Character>
class FullBuffer : public std::basic_streambuf<Character> {
public:
    FullBuffer() { this->setp(mText, mText + 3); }
    std::basic_string<Character> Text() const { return {this->pbase(), this->pptr()}; }

private:
    Character mText[3];
};

template <typename Kind>
class StringStreams : public testing::Test {
protected:
    std::mt19937 mRandom{20};

    int Pick(int inBelow) { return static_cast<int>(mRandom() % static_cast<unsigned>(inBelow)); }

    std::ios_base::fmtflags PickFlags() {
        using ios = std::ios_base;
        auto flags = ios::fmtflags();
        for (auto one : {ios::boolalpha, ios::showbase, ios::showpoint, ios::showpos, ios::skipws,
                         ios::uppercase, ios::fixed, ios::scientific}) {
            if (Pick(2) != 0) {
                flags |= one;
            }
        }
        ios::fmtflags const bases[] = {ios::dec, ios::oct, ios::hex, {}};
        ios::fmtflags const sides[] = {ios::left, ios::right, ios::internal, {}};
        return flags | bases[Pick(4)] | sides[Pick(4)];
    }

    template <typename Stream>
    static void Insert(Stream& ioStream, int inType, std::uint64_t inBits) {
        double real;
        std::memcpy(&real, &inBits, sizeof real);
        // Half of the numbers short.
        if (inBits % 2 != 0) {
            inBits %= 100000;
            real = static_cast<double>(inBits) / 64 - 500;
        }
        auto const values = std::make_tuple(
            inBits % 4 < 2, static_cast<short>(inBits), static_cast<unsigned short>(inBits),
            static_cast<int>(inBits), static_cast<long>(inBits),
            static_cast<unsigned long long>(inBits), static_cast<float>(inBits), real,
            static_cast<long double>(real) / 3, reinterpret_cast<void const*>(inBits),
            static_cast<char>('a' + inBits % 26), "text");
        auto const insert = [&](auto... inValues) {
            ((inType-- == 0 ? void(ioStream << inValues << std::endl) : void()), ...);
        };
        std::apply(insert, values);
    }

    template <typename Value, typename Ours, typename Standard>
    static void ExtractBoth(Ours& ioOurs, Standard& ioStandard, std::string const& inText) {
        Value ours{}, standard{};
        ioOurs >> ours;
        ioStandard >> standard;
        EXPECT_EQ(ours, standard) << inText;
    }

    template <typename... Values, typename Ours, typename Standard>
    void ExtractOneOf(Ours& ioOurs, Standard& ioStandard, std::string const& inText) {
        int at = this->Pick(sizeof...(Values));
        ((at-- == 0 ? ExtractBoth<Values>(ioOurs, ioStandard, inText) : void()), ...);
    }
};

using Kinds = testing::Types<Wide, Narrow>;
TYPED_TEST_SUITE(StringStreams, Kinds, );

} // namespace

TYPED_TEST(StringStreams, InsertWhatTheStandardStreamsInsert) {
    using Character = typename TypeParam::Character;
    std::locale const locales[] = {std::locale::classic(), GroupingLocale()};
    for (int round = 0; round < 20000; ++round) {
        typename TypeParam::Out ours;
        std::basic_ostringstream<Character> standard;
        int const type = this->Pick(12), locale = this->Pick(2), width = this->Pick(30);
        int const precision = this->Pick(25);
        char const fill = " *0\x7F"[this->Pick(4)];
        auto const flags = this->PickFlags();
        std::uint64_t const bits = std::uint64_t{this->mRandom()} << 32 | this->mRandom();
        auto const apply = [&](auto& ioStream) {
            ioStream.imbue(locales[locale]);
            ioStream.flags(flags);
            if (this->Pick(2) == 0) {
                ioStream.fill(static_cast<std::decay_t<decltype(ioStream.fill())>>(fill));
            }
            ioStream << std::setw(width) << std::setprecision(precision);
            this->Insert(ioStream, type, bits);
            this->Insert(ioStream, 3, 42);
        };
        auto const random = this->mRandom;
        apply(ours);
        this->mRandom = random;
        apply(standard);
        ASSERT_EQ(As<Character>(ours.str()), standard.str()) << "type " << type;
        ASSERT_EQ(ours.rdstate(), standard.rdstate());
        ASSERT_EQ(ours.width(), standard.width());
    }
}

TYPED_TEST(StringStreams, ExtractWhatTheStandardStreamsExtract) {
    using Unit = typename TypeParam::Unit;
    using Character = typename TypeParam::Character;
    std::locale const locales[] = {std::locale::classic(), GroupingLocale()};
    char const* const pieces[] = {"12",
                                  "0x1F",
                                  "-7",
                                  "+",
                                  "e+3",
                                  ".5",
                                  ",",
                                  ".",
                                  "1.234",
                                  "1,5",
                                  "99999999999999999999",
                                  " ",
                                  "\t\n",
                                  "yes",
                                  "no",
                                  "true",
                                  "nan",
                                  "x",
                                  "018",
                                  "\xFF"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int count = this->Pick(4); count >= 0; --count) {
            text += pieces[this->Pick(static_cast<int>(std::size(pieces)))];
        }
        typename TypeParam::In ours(As<Unit>(text));
        std::basic_istringstream<Character> standard(As<Character>(text));
        std::locale const& locale = locales[this->Pick(2)];
        ours.imbue(locale);
        standard.imbue(locale);
        auto const flags = this->PickFlags();
        ours.flags(flags);
        standard.flags(flags);
        for (int extraction = 0; extraction < 2; ++extraction) {
            this->template ExtractOneOf<bool, unsigned short, int, unsigned, long, long long, float,
                                        double, long double, void*>(ours, standard, text);
            ASSERT_EQ(ours.rdstate(), standard.rdstate()) << text;
        }
        ours.clear();
        standard.clear();
        std::basic_string<Unit> ourRest, ourLine;
        std::basic_string<Character> standardRest, standardLine;
        ours >> ourRest;
        standard >> standardRest;
        std::getline(ours, ourLine);
        std::getline(standard, standardLine);
        ASSERT_EQ(As<Character>(ourRest), standardRest) << text;
        ASSERT_EQ(As<Character>(ourLine), standardLine) << text;
        ASSERT_EQ(ours.rdstate(), standard.rdstate()) << text;
    }
}

TYPED_TEST(StringStreams, AFullBufferFailsAsItDoesUnderAStandardStream) {
    FullBuffer<typename TypeParam::Unit> ourBuffer;
    FullBuffer<typename TypeParam::Character> standardBuffer;
    std::basic_ostream<typename TypeParam::Unit> ours(&ourBuffer);
    std::basic_ostream<typename TypeParam::Character> standard(&standardBuffer);
    // Also how those get the facets who have only the base class.
    ours.imbue(utility::WithTextFacets(std::locale::classic()));
    ours << 12345;
    standard << 12345;
    EXPECT_EQ(As<typename TypeParam::Character>(ourBuffer.Text()), standardBuffer.Text());
    EXPECT_TRUE(ours.bad());
    EXPECT_EQ(ours.rdstate(), standard.rdstate());
}

TYPED_TEST(StringStreams, FacetsComeFromTheLocaleAndStayOutOfIt) {
    using Unit = typename TypeParam::Unit;
    std::locale const earlier = std::locale::global(GroupingLocale());
    typename TypeParam::Out out;
    out << 1234567 << ' ' << 0.5;
    std::locale const global = std::locale::global(earlier);
    EXPECT_EQ(As<char>(out.str()), "12.34.567 0,5");
    EXPECT_FALSE(std::has_facet<std::ctype<Unit>>(global));
    EXPECT_FALSE(std::has_facet<std::num_put<Unit>>(std::locale::classic()));

    // What a stream had can be given to it again, and another locale on top of it counts.
    std::locale const ours = out.getloc();
    EXPECT_TRUE(out.imbue(ours) == ours);
    EXPECT_TRUE(out.getloc() == ours);
    out.imbue(std::locale(ours, std::locale::classic(), std::locale::numeric));
    out << 1234567;
    EXPECT_EQ(As<char>(out.str()), "12.34.567 0,51234567");
}

TEST(UTF8StringStreams, ClassifyByTheCtypeOfTheLocale) {
    iUTF8StringStream in("one,two"_utf8);
    in.imbue(utility::WithTextFacets(std::locale()));
    in.imbue(std::locale(in.getloc(), new CommaIsSpace));
    UTF8String one, two;
    in >> one >> two;
    EXPECT_EQ(one, "one"_utf8);
    EXPECT_EQ(two, "two"_utf8);
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
    std::ctype_base::mask masks[4];
    ctype.is(letters, letters + 4, masks);
    EXPECT_TRUE((masks[0] & std::ctype_base::lower) != 0 && (masks[3] & std::ctype_base::space));
    EXPECT_EQ(ctype.scan_is(std::ctype_base::digit, letters, letters + 4), letters + 2);
    EXPECT_EQ(ctype.scan_not(std::ctype_base::alpha, letters, letters + 4), letters + 2);
    ctype.toupper(letters, letters + 4);
    EXPECT_EQ(letters[0], 'A');
    ctype.tolower(letters, letters + 4);
    EXPECT_EQ(letters[1], 'b');
    EXPECT_EQ(ctype.narrow(0x4E00, '?'), '?');
}
