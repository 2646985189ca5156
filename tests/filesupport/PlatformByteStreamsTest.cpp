#include "tests/TemporaryDirectory.h"

#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

namespace brindle::filesupport {

namespace {

class PlatformByteStreams : public testing::Test {
protected:
    void Fill(std::string const& inContent) {
        std::ofstream(mTemporary.Native("file"), std::ios::binary) << inContent;
    }
    std::string Content() {
        std::ifstream file(mTemporary.Native("file"), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    tests::TemporaryDirectory mTemporary;
    File mFile{mTemporary.Path(u"file"_utf16)};
};

TEST_F(PlatformByteStreams, ReadToTheEndAndNoFurther) {
    Fill("0123456789");
    IPlatformByteStream in(mFile);
    EXPECT_EQ(10u, in.Length());
    EXPECT_EQ('0', in.Get());
    std::uint8_t block[16] = {};
    in.ReadBlock(block, 4);
    EXPECT_EQ(0, memcmp("1234", block, 4));
    EXPECT_EQ(5u, in.CurPos());
    EXPECT_THROW(in.ReadBlock(block, 6), eof_error);
    EXPECT_EQ(0, memcmp("56789", block, 5)) << "what there was has been delivered";
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
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(11u, out.CurPos());
        EXPECT_EQ(11u, out.Length());
    }
    EXPECT_EQ("a1234567bcd", Content());
}

TEST_F(PlatformByteStreams, OpenOnlyRegularFilesThatNobodyElseWrites) {
    EXPECT_THROW(IPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(OPlatformByteStream{mFile}, file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path(u"no\\file"_utf16))},
                 file_not_found_exception);
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path())}, io_error);
    ASSERT_EQ(0, mkfifo(mTemporary.Native("fifo").c_str(), 0600));
    EXPECT_THROW(IPlatformByteStream{File(mTemporary.Path(u"fifo"_utf16))}, io_error)
        << "a FIFO must not be waited for";
    Fill("x");
    {
        IPlatformByteStream const one(mFile), two(mFile);
        EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
        EXPECT_THROW(mFile.Create(), create_exception);
    }
    OPlatformByteStream const writer(mFile);
    EXPECT_THROW(OPlatformByteStream{mFile}, io_error);
    EXPECT_THROW(IPlatformByteStream{mFile}, io_error);
    EXPECT_EQ("x", Content());
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
        EXPECT_THROW(
            {
                for (std::uint32_t value = 0; value < 1000; ++value) {
                    buffered << value;
                }
            },
            io_error);
        EXPECT_THROW(buffered.Flush(), io_error);
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
}

} // namespace

} // namespace brindle::filesupport
