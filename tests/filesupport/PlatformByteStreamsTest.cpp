#include "tests/support/InTemporaryDirectory.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSaveStream.h>

namespace brindle::filesupport {
namespace {

class PlatformByteStreams : public tests::InTemporaryDirectory {
protected:
    File const mFile{At("file")};
};

TEST_F(PlatformByteStreams, WriteOverWhatIsThereAndReadToTheEnd) {
    Fill("file", "0123456789");
    {
        OPlatformByteStream out(mFile);
        out.Put('a');
        EXPECT_EQ(out.Length(), 10u);
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(out.CurPos(), 11u);
    }
    IPlatformByteStream in(mFile), other(mFile);
    EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
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

TEST_F(PlatformByteStreams, ANewFileTakesNobodysPlace) {
    File const link(At("link"));
    std::filesystem::create_symlink("file", Native("link"));
    EXPECT_THROW((OPlatformByteStream{link, kMakeNewFile}), create_exception);
    EXPECT_FALSE(mFile.Exists());
    OPlatformByteStream(mFile, kMakeNewFile).Put('a');
    EXPECT_THROW((OPlatformByteStream{mFile, kMakeNewFile}), create_exception);
    EXPECT_EQ(IPlatformByteStream(mFile).Get(), 'a');
    OPlatformByteStream(File(At("private")), kMakeNewPrivateFile);
    EXPECT_EQ(std::filesystem::status(Native("private")).permissions(),
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

TEST_F(PlatformByteStreams, FailuresKnowTheirCause) {
    File const dir(mTemporary.Path()), missing(At("no/file"));
    ExpectFailure<file_not_found_exception>(mFile, Operation::kOpen, Cause::kFileNotFound,
                                            [&] { IPlatformByteStream{mFile}; });
    ExpectFailure<file_not_found_exception>(missing, Operation::kOpen, Cause::kPathNotFound,
                                            [&] { OPlatformByteStream{missing}; });
    ExpectFailure<io_error>(dir, Operation::kOpen, Cause::kAccessDenied,
                            [&] { IPlatformByteStream{dir}; });
    Fill("file", "0");
    OPlatformByteStream out(mFile);
    ExpectFailure<io_error>(mFile, Operation::kOpen, Cause::kSharingViolation,
                            [&] { IPlatformByteStream{mFile}; });
    ExpectFailure<io_error>(mFile, Operation::kSeek, Cause::kInvalidParameter,
                            [&] { out.CurPos(~std::uint64_t{0}); });
    out.CurPos(~std::uint64_t{0} / 2);
    ExpectFailure<io_error>(mFile, Operation::kWrite, Cause::kFileTooLarge, [&] { out.Put('x'); });
    IPlatformByteStream in(mFile, kShareWithEverybody);
    EXPECT_EQ(in.Get(), '0') << "what only looks is not refused";
    ExpectFailure<eof_error>(mFile, Operation::kRead, Cause::kEndOfFile, [&] { in.Get(); });
    auto cause = Cause::kNone;
    EXPECT_EQ(KindOf(missing, cause), FileKind::kMissing);
    EXPECT_EQ(cause, Cause::kPathNotFound);
    ExpectFailure<config::FileFailure>(missing, Operation::kCreate, Cause::kPathNotFound,
                                       [&] { OSafeSaveStream{missing}; });
    ExpectFailure<config::FileFailure>(mFile, Operation::kReplace, Cause::kSharingViolation,
                                       [&] { OSafeSaveStream{mFile}; });
}

} // namespace
} // namespace brindle::filesupport
