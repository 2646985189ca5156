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
    using Character = wchar_t;
    using In = iUTF16StringStream;
    using Out = oUTF16StringStream;
};
struct Narrow {
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

std::locale GroupingLocale() {
    return std::locale(std::locale(std::locale::classic(), new Grouping<char>),
                       new Grouping<wchar_t>);
}

template <typename Kind>
class StringStreams : public testing::Test {
protected:
    using Unit = typename Kind::Out::char_type;
    using Character = typename Kind::Character;

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
        typename Kind::In ours(As<Unit>(inText).c_str());
        std::basic_istringstream<Character> standard(As<Character>(inText));
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

    template <typename... Values>
    void ExpectSameExtractions(std::string const& inText) const {
        (ExpectSameExtraction<Values>(inText), ...);
    }

    std::mt19937 mRandom{20};
    std::locale mLocale;
    std::ios_base::fmtflags mFlags{};
};

using Kinds = testing::Types<Wide, Narrow>;
TYPED_TEST_SUITE(StringStreams, Kinds, );

} // namespace

TYPED_TEST(StringStreams, InsertWhatTheStandardStreamsInsert) {
    for (int round = 0; round < 3000; ++round) {
        this->PickLocaleAndFlags();
        int const width = static_cast<int>(this->mRandom() % 30);
        int const precision = static_cast<int>(this->mRandom() % 25);
        std::uint64_t bits = std::uint64_t{this->mRandom()} << 32 | this->mRandom();
        double real;
        std::memcpy(&real, &bits, sizeof real);
        // Half of the numbers short.
        if (bits % 2 != 0) {
            bits %= 100000;
            real = static_cast<double>(bits) / 64 - 500;
        }
        auto const insert = [&](auto&& ioStream) {
            this->Prepare(ioStream);
            // A stream that was given no fill finds its own.
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
        ASSERT_EQ(insert(typename TypeParam::Out()),
                  insert(std::basic_ostringstream<typename TypeParam::Character>()));
    }
}

TYPED_TEST(StringStreams, ExtractWhatTheStandardStreamsExtract) {
    std::vector<std::string> const pieces = {
        "12",        "0x1F", "-7",   "+",   "e+3", ".5",   ",",   ".", "1.234", "1,5",
        "999999999", " ",    "\t\n", "yes", "no",  "true", "nan", "x", "018",   "\xFF"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t count = 1 + this->mRandom() % 5; count != 0; --count) {
            text += pieces[this->mRandom() % pieces.size()];
        }
        this->PickLocaleAndFlags();
        this->template ExpectSameExtractions<bool, unsigned short, int, unsigned, long,
                                             unsigned long, long long, unsigned long long, float,
                                             double, long double, void*>(text);
    }
}

TYPED_TEST(StringStreams, AFullBufferMakesTheStreamBad) {
    struct : std::basic_streambuf<typename TestFixture::Unit> {
    } full;
    std::basic_ostream<typename TestFixture::Unit> stream(&full);
    // Also how those get the facets who have only the base class.
    stream.imbue(utility::WithTextFacets(std::locale::classic()));
    stream << 12345;
    EXPECT_EQ(stream.rdstate(), std::ios_base::badbit);
}

TYPED_TEST(StringStreams, FacetsComeFromTheLocaleAndStayOutOfIt) {
    std::locale const earlier = std::locale::global(GroupingLocale());
    typename TypeParam::Out out;
    out << 1234567 << ' ' << 0.5;
    std::locale const global = std::locale::global(earlier);
    EXPECT_FALSE(std::has_facet<std::ctype<typename TestFixture::Unit>>(global));

    // What a stream had can be given to it again, and another locale on top of it counts.
    std::locale const ours = out.getloc();
    out.imbue(ours);
    EXPECT_TRUE(out.getloc() == ours);
    out.imbue(std::locale(ours, std::locale::classic(), std::locale::numeric));
    out << 1234567;
    EXPECT_EQ(As<char>(out.str()), "12.34.567 0,51234567");
}

TEST(UTF8StringStreams, ClassifyByTheCtypeOfTheLocale) {
    static std::ctype_base::mask table[std::ctype<char>::table_size];
    table[0x2C] = std::ctype_base::space;
    iUTF8StringStream in("one,two"_utf8);
    in.imbue(std::locale(in.getloc(), new std::ctype<char>(table)));
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
    EXPECT_EQ(ctype.scan_is(std::ctype_base::digit, letters, letters + 4), letters + 2);
    EXPECT_EQ(ctype.scan_not(std::ctype_base::alpha, letters, letters + 4), letters + 2);
    ctype.toupper(letters, letters + 1);
    ctype.tolower(letters + 1, letters + 2);
    EXPECT_EQ(UTF16String(letters, 2), u"Ab"_utf16);
    EXPECT_EQ(ctype.narrow(0x4E00, '?'), '?');
}
