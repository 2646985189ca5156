#include "tests/support/TemporaryDirectory.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSaveStream.h>

#include <gtest/gtest.h>

#include <fstream>

namespace brindle::filesupport {
namespace {

TEST(PlatformByteStreams, WriteOverWhatIsThereAndReadToTheEnd) {
    tests::TemporaryDirectory const temporary;
    File const file(temporary.Path(u"file"_utf16));
    std::ofstream(temporary.Native("file")) << "0123456789";
    {
        OPlatformByteStream out(file);
        out.Put('a');
        EXPECT_EQ(out.Length(), 10u);
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(out.CurPos(), 11u);
    }
    IPlatformByteStream in(file), other(file);
    EXPECT_THROW(OPlatformByteStream{file}, io_error);
    EXPECT_EQ(in.Get(), 'a');
    std::uint8_t block[10];
    in.ReadBlock(block, 7);
    EXPECT_EQ(in.CurPos(), 8u);
    EXPECT_THROW(in.ReadBlock(block + 7, 4), eof_error);
    EXPECT_EQ(std::string(block, block + 10), "1234567bcd");
    EXPECT_THROW(in.Get(), eof_error);
    in.CurPos(1u << 20);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_EQ(in.Length(), 11u);
}

TEST(PlatformByteStreams, ANewFileTakesNobodysPlace) {
    tests::TemporaryDirectory const temporary;
    File const file(temporary.Path(u"file"_utf16)), link(temporary.Path(u"link"_utf16));
    std::filesystem::create_symlink("file", temporary.Native("link"));
    EXPECT_THROW((OPlatformByteStream{link, kMakeNewFile}), create_exception);
    EXPECT_FALSE(file.Exists());
    OPlatformByteStream(file, kMakeNewFile).Put('a');
    EXPECT_THROW((OPlatformByteStream{file, kMakeNewFile}), create_exception);
    EXPECT_EQ(IPlatformByteStream(file).Get(), 'a');
    OPlatformByteStream(File(temporary.Path(u"private"_utf16)), kMakeNewPrivateFile);
    EXPECT_EQ(std::filesystem::status(temporary.Native("private")).permissions(),
              std::filesystem::perms(0600));
}

using Operation = config::FileOperation;
using Cause = utility::SystemError;

template <typename Exception, typename Action>
void ExpectFailure(File const& inFile, Operation inOperation, Cause inCause, Action inAction) {
    try {
        inAction();
        ADD_FAILURE() << "nothing thrown";
    } catch (Exception const& failure) {
        EXPECT_EQ(failure.Path(), inFile.FullPath());
        EXPECT_EQ(failure.Operation(), inOperation);
        EXPECT_EQ(failure.Cause(), inCause);
    }
}

TEST(PlatformByteStreams, FailuresKnowTheirCause) {
    tests::TemporaryDirectory const temporary;
    File const file(temporary.Path(u"file"_utf16)), dir(temporary.Path());
    File const missing(temporary.Path(u"no\\file"_utf16));
    ExpectFailure<file_not_found_exception>(file, Operation::kOpen, Cause::kFileNotFound,
                                            [&] { IPlatformByteStream{file}; });
    ExpectFailure<file_not_found_exception>(missing, Operation::kOpen, Cause::kPathNotFound,
                                            [&] { OPlatformByteStream{missing}; });
    ExpectFailure<io_error>(dir, Operation::kOpen, Cause::kAccessDenied,
                            [&] { IPlatformByteStream{dir}; });
    std::ofstream(temporary.Native("file")) << "0";
    OPlatformByteStream out(file);
    ExpectFailure<io_error>(file, Operation::kOpen, Cause::kSharingViolation,
                            [&] { IPlatformByteStream{file}; });
    ExpectFailure<io_error>(file, Operation::kSeek, Cause::kInvalidParameter,
                            [&] { out.CurPos(~std::uint64_t{0}); });
    out.CurPos(~std::uint64_t{0} / 2);
    ExpectFailure<io_error>(file, Operation::kWrite, Cause::kFileTooLarge, [&] { out.Put('x'); });
    IPlatformByteStream in(file, kShareWithEverybody);
    EXPECT_EQ(in.Get(), '0') << "what only looks is not refused";
    ExpectFailure<eof_error>(file, Operation::kRead, Cause::kEndOfFile, [&] { in.Get(); });
    auto cause = Cause::kNone;
    EXPECT_EQ(KindOf(missing, cause), FileKind::kMissing);
    EXPECT_EQ(cause, Cause::kPathNotFound);
    ExpectFailure<config::FileFailure>(missing, Operation::kCreate, Cause::kPathNotFound,
                                       [&] { OSafeSaveStream{missing}; });
    ExpectFailure<config::FileFailure>(file, Operation::kReplace, Cause::kSharingViolation,
                                       [&] { OSafeSaveStream{file}; });
}

} // namespace
} // namespace brindle::filesupport
