#include <brindle/utility/Guid.h>

#include <brindle/utility/StringStreams.h>

#include "tests/support/RecordingErrorManager.h"
#include "tests/support/SystemCallFilter.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <sys/syscall.h>
#include <thread>

namespace brindle::utility {

namespace {

std::string const kMalformed =
    "1 105 28 $$$/brn/utility/Error/MalformedGUID=Malformed Guid string.\n";
std::string const kText = "fedcba98-7654-3210-0f1e-2d3c4b5a6978";
constexpr Guid kGuid(0xFEDCBA98, 0x7654, 0x3210, 0x0F, 0x1E, 0x2D, 0x3C, 0x4B, 0x5A, 0x69, 0x78);

using tests::Wide;

TEST(Guid, TextIsParsedAndWrittenAndOtherTextIsReported) {
    tests::RecordingErrorManager errors;
    for (auto const& text : {kText, std::string("FEDCBA98-7654-3210-0F1E-2D3C4B5A6978")}) {
        EXPECT_EQ(Guid(text.c_str()), kGuid);
        EXPECT_EQ(Guid(text), kGuid);
        EXPECT_EQ(Guid(Wide(text)), kGuid);
    }
    EXPECT_EQ(kGuid.AsString(), Wide(kText));
    EXPECT_EQ(Guid(Wide(kText) + u"\0more"_utf16), kGuid) << "the text ends at a NUL";
    EXPECT_EQ(errors.TakeLines(), "");

    EXPECT_EQ(Guid(static_cast<char const*>(nullptr)), Guid());
    EXPECT_EQ(errors.TakeLines(), kMalformed);
    for (std::size_t i = 0; i < kText.size(); ++i) {
        UTF16String wide = Wide(kText);
        wide[i] = static_cast<std::uint16_t>(wide[i] + 0x100);
        EXPECT_EQ(Guid(wide), Guid());
        EXPECT_EQ(errors.TakeLines(), kMalformed) << "a digit's low byte in another unit, at " << i;
        for (auto const& wrong : {"", "g", "G", "/", ":", "@", "`", "\xB0", "00", "--"}) {
            EXPECT_EQ(Guid(std::string(kText).replace(i, 1, wrong)), Guid());
            EXPECT_EQ(errors.TakeLines(), kMalformed) << wrong << " at " << i;
        }
    }
}

TEST(Guid, FieldsAreKeptAndOrderedByGroupsAndSignedHalves) {
    std::uint32_t f1 = 0;
    std::uint16_t f2 = 0, f3 = 0;
    std::uint8_t b[8];
    Guid::GuidToComponents(kGuid, f1, f2, f3, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
    EXPECT_EQ(Guid(f1, f2, f3, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]), kGuid);
    EXPECT_EQ(kGuid.GetGUID().Data4[0], 0x0F);

    char const* const ascending[] = {
        "00000000-0000-0000-0000-008000000000", "00000000-0000-0000-0000-00ff00000000",
        "00000000-0000-0000-ff00-00ff00000000", "00000000-0000-0000-0000-000000000080",
        "00000000-0000-0000-0000-000000000000", "00000000-0000-0000-0000-0000ff000000",
        "00000000-0000-0000-0000-000000010000", "00000000-0000-0000-0000-00000000007f",
        "00000000-0000-0000-ff00-000000000000", "00000000-0000-0000-0001-000000000000",
        "00000000-0000-0000-0000-007f00000080", "00000000-0000-0001-0000-008000000000",
        "00000000-0000-8000-0000-000000000000", "00000000-0001-0000-0000-000000000000",
        "00000000-8000-0000-0000-000000000000", "00000001-0000-0000-0000-000000000000",
        "80000000-0000-0000-0000-000000000000"};
    for (auto const& lhs : ascending) {
        for (auto const& rhs : ascending) {
            Guid const left(lhs), right(rhs);
            SCOPED_TRACE(std::string(lhs) + ' ' + rhs);
            EXPECT_EQ(left < right, &lhs < &rhs);
            EXPECT_EQ(left <= right, &lhs <= &rhs);
            EXPECT_EQ(left >= right, &lhs >= &rhs);
            EXPECT_EQ(std::hash<Guid>()(left) == std::hash<Guid>()(right), &lhs == &rhs);
            EXPECT_EQ(left > right, &lhs > &rhs);
            EXPECT_EQ(left == right, &lhs == &rhs);
            EXPECT_EQ(left != right, &lhs != &rhs);
        }
    }
}

TEST(Guid, StreamsCarryIt) {
    tests::RecordingErrorManager errors;
    auto const pass = [&errors](auto outStream, auto inStream) {
        outStream << 1 << ' ' << kGuid << " wrong\t";
        inStream.str(outStream.str());
        int number = 0;
        Guid guid;
        EXPECT_TRUE(inStream >> number >> guid);
        EXPECT_EQ(guid, kGuid);
        EXPECT_TRUE(inStream >> guid);
        EXPECT_EQ(guid, Guid());
        EXPECT_EQ(errors.TakeLines(), kMalformed);
        guid = kGuid;
        EXPECT_FALSE(inStream >> guid) << "no word is left";
        EXPECT_EQ(guid, kGuid);
        EXPECT_EQ(errors.TakeLines(), "");
        return outStream.str();
    };
    pass(std::ostringstream(), std::istringstream());
    pass(oUTF8StringStream(), iUTF8StringStream(UTF8String()));
    EXPECT_EQ((oUTF16StringStream() << kGuid).str(), Wide(kText));
    EXPECT_EQ(pass(oUTF16StringStream(), iUTF16StringStream(UTF16String())),
              Wide("1 " + kText + " wrong\t"));
}

TEST(Guid, ASystemWithoutRandomBytesIsReported) {
    tests::RecordingErrorManager errors;
    std::thread([] {
        EXPECT_TRUE(tests::FilterSystemCall(SYS_getrandom, SECCOMP_RET_ERRNO | ENOSYS));
        EXPECT_EQ(Guid::CreateUnique(), Guid());
    }).join();
    EXPECT_EQ(errors.TakeLines(),
              "1 105 27 $$$/brn/utility/Error/CouldntCreateGUID=Couldn't create Guid.\n");
}

} // namespace

} // namespace brindle::utility
