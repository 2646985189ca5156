#include "tests/TemporaryDirectory.h"

#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/resource.h>

namespace brindle::filesupport {
namespace {

class PlatformByteStreams : public testing::Test {
protected:
    void Fill(std::string const& inContent) {
        std::ofstream(mTemporary.Native("file"), std::ios::binary) << inContent;
    }

    tests::TemporaryDirectory mTemporary;
    File mFile{mTemporary.Path(u"file"_utf16)};
    std::uint8_t mBlock[600] = {};
};

TEST_F(PlatformByteStreams, WriteOverWhatIsThereAndReadToTheEnd) {
    EXPECT_THROW(IPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(OPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path(u"no\\file"_utf16))},
                 file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path())}, io_error);
    Fill("0123456789");
    {
        OPlatformByteStream out(mFile);
        EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
        EXPECT_THROW(IPlatformByteStream{mFile}, io_error);
        out.Put('a');
        EXPECT_EQ(10u, out.Length());
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(11u, out.CurPos());
    }
    IPlatformByteStream in(mFile), other(mFile);
    EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
    EXPECT_EQ('a', in.Get());
    in.ReadBlock(mBlock, 7);
    EXPECT_EQ(8u, in.CurPos());
    EXPECT_THROW(in.ReadBlock(mBlock + 7, 4), eof_error);
    EXPECT_EQ("1234567bcd", std::string(mBlock, mBlock + 10));
    EXPECT_THROW(in.Get(), eof_error);
    in.CurPos(1u << 20);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.CurPos(~std::uint64_t{0}), io_error);
    EXPECT_EQ(11u, in.Length());
}

TEST_F(PlatformByteStreams, AFullDiskIsAnErrorThroughTheFiltersToo) {
    Fill("");
    auto const oldHandler = std::signal(SIGXFSZ, SIG_IGN); // as a host does
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit const tight{1000, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    {
        OPlatformByteStream out(mFile);
        OBufferedByteStream buffered(out, sizeof mBlock, 1);
        buffered.WriteBlock(mBlock, sizeof mBlock);
        buffered.WriteBlock(mBlock, sizeof mBlock);
        EXPECT_THROW(buffered.Flush(), io_error);
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
}

} // namespace
} // namespace brindle::filesupport
