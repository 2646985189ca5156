#include "tests/TemporaryDirectory.h"

#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>

namespace brindle::filesupport {
namespace {

class PlatformByteStreams : public testing::Test {
protected:
    void Fill(std::string const& inContent) {
        std::ofstream(mTemporary.Native("file"), std::ios::binary) << inContent;
    }

    tests::TemporaryDirectory mTemporary;
    File mFile{mTemporary.Path(u"file"_utf16)};
};

TEST_F(PlatformByteStreams, ReadToTheEndAndNoFurther) {
    Fill("0123456789");
    IPlatformByteStream in(mFile);
    EXPECT_EQ('0', in.Get());
    std::string block(6, 'x');
    auto const bytes = reinterpret_cast<std::uint8_t*>(&block[0]);
    in.ReadBlock(bytes, 4);
    EXPECT_EQ(5u, in.CurPos());
    EXPECT_EQ("1234xx", block);
    EXPECT_THROW(in.ReadBlock(bytes, 6), eof_error);
    EXPECT_EQ("56789x", block);
    EXPECT_THROW(in.Get(), eof_error);
    in.CurPos(9);
    EXPECT_EQ('9', in.Get());
    in.CurPos(1u << 20);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.CurPos(~std::uint64_t{0}), io_error);
    EXPECT_EQ(10u, in.Length());
    Fill("012"); // the file shrinks while it is read
    in.CurPos(5);
    EXPECT_THROW(in.Get(), eof_error);
}

TEST_F(PlatformByteStreams, WriteOverWhatIsThereAndKeepTheRest) {
    Fill("0123456789");
    {
        OPlatformByteStream out(mFile);
        out.Put('a');
        EXPECT_EQ(10u, out.Length());
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(11u, out.CurPos());
        EXPECT_EQ(11u, out.Length());
    }
    std::ifstream file(mTemporary.Native("file"), std::ios::binary);
    EXPECT_EQ("a1234567bcd", std::string(std::istreambuf_iterator<char>(file), {}));
}

TEST_F(PlatformByteStreams, OpenOnlyRegularFilesThatNobodyElseWrites) {
    EXPECT_THROW(IPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(OPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path(u"no\\file"_utf16))},
                 file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path())}, io_error);
    ASSERT_EQ(0, mkfifo(mTemporary.Native("fifo").c_str(), 0600));
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path(u"fifo"_utf16))}, io_error);
    Fill("x");
    {
        IPlatformByteStream const one(mFile), two(mFile);
        EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
    }
    OPlatformByteStream const writer(mFile);
    EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
    EXPECT_THROW(IPlatformByteStream{mFile}, io_error);
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
        OBufferedByteStream buffered(out, 600, 100);
        buffered.WriteBlock(reinterpret_cast<std::uint8_t const*>(std::string(600, 'x').data()),
                            600);
        buffered << std::string(500, 'x');
        EXPECT_THROW(buffered.Flush(), io_error);
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
}

} // namespace
} // namespace brindle::filesupport
