#include <brindle/utility/Guid.h>

#include <brindle/utility/StringStreams.h>
#include <brindle/utility/Unicode.h>

#include "tests/ReportedErrors.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <random>
#include <sstream>

namespace {

bool S_systemHasRandomBytes = true;

} // namespace

/// Stands before the system's own, so that it can fail.
extern "C" ssize_t getrandom(void* outBytes, std::size_t inCount, unsigned inFlags) {
    if (!S_systemHasRandomBytes) {
        errno = ENOSYS;
        return -1;
    }
    return ::syscall(SYS_getrandom, outBytes, inCount, inFlags);
}

namespace brindle::utility {

namespace {

constexpr char kMalformed[] =
    "1 105 28 $$$/brn/utility/Error/MalformedGUID=Malformed Guid string.\n";
std::string const kText = "12345678-9abc-def0-0102-030405060708";
constexpr Guid kGuid(0x12345678, 0x9ABC, 0xDEF0, 1, 2, 3, 4, 5, 6, 7, 8);

UTF16String Wide(std::string const& inText) {
    return {inText.begin(), inText.end()};
}

TEST(Guid, TextGoesBothWaysInEitherCase) {
    std::mt19937 random;
    for (int round = 0; round < 500; ++round) {
        auto const first = static_cast<std::uint32_t>(random());
        auto const second = static_cast<std::uint16_t>(random());
        auto const third = static_cast<std::uint16_t>(random());
        std::array<std::uint8_t, 8> b{};
        for (auto& byte : b) {
            byte = static_cast<std::uint8_t>(random());
        }
        Guid const guid(first, second, third, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
        for (char const* const format : {"%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                                         "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X"}) {
            char text[40];
            std::snprintf(text, sizeof text, format, first, second, third, b[0], b[1], b[2], b[3],
                          b[4], b[5], b[6], b[7]);
            EXPECT_TRUE(guid == Guid(text) && guid == Guid(std::string(text)) &&
                        guid == Guid(Wide(text)));
            EXPECT_EQ(format[3] == 'x', guid.AsString() == Wide(text)) << text;
        }
        std::uint32_t out1 = 0;
        std::uint16_t out2 = 0, out3 = 0;
        std::array<std::uint8_t, 8> o{};
        Guid::GuidToComponents(guid, out1, out2, out3, o[0], o[1], o[2], o[3], o[4], o[5], o[6],
                               o[7]);
        EXPECT_TRUE(out1 == first && out2 == second && out3 == third && o == b);
        EXPECT_TRUE(Guid(guid.GetGUID()) == guid);
    }
    EXPECT_EQ(Wide("00000000-0000-0000-0000-000000000000"), Guid().AsString());
    EXPECT_TRUE(kGuid == Guid(Wide(kText) + u"\0more"_utf16)) << "conversion ends at a NUL";
}

TEST(Guid, WhateverElseIsReportedAndLeavesZero) {
    tests::ReportedErrors errors;
    std::vector<std::string> texts = {"",           "{" + kText + "}",   kText.substr(1),
                                      kText + "0",  kText + '\0',        " " + kText,
                                      kText + "\n", std::string(36, '-')};
    for (std::size_t i = 0; i < kText.size(); ++i) {
        for (char const wrong : {'g', 'G', '/', ':', '@', '`', ' ', '-', '\0', '\xB0', '0'}) {
            std::string text = kText;
            text[i] = wrong;
            bool const isSameKind =
                (kText[i] == '-') == (wrong == '-') && (wrong == '-' || wrong == '0');
            if (!isSameKind) {
                texts.push_back(text);
            }
        }
        UTF16String wide = Wide(kText);
        wide[i] = static_cast<std::uint16_t>(wide[i] + 0x100);
        EXPECT_TRUE(Guid() == Guid(wide));
        EXPECT_EQ(kMalformed, errors.Take()) << "a unit that only ends like a digit, at " << i;
    }
    for (auto const& text : texts) {
        EXPECT_TRUE(Guid() == Guid(text));
        EXPECT_EQ(kMalformed, errors.Take()) << text;
    }
    EXPECT_TRUE(Guid() == Guid(static_cast<char const*>(nullptr)));
    EXPECT_EQ(kMalformed, errors.Take());
}

TEST(Guid, OrdersByTheGroupsThenBySignedHalvesOfTheRest) {
    constexpr Guid kAscending[] = {Guid(0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x80),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x7F),
                                   Guid(0, 0, 0, 0xFF, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0),
                                   Guid(0, 0, 0, 0, 0, 0, 0x7F, 0, 0, 0, 0x80),
                                   Guid(0, 0, 1, 0, 0, 0, 0x80, 0, 0, 0, 0),
                                   Guid(0, 0, 0x8000, 0, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(0, 0x8000, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                                   Guid(0x80000000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)};
    for (Guid const& lhs : kAscending) {
        for (Guid const& rhs : kAscending) {
            EXPECT_EQ(&lhs < &rhs, lhs < rhs) << (&lhs - kAscending) << ' ' << (&rhs - kAscending);
            EXPECT_EQ(&lhs > &rhs, lhs > rhs);
            EXPECT_EQ(&lhs == &rhs, lhs == rhs);
            EXPECT_EQ(&lhs != &rhs, lhs != rhs);
        }
    }
}

TEST(Guid, StreamsCarryIt) {
    tests::ReportedErrors errors;
    std::ostringstream out;
    out << kGuid << ' ' << Guid();
    EXPECT_EQ(kText + " 00000000-0000-0000-0000-000000000000", out.str());
    oUTF16StringStream wideOut;
    wideOut << kGuid << Guid();
    EXPECT_EQ(Wide(kText + "00000000-0000-0000-0000-000000000000"), wideOut.str());

    std::istringstream in("\t" + kText + "\nwrong ");
    iUTF16StringStream wideIn(Wide(" " + kText + "\twrong"));
    Guid guid, wideGuid;
    in >> guid;
    wideIn >> wideGuid;
    EXPECT_TRUE(guid == kGuid && wideGuid == kGuid);
    in >> guid;
    wideIn >> wideGuid;
    EXPECT_TRUE(guid == Guid() && wideGuid == Guid());
    EXPECT_EQ(std::string(kMalformed) + kMalformed, errors.Take());
    guid = wideGuid = kGuid;
    EXPECT_FALSE(in >> guid);
    EXPECT_FALSE(wideIn >> wideGuid);
    EXPECT_TRUE(guid == kGuid && wideGuid == kGuid) << "no word is left";
    EXPECT_EQ("", errors.Take());
}

TEST(Guid, ASystemWithoutRandomBytesIsReported) {
    tests::ReportedErrors errors;
    S_systemHasRandomBytes = false;
    Guid const none = Guid::CreateUnique();
    S_systemHasRandomBytes = true;
    EXPECT_TRUE(none == Guid());
    EXPECT_EQ("1 105 27 $$$/brn/utility/Error/CouldntCreateGUID=Couldn't create Guid.\n",
              errors.Take());
    EXPECT_TRUE(Guid::CreateUnique() != Guid::CreateUnique());
}

} // namespace

} // namespace brindle::utility
