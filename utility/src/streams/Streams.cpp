#include <brindle/utility/Streams.h>

#include "utility/src/streams/StandardTextBuffer.h"

#include <brindle/debug/StreamBuffers.h>

#include <iostream>
#include <new>

namespace brindle::utility {

namespace {

/// `inFresh` is a new stream without a buffer.
template <typename Unit>
std::basic_streambuf<Unit>* Reset(std::basic_ios<Unit>& ioStream, std::basic_ios<Unit>& inFresh,
                                  std::basic_streambuf<Unit>* inBuffer) {
    std::basic_streambuf<Unit>* const earlier = ioStream.rdbuf();
    // This copies the exception mask too, so that setting the buffer cannot throw.
    ioStream.copyfmt(inFresh);
    ioStream.rdbuf(inBuffer);
    return earlier;
}

/// Storage for a static object that is constructed in place and never destroyed.
template <typename Object>
union Storage {
    constexpr Storage() noexcept : nothing() {}
    ~Storage() {}

    char nothing;
    Object object;
};

Storage<debug::DebugStreamBuffer<std::uint16_t>> S_debugBuffer;
Storage<UTF16OutputStream> S_debugStream;
Storage<debug::UTF16StdOutStreamBuffer<std::uint16_t>> S_stdOutBuffer;
Storage<UTF16OutputStream> S_stdOutStream;
Storage<StandardTextBuffer> S_textOutBuffer;
Storage<UTF16OutputStream> S_textOutStream;
Storage<StandardTextBuffer> S_textErrBuffer;
Storage<UTF16OutputStream> S_textErrStream;

/// Constructs the global streams before all static objects of clients, also if these are linked
/// with an archive of the library, and flushes them after the destructors of those objects. Text
/// that is written even later is flushed at once.
class GlobalStreams {
public:
    GlobalStreams() {
        ::new (&S_debugBuffer.object) debug::DebugStreamBuffer<std::uint16_t>;
        ::new (&S_debugStream.object) UTF16OutputStream(&S_debugBuffer.object);
        ::new (&S_stdOutBuffer.object) debug::UTF16StdOutStreamBuffer<std::uint16_t>;
        ::new (&S_stdOutStream.object) UTF16OutputStream(&S_stdOutBuffer.object);
        // These keep nothing back, and need no flush at exit.
        ::new (&S_textOutBuffer.object) StandardTextBuffer(std::cout);
        ::new (&S_textOutStream.object) UTF16OutputStream(&S_textOutBuffer.object);
        ::new (&S_textErrBuffer.object) StandardTextBuffer(std::cerr);
        ::new (&S_textErrStream.object) UTF16OutputStream(&S_textErrBuffer.object);
    }
    GlobalStreams(GlobalStreams const&) = delete;
    GlobalStreams& operator=(GlobalStreams const&) = delete;
    ~GlobalStreams() {
        FlushFromNowOn(S_stdOutStream.object, S_stdOutBuffer.object);
        FlushFromNowOn(S_debugStream.object, S_debugBuffer.object);
    }

private:
    static void FlushFromNowOn(UTF16OutputStream& ioStream,
                               std::basic_streambuf<std::uint16_t>& ioBuffer) noexcept {
        try {
            ioBuffer.pubsync();
        } catch (...) {
            // The text cannot be written any more.
        }
        // A client's buffer may have been destroyed by now, so it is left alone.
        if (ioStream.rdbuf() == &ioBuffer) {
            ioStream.setf(std::ios_base::unitbuf);
        }
    }

    std::ios_base::Init mStandardStreams; // which the references below denote
};

// The least number that the compiler lets libraries use: it precedes objects without one.
__attribute__((init_priority(101))) GlobalStreams S_globalStreams;

} // namespace

std::basic_streambuf<char>* SetStreamBuffer(std::basic_ostream<char>& ioStream,
                                            std::basic_streambuf<char>* inBuffer) {
    std::basic_ostream<char> fresh(nullptr);
    return Reset(ioStream, fresh, inBuffer);
}

std::basic_streambuf<std::uint16_t>*
SetStreamBuffer(UTF16OutputStream& ioStream, std::basic_streambuf<std::uint16_t>* inBuffer) {
    UTF16OutputStream fresh;
    return Reset(ioStream, fresh, inBuffer);
}

namespace streams {

// Constant-initialised, so these are valid references at any time.
UTF16OutputStream& TextOut = S_textOutStream.object;
UTF16OutputStream& TextErr = S_textErrStream.object;
UTF16OutputStream& UTF16Out = S_stdOutStream.object;
UTF16OutputStream& Debug = S_debugStream.object;
std::basic_istream<char>& In = std::cin;
std::basic_ostream<char>& Out = std::cout;
std::basic_ostream<char>& Log = std::clog;
std::basic_ostream<char>& Err = std::cerr;

} // namespace streams

} // namespace brindle::utility
