#include "UnicodeModel.h"

#include "utility/src/unicode/UnicodeConversion.h"

#include <brindle/utility/Unicode.h>

#include <gtest/gtest.h>

#include <sys/mman.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <vector>

namespace brindle::utility {
namespace {

using impl::UnicodeKernels;

std::vector<UnicodeKernels const*> KernelsOfThisProcessor() {
    auto const all = impl::AllUnicodeKernels();
    std::vector<UnicodeKernels const*> kernels;
    std::copy_if(all.begin(), all.end(), std::back_inserter(kernels),
                 [](auto each) { return each != nullptr; });
    return kernels;
}

/// A copy between two pages that cannot be read. For even places it ends at the upper one, and for
/// odd ones it starts half as many elements above the lower one. It lasts until the next call.
template <typename Element>
Element const* GuardedCopy(std::basic_string<Element> const& inText, std::size_t inPlace) {
    constexpr std::size_t kSize = 1 << 16; // a multiple of every size of a page
    static Element* const S_startP = [] {
        void* const guards =
            ::mmap(nullptr, 3 * kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        void* const start = static_cast<char*>(guards) + kSize;
        EXPECT_EQ(::mprotect(start, kSize, PROT_READ | PROT_WRITE), 0);
        return static_cast<Element*>(start);
    }();
    Element* const copy =
        S_startP + (inPlace % 2 == 0 ? kSize / sizeof(Element) - inText.size() : inPlace / 2);
    std::copy(inText.begin(), inText.end(), copy);
    return copy;
}

/// Compares every set of kernels with the model.
void ExpectKernelsEncode(UTF16String const& inText, std::size_t inPlace) {
    auto const* const text = GuardedCopy(inText, inPlace);
    UTF16String const untilNul(inText.c_str());
    UTF8String const bytes = model::EncodeAll(inText);
    std::size_t const measured = model::EncodeAll(untilNul).size();
    for (UnicodeKernels const* const kernels : KernelsOfThisProcessor()) {
        SCOPED_TRACE(kernels->name);
        auto const [units, size] = kernels->MeasureUTF16(text, inText.size());
        ASSERT_EQ(units, untilNul.size());
        ASSERT_EQ(size, measured);
        std::vector<std::uint8_t> out(3 * inText.size() + UnicodeKernels::kSlack);
        auto const count = kernels->EncodeUTF8(text, inText.size(), out.data());
        ASSERT_EQ(UTF8String(out.data(), count), bytes);
    }
}

void ExpectKernelsDecode(UTF8String const& inText, std::size_t inPlace) {
    auto const* const text = GuardedCopy(inText, inPlace);
    std::size_t consumed = 0;
    UTF16String const units = model::UTF8to16(inText, consumed);
    for (UnicodeKernels const* const kernels : KernelsOfThisProcessor()) {
        SCOPED_TRACE(kernels->name);
        auto const bound = kernels->CountUTF16(text, inText.size());
        if (consumed == inText.size()) {
            ASSERT_EQ(bound, units.size());
        } else {
            ASSERT_GE(bound, units.size());
        }
        std::vector<std::uint16_t> out(inText.size() + UnicodeKernels::kSlack);
        auto const progress = kernels->DecodeUTF8(text, inText.size(), out.data());
        ASSERT_EQ(progress.consumed, consumed);
        ASSERT_EQ(UTF16String(out.data(), progress.produced), units);
    }
}

/// Text that is mostly of one script, as real text is. Half of the texts also contain surrogates
/// and units at the borders between encodings of different lengths.
UTF16String RandomText(std::mt19937& ioRandom, std::size_t inCount) {
    static constexpr std::uint32_t kLimits[] = {0x80, 0x250, 0x800, 0xD800, 0x10FFFF};
    static constexpr std::uint32_t kBorders[] = {0x7F, 0x7FE, 0xD7FE, 0xDBFE, 0xDFFE, 0xFFFE};
    std::uint32_t const limit = kLimits[ioRandom() % 5];
    bool const isMixed = ioRandom() % 2 == 0;
    UTF16String text;
    while (text.size() < inCount) {
        auto const value = static_cast<std::uint32_t>(
            isMixed && ioRandom() % 8 == 0 ? kBorders[ioRandom() % 6] + ioRandom() % 4
                                           : ioRandom() % (limit - 1));
        text += model::UTF8to16(model::Encode(1 + value));
    }
    text.resize(inCount);
    return text;
}

TEST(Unicode, IsConvertedUpToTheFirstNulOrMalformedSequence) {
    // The model is compared with the library, so that it must itself be right about these.
    EXPECT_EQ(UTF16to8({0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0xDBFF, 0xDFFF, 0, 0x7F}),
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF4\x8F\xBF\xBF"_utf8);
    EXPECT_EQ(UTF16to8({0xD83D, 0xD83D, 0xDE00, 0xDE00}),
              "\xED\xA0\xBD\xF0\x9F\x98\x80\xED\xB8\x80"_utf8);
    EXPECT_EQ(UTF16to8(u"\u00E9\0b"_utf16), "\xC3\xA9\0\0"_utf8) << "three units stay three";
    EXPECT_EQ(UTF16to8(u"\u00E9\0b"_utf16.c_str()), "\xC3\xA9"_utf8);
    EXPECT_EQ(UTF8to16("a\0\xF4\x8F\xBF\xBF\xED\xA0\xBD\xED\xB8\x80"_utf8),
              (UTF16String{'a', 0, 0xDBFF, 0xDFFF, 0xD83D, 0xDE00}));
    std::istringstream malformed(
        "\xC0\x80 \xC1\xBF \xE0\x80\x80 \xE0\x9F\xBF \xF0\x80\x80\x80 \xF0\x8F\xBF\xBF "
        "\xF4\x90\x80\x80 \xF5\x80\x80\x80 \xF8\x88\x80\x80 \xFF \x80 \xE2\x82 \xE9");
    for (std::string each; malformed >> each;) {
        EXPECT_EQ(AsciiToUTF16(("\u20AC" + each + "z").c_str()), u"\u20AC"_utf16);
        EXPECT_EQ(AsciiToUTF16(each.c_str()), UTF16String());
    }
}

TEST(Unicode, EveryUnitIsClassifiedAndSurvivesTheRoundTrip) {
    for (unsigned value = 1; value <= 0xFFFF; ++value) {
        auto const unit = static_cast<std::uint16_t>(value);
        EXPECT_EQ(UnicodeSurrogate(unit), value / 1024 == 0xD800 / 1024   ? kSurrogate_High
                                          : value / 1024 == 0xDC00 / 1024 ? kSurrogate_Low
                                                                          : kSurrogate_None);
        EXPECT_EQ(UTF8to16(UTF16to8(UTF16String(1, unit))), UTF16String(1, unit));
    }
}

TEST(Unicode, LongTextIsConvertedAcrossTheBordersOfItsChunks) {
    std::mt19937 random(20011);
    for (std::size_t round = 0; round < 60; ++round) {
        UTF16String text =
            round % 2 == 0 ? UTF16String(5000, 'x') : RandomText(random, 2100 + random() % 3000);
        // A surrogate pair, or a sequence of four bytes, at each position around a border.
        text.replace(2030 + round / 2, 2, {0xD83D, 0xDE00});
        if (round % 3 == 0) {
            text[random() % text.size()] = 0;
        }
        UTF8String const bytes = model::UTF16to8(text);
        UTF8String damaged = bytes;
        damaged[random() % bytes.size()] ^=
            static_cast<std::uint8_t>(round % 4 == 3 ? random() : 0);
        UTF16String const decoded = model::UTF8to16(damaged);
        for (UnicodeKernels const* const kernels : KernelsOfThisProcessor()) {
            SCOPED_TRACE(kernels->name);
            auto const encoded = impl::EncodeWith(*kernels, text.data(), text.size());
            ASSERT_EQ(encoded, bytes);
            ASSERT_LT(encoded.capacity(), encoded.size() + 16) << "some libraries round it up";
            ASSERT_EQ(impl::DecodeWith(*kernels, damaged.data(), damaged.size()), decoded);
        }
    }
}

TEST(UnicodeKernels, AreTheBestThatTheProcessorHas) {
#if defined(__x86_64__)
    // What the system says of the processor, without what it does not support.
    std::ifstream file("/proc/cpuinfo");
    std::string const text((std::istreambuf_iterator<char>(file)), {});
    auto const has = [&text](char const* inFlag) { return text.find(inFlag) != text.npos; };
    std::string const best = has(" avx512_vbmi2") ? "AVX-512" : has(" avx2") ? "AVX2" : "portable";
#elif defined(__AARCH64EL__)
    std::string const best = "NEON";
#else
    std::string const best = "portable";
#endif
    EXPECT_EQ(impl::BestUnicodeKernels().name, best);
}

TEST(UnicodeKernels, AgreeOnTextWholeAndDamagedAndReadNothingBesideIt) {
    std::mt19937 random(20011);
    for (std::size_t length = 0; length <= 200; ++length) {
        for (std::size_t place = 0; place < 16; ++place) {
            UTF16String text = RandomText(random, length);
            UTF8String const bytes = model::EncodeAll(text);
            ASSERT_NO_FATAL_FAILURE(ExpectKernelsEncode(text, place));
            ASSERT_NO_FATAL_FAILURE(ExpectKernelsDecode(bytes, place));
            text[random() % (length + 1)] = 0;
            ASSERT_NO_FATAL_FAILURE(ExpectKernelsEncode(text, place));
            for (int round = 0; round < 20 && length > 1; ++round) {
                UTF8String damaged = bytes;
                damaged[random() % bytes.size()] = static_cast<std::uint8_t>(random());
                damaged.erase(random() % bytes.size(), random() % 2);
                ASSERT_NO_FATAL_FAILURE(ExpectKernelsDecode(damaged, place));
            }
        }
    }
}

} // namespace
} // namespace brindle::utility
