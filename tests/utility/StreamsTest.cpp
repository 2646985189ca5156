#include <brindle/debug/StreamBuffers.h>
#include <brindle/utility/Locale.h>
#include <brindle/utility/Streams.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <vector>

using namespace brindle;
using namespace brindle::utility;

TEST(Streams, StandardOutputGetsALineForEachChunk) {
    testing::internal::CaptureStdout();
    streams::UTF16Out << UTF16String(300, 'x') << std::flush << "abc" << std::flush << std::flush;
    streams::UTF16Out << u"caf\u00E9\0lost"_utf16 << std::flush;
    {
        debug::UTF16StdOutStreamBuffer<std::uint16_t> buffer;
        UTF16OutputStream(&buffer) << "left to the destructor";
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              std::string(255, 'x') + "\n" + std::string(45, 'x') +
                  "\nabc\ncaf\xC3\xA9\nleft to the destructor\n");
}

TEST(Streams, DebugTextIsFlushedAtExit) {
    EXPECT_EXIT(
        {
            streams::Debug << "left behind";
            std::exit(0);
        },
        testing::ExitedWithCode(0), "left behind");
}

/// Writes to its own stream whenever it receives text.
struct EchoingBuffer : debug::UTF16StreamBufferImpl<std::uint16_t> {
    ~EchoingBuffer() override {
        fails = true; // the stream is gone
        FlushAtEnd();
    }
    void Emit(std::uint16_t const* inText) override {
        if (fails) {
            throw std::runtime_error("not now");
        }
        chunks.emplace_back(inText);
        *stream << echo << std::flush;
    }

    UTF16OutputStream* stream = nullptr;
    UTF16String echo;
    std::vector<UTF16String> chunks;
    bool fails = false;
};

TEST(Streams, AFlushHookMayWriteIntoItsOwnStream) {
    EchoingBuffer buffer;
    UTF16OutputStream stream(&buffer);
    buffer.stream = &stream;
    buffer.echo = u"echo"_utf16;
    stream << "short" << std::flush << UTF16String(255, 'x') << std::flush;
    EXPECT_EQ(buffer.chunks,
              (std::vector<UTF16String>{u"short"_utf16, u"echo"_utf16 + UTF16String(251, 'x'),
                                        u"echoxxxx"_utf16}));
    EXPECT_TRUE(stream.good());

    buffer.echo.assign(256, 'y');
    stream << std::flush;
    EXPECT_EQ(buffer.chunks.back(), u"echo"_utf16);
    EXPECT_TRUE(stream.bad());
}

TEST(Streams, AChunkThatCouldNotBeEmittedIsTriedAgain) {
    EchoingBuffer buffer;
    UTF16OutputStream stream(&buffer);
    buffer.stream = &stream;
    buffer.fails = true;
    stream << "kept" << std::flush;
    EXPECT_TRUE(stream.bad());
    stream.clear();
    buffer.fails = false;
    stream << ", then more" << std::flush;
    EXPECT_EQ(buffer.chunks, std::vector<UTF16String>{u"kept, then more"_utf16});
}

TEST(Streams, SetStreamBufferResetsTheStream) {
    std::basic_stringbuf<std::uint16_t> first, second;
    UTF16OutputStream stream;
    EXPECT_TRUE(stream.bad());
    EXPECT_EQ(SetStreamBuffer(stream, &first), nullptr);
    stream << "one" << std::hex << std::showbase << std::left << std::setfill(std::uint16_t{'*'})
           << std::setprecision(2) << std::setw(9);
    stream.setstate(std::ios_base::failbit);
    EXPECT_EQ(SetStreamBuffer(stream, &second), &first);
    EXPECT_TRUE(stream.good());
    stream << 255 << std::setw(4) << 'x' << 1.2345;
    EXPECT_EQ(first.str(), u"one"_utf16);
    EXPECT_EQ(second.str(), u"255   x1.2345"_utf16);

    std::stringbuf narrow;
    std::ostream out(&narrow);
    out.tie(&std::cout);
    out.setstate(std::ios_base::failbit);
    EXPECT_THROW(out.exceptions(~std::ios_base::goodbit), std::ios_base::failure);
    EXPECT_EQ(SetStreamBuffer(out, nullptr), &narrow);
    EXPECT_TRUE(out.bad());
    EXPECT_EQ(out.tie(), nullptr);
    EXPECT_EQ(SetStreamBuffer(out, &narrow), nullptr);
    EXPECT_TRUE(out.good());
}

TEST(Locale, AnUnknownUserLocaleIsTheClassicOne) {
    // In a process of its own, in which no test has asked for the locale yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("LC_ALL", "xx_XX.none", 1);
            std::exit(Locale::Native().name() == "C" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
