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
    EXPECT_THROW(IPlatformByteStream{file}, file_not_found_exception);
    EXPECT_THROW(OPlatformByteStream{file}, file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(temporary.Path(u"no\\file"_utf16))},
                 file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(temporary.Path())}, io_error);
    std::ofstream(temporary.Native("file")) << "0123456789";
    {
        OPlatformByteStream out(file);
        EXPECT_THROW(OPlatformByteStream{file}, io_error);
        EXPECT_THROW(IPlatformByteStream{file}, io_error);
        out.Put('a');
        EXPECT_EQ(out.Length(), 10u);
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(out.CurPos(), 11u);
        out.CurPos(~std::uint64_t{0} / 2);
        EXPECT_THROW(out.Put('x'), io_error);
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
    EXPECT_THROW(in.CurPos(~std::uint64_t{0}), io_error);
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

/// What the exception of a stream says of its cause.
template <typename Operation>
std::pair<config::FileOperation, utility::SystemError> FailureOf(File const& inFile,
                                                                 Operation inOperation) {
    try {
        inOperation();
    } catch (config::FileFailure const& failure) {
        EXPECT_EQ(failure.Path(), inFile.FullPath());
        return {failure.Operation(), failure.Cause()};
    }
    ADD_FAILURE() << "nothing thrown";
    return {};
}

TEST(PlatformByteStreams, FailuresKnowTheirCause) {
    using config::FileOperation;
    using utility::SystemError;
    tests::TemporaryDirectory const temporary;
    File const file(temporary.Path(u"file"_utf16)), dir(temporary.Path());
    std::ofstream(temporary.Native("file")) << "0";
    EXPECT_EQ(FailureOf(dir, [&] { IPlatformByteStream{dir}; }),
              std::pair(FileOperation::kOpen, SystemError::kAccessDenied));
    OPlatformByteStream out(file);
    EXPECT_EQ(FailureOf(file, [&] { IPlatformByteStream{file}; }),
              std::pair(FileOperation::kOpen, SystemError::kSharingViolation));
    EXPECT_EQ(FailureOf(file, [&] { out.CurPos(~std::uint64_t{0}); }),
              std::pair(FileOperation::kSeek, SystemError::kInvalidParameter));
    out.CurPos(~std::uint64_t{0} / 2);
    EXPECT_EQ(FailureOf(file, [&] { out.Put('x'); }),
              std::pair(FileOperation::kWrite, SystemError::kFileTooLarge));

    IPlatformByteStream in(file, kShareWithEverybody);
    EXPECT_EQ(in.Get(), '0') << "what only looks is not refused";
    EXPECT_EQ(FailureOf(file, [&] { in.Get(); }),
              std::pair(FileOperation::kRead, SystemError::kEndOfFile));
    File const missing(temporary.Path(u"no\\file"_utf16));
    auto cause = SystemError::kNone;
    EXPECT_EQ(KindOf(missing, cause), FileKind::kMissing);
    EXPECT_EQ(cause, SystemError::kPathNotFound);
    EXPECT_EQ(FailureOf(missing, [&] { OSafeSaveStream{missing}; }),
              std::pair(FileOperation::kCreate, SystemError::kPathNotFound));
    EXPECT_EQ(FailureOf(file, [&] { OSafeSaveStream{file}; }),
              std::pair(FileOperation::kReplace, SystemError::kSharingViolation));
}

} // namespace
} // namespace brindle::filesupport
