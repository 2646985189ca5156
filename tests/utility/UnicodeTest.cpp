#include "UnicodeModel.h"

#include "utility/src/UnicodeKernels.h"

#include <brindle/utility/Unicode.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace brindle::utility {
namespace {

using impl::UnicodeKernels;

std::vector<UnicodeKernels const*> KernelsOfThisProcessor() {
    std::vector<UnicodeKernels const*> kernels{&impl::kPortableUnicodeKernels};
    if (impl::AVX2UnicodeKernels() != nullptr) {
        kernels.push_back(impl::AVX2UnicodeKernels());
    }
    return kernels;
}

/// A copy that starts `inOffset` elements behind an aligned address and ends where its allocation
/// ends, so that the address sanitizer sees a read on either side of it.
template <typename Element>
class ExactCopy {
public:
    ExactCopy(std::basic_string<Element> const& inText, std::size_t inOffset)
        : mElements(new Element[inOffset + inText.size()]), mText(mElements.get() + inOffset) {
        std::copy(inText.begin(), inText.end(), mText);
    }
    Element const* Text() const { return mText; }

private:
    std::unique_ptr<Element[]> mElements;
    Element* mText;
};

/// Holds every set of kernels to the model. Buffers end where their allocations end, for the
/// address sanitizer.
void ExpectKernelsEncode(UTF16String const& inText, std::size_t inOffset = 0) {
    ExactCopy<std::uint16_t> const text(inText, inOffset);
    UTF16String const counted = inText.substr(0, inText.find(std::uint16_t{0}));
    UTF8String const bytes = model::EncodeAll(inText);
    for (UnicodeKernels const* const kernels : KernelsOfThisProcessor()) {
        impl::UTF16Extent const extent = kernels->MeasureUTF16(text.Text(), inText.size());
        ASSERT_EQ(extent.units, counted.size());
        ASSERT_EQ(extent.bytes, model::EncodeAll(counted).size());
        std::unique_ptr<std::uint8_t[]> const out(
            new std::uint8_t[3 * inText.size() + UnicodeKernels::kSlack]);
        std::size_t const count = kernels->EncodeUTF8(text.Text(), inText.size(), out.get());
        ASSERT_EQ(UTF8String(out.get(), count), bytes);
    }
}

void ExpectKernelsDecode(UTF8String const& inText, std::size_t inOffset = 0) {
    ExactCopy<std::uint8_t> const text(inText, inOffset);
    std::size_t consumed = 0;
    UTF16String const units = model::UTF8to16(inText, consumed);
    for (UnicodeKernels const* const kernels : KernelsOfThisProcessor()) {
        std::size_t const bound = kernels->CountUTF16(text.Text(), inText.size());
        if (consumed == inText.size()) {
            ASSERT_EQ(bound, units.size());
        } else {
            ASSERT_GE(bound, units.size());
        }
        std::unique_ptr<std::uint16_t[]> const out(
            new std::uint16_t[inText.size() + UnicodeKernels::kSlack]);
        impl::UnicodeProgress const progress =
            kernels->DecodeUTF8(text.Text(), inText.size(), out.get());
        ASSERT_EQ(progress.consumed, consumed);
        ASSERT_EQ(UTF16String(out.get(), progress.produced), units);
    }
}

/// Text that is mostly of one script, as real text is, with a share of units of any kind.
class RandomText {
public:
    UTF16String Units(std::size_t inCount) {
        static constexpr std::uint32_t kLimits[] = {0x80, 0x250, 0x800, 0xD800, 0x10FFFF};
        std::uint32_t const limit = kLimits[mRandom() % 5];
        bool const isMixed = mRandom() % 2 == 0;
        UTF16String text;
        while (text.size() < inCount) {
            std::uint32_t const value =
                1 + (isMixed && mRandom() % 8 == 0 ? Any() : mRandom() % (limit - 1));
            if (value >= 0x10000) {
                text.push_back(static_cast<std::uint16_t>(0xD7C0 + (value >> 10)));
                text.push_back(static_cast<std::uint16_t>(0xDC00 | (value & 0x3FF)));
            } else {
                text.push_back(static_cast<std::uint16_t>(value));
            }
        }
        text.resize(inCount);
        return text;
    }

    std::uint32_t operator()() { return static_cast<std::uint32_t>(mRandom()); }

private:
    /// The borders between the forms, and the surrogates, more often than chance has them.
    std::uint32_t Any() {
        static constexpr std::uint32_t kFirsts[] = {0x7F, 0x7FE, 0xD7FE, 0xDBFE, 0xDFFE, 0xFFFE};
        return kFirsts[mRandom() % 6] + mRandom() % 4;
    }

    std::mt19937 mRandom{20011};
};

TEST(Unicode, TextUpToTheFirstNulIsEncoded) {
    struct {
        UTF16String text;
        UTF8String bytes;
    } const cases[] = {
        {{}, {}},
        {u"\u007F\u0080\u07FF\u0800\uFFFF"_utf16,
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"_utf8},
        {{0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"_utf8},
        {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"_utf8},
        {{0xD83D}, "\xED\xA0\xBD"_utf8},
        {{0xDE00, 0xD83D}, "\xED\xB8\x80\xED\xA0\xBD"_utf8},
        {{0xD83D, 0xD83D, 0xDE00, 0xDE00}, "\xED\xA0\xBD\xF0\x9F\x98\x80\xED\xB8\x80"_utf8},
        {u"abc\0d"_utf16, "abc"_utf8},
        {u"\0bcd"_utf16, {}},
        // One to three units keep their length.
        {u"\0"_utf16, "\0"_utf8},
        {u"a\0b"_utf16, "a\0\0"_utf8},
        {u"\u00E9\0b"_utf16, "\xC3\xA9\0\0"_utf8},
        {{0xD83D, 0xDE00, 0}, "\xF0\x9F\x98\x80\0"_utf8},
        {{0xD83D, 0, 0xDE00}, "\xED\xA0\xBD\0\0"_utf8},
    };
    for (auto const& each : cases) {
        EXPECT_EQ(UTF16to8(each.text), each.bytes);
        UTF16String const untilNul(each.text.c_str());
        EXPECT_EQ(UTF16to8(each.text.c_str()), model::EncodeAll(untilNul));
    }
}

TEST(Unicode, DecodingStopsBeforeTheFirstMalformedSequence) {
    struct {
        UTF8String bytes;
        UTF16String text;
    } const cases[] = {
        {{}, {}},
        {"a\0b"_utf8, u"a\0b"_utf16},
        {"\xF0\x9F\x98\x80"_utf8, {0xD83D, 0xDE00}},
        {"\xF4\x8F\xBF\xBF"_utf8, {0xDBFF, 0xDFFF}},
        {"\xED\xA0\xBD"_utf8, {0xD83D}},
        {"\xED\xA0\xBD\xED\xB8\x80"_utf8, {0xD83D, 0xDE00}},
        {"\xEF\xBF\xBF"_utf8, {0xFFFF}},
        {"a\xC0\x80"_utf8 + "b"_utf8, u"a"_utf16},
        {"a\xC1\xBF"_utf8, u"a"_utf16},
        {"a\xE0\x80\x80"_utf8, u"a"_utf16},
        {"a\xE0\x9F\xBF"_utf8, u"a"_utf16},
        {"a\xF0\x80\x80\x80"_utf8, u"a"_utf16},
        {"a\xF0\x8F\xBF\xBF"_utf8, u"a"_utf16},
        {"a\xF4\x90\x80\x80"_utf8, u"a"_utf16},
        {"a\xF5\x80\x80\x80"_utf8, u"a"_utf16},
        {"a\xF8\x88\x80\x80\x80"_utf8, u"a"_utf16},
        {"a\xFF"_utf8, u"a"_utf16},
        {"a\x80"_utf8 + "b"_utf8, u"a"_utf16},
        {"a\xE2\x82"_utf8, u"a"_utf16},
        {"a\xE2\x82z"_utf8, u"a"_utf16},
        {"\u20AC\xF0\x9F\x98"_utf8, u"\u20AC"_utf16},
    };
    for (auto const& each : cases) {
        EXPECT_EQ(UTF8to16(each.bytes), each.text);
    }

    EXPECT_EQ(AsciiToUTF16("abc"), u"abc"_utf16);
    EXPECT_EQ(AsciiToUTF16("\xC3\xA9"), u"\u00E9"_utf16);
    EXPECT_EQ(AsciiToUTF16("\xE9"), UTF16String());
}

TEST(Unicode, SurrogatesAreToldFromTheirNeighbours) {
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        EXPECT_EQ(UnicodeSurrogate(static_cast<std::uint16_t>(unit)),
                  unit < 0xD800 || unit > 0xDFFF ? kSurrogate_None
                  : unit < 0xDC00                ? kSurrogate_High
                                                 : kSurrogate_Low);
    }
}

TEST(Unicode, EveryTextWithoutNulComesBack) {
    for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {
        UTF16String const text(1, static_cast<std::uint16_t>(unit));
        ASSERT_EQ(UTF8to16(UTF16to8(text)), text);
    }
    // Both units of a pair, and their neighbours of other kinds, run through coprime steps.
    for (std::uint32_t first = 0xD700; first <= 0xE100; first += 7) {
        for (std::uint32_t second = 0xD700; second <= 0xE100; second += 11) {
            UTF16String text(20, u'x');
            text[15] = static_cast<std::uint16_t>(first);
            text[16] = static_cast<std::uint16_t>(second);
            UTF8String const bytes = UTF16to8(text);
            ASSERT_EQ(bytes, model::UTF16to8(text));
            bool const isPair = UnicodeSurrogate(text[15]) == kSurrogate_High &&
                                UnicodeSurrogate(text[16]) == kSurrogate_Low;
            ASSERT_EQ(bytes.size(), isPair ? 22u : 24u);
            ASSERT_EQ(UTF8to16(bytes), text);
        }
    }
}

TEST(Unicode, LongTextIsConvertedAcrossTheBordersOfItsChunks) {
    RandomText random;
    for (int round = 0; round < 60; ++round) {
        UTF16String text = random.Units(2000 + random() % 3000);
        if (round % 3 == 0) {
            text[random() % text.size()] = 0;
        }
        UTF8String bytes = UTF16to8(text);
        ASSERT_EQ(bytes, model::UTF16to8(text));
        ASSERT_EQ(bytes.capacity(), bytes.size());
        bytes[random() % bytes.size()] ^= static_cast<std::uint8_t>(round % 2 == 0 ? 0 : random());
        ASSERT_EQ(UTF8to16(bytes), model::UTF8to16(bytes));
    }
    // A pair, and a sequence of four bytes, at every place around a border.
    for (std::size_t at = 1000; at < 1050; ++at) {
        UTF16String text(3000, u'x');
        text.replace(at, 2, {0xD83D, 0xDE00});
        ASSERT_EQ(UTF16to8(text), model::UTF16to8(text));
        ASSERT_EQ(UTF8to16(UTF16to8(text)), text);
    }
}

TEST(UnicodeKernels, AgreeAtEveryLengthAndAlignment) {
    RandomText random;
    for (std::size_t length = 0; length <= 200; ++length) {
        for (std::size_t offset = 0; offset < 16; ++offset) {
            UTF16String const text = random.Units(length);
            ExpectKernelsEncode(text, offset);
            ExpectKernelsDecode(model::EncodeAll(text), offset);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(UnicodeKernels, AgreeOnSurrogatesAndNulsAtEveryPlace) {
    UTF16String const insertions[] = {
        {0}, {0xD83D}, {0xDE00}, {0xD83D, 0xDE00}, {0xDE00, 0xD83D}, {0xD83D, 0xD83D, 0xDE00}};
    for (std::uint16_t const filler : UTF16String{0x61, 0xE9, 0x4E2D, 0xD83D, 0xDE00}) {
        for (UTF16String const& insertion : insertions) {
            for (std::size_t const length : {48u, 65u, 100u}) {
                for (std::size_t at = 0; at < length; ++at) {
                    UTF16String text(length, filler);
                    text.replace(at, insertion.size(), insertion);
                    ExpectKernelsEncode(text);
                    if (HasFatalFailure()) {
                        return;
                    }
                }
            }
        }
    }
}

TEST(UnicodeKernels, DoNotPairSurrogatesThatStandApart) {
    for (std::uint16_t const filler : UTF16String{0x61, 0xE9, 0x4E2D}) {
        for (std::size_t at = 60; at < 68; ++at) {
            for (std::size_t gap = 1; gap <= 132; ++gap) {
                UTF16String text(280, filler);
                text[at] = 0xD83D;
                text[at + gap] = 0xDE00;
                ExpectKernelsEncode(text);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST(UnicodeKernels, StopAtTheSamePlaceWhereverTheErrorIs) {
    // Every pair of bytes, and every second byte of three and four, around the ends of blocks.
    std::vector<UTF8String> sequences;
    for (unsigned first = 0x7F; first <= 0xFF; ++first) {
        for (unsigned second = 0x70; second <= 0xFF; second += 5) {
            UTF8String const two{static_cast<std::uint8_t>(first),
                                 static_cast<std::uint8_t>(second)};
            sequences.push_back(two);
            sequences.push_back(two + "\xBF"_utf8);
            sequences.push_back(two + "\x80\x80"_utf8);
            sequences.push_back(two + "\x80\xC3"_utf8);
        }
    }
    UTF8String const fillers[] = {"a"_utf8, "\u00E9"_utf8, "\u4E2D"_utf8, "\U0001F600"_utf8};
    for (UTF8String const& filler : fillers) {
        UTF8String before;
        while (before.size() < 27) {
            before += filler;
        }
        UTF8String after;
        while (after.size() < 70) {
            after += filler;
        }
        for (UTF8String const& sequence : sequences) {
            UTF8String text = before;
            for (std::size_t shift = 0; shift < 9; ++shift) {
                ExpectKernelsDecode(text + sequence + after);
                if (HasFatalFailure()) {
                    return;
                }
                text.insert(text.begin(), u'-');
            }
        }
    }
}

TEST(UnicodeKernels, AgreeOnDamagedText) {
    RandomText random;
    for (int round = 0; round < 20000; ++round) {
        UTF8String bytes = model::EncodeAll(random.Units(1 + random() % 120));
        for (std::uint32_t errors = random() % 3; errors != 0; --errors) {
            std::size_t const at = random() % bytes.size();
            if (random() % 2 == 0) {
                bytes[at] = static_cast<std::uint8_t>(random());
            } else if (bytes.size() > 1) {
                bytes.erase(at, 1);
            }
        }
        ExpectKernelsDecode(bytes);
        if (HasFatalFailure()) {
            return;
        }
    }
}

} // namespace
} // namespace brindle::utility
