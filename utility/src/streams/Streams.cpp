#include <brindle/utility/Streams.h>

#include <brindle/debug/StreamBuffers.h>

#include <iostream>

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

// In this order, so that each stream is destroyed before its buffer. A buffer flushes when it is
// destroyed.
debug::DebugStreamBuffer<std::uint16_t> S_debugBuffer;
UTF16OutputStream S_debugStream(&S_debugBuffer);
debug::UTF16StdOutStreamBuffer<std::uint16_t> S_stdOutBuffer;
UTF16OutputStream S_stdOutStream(&S_stdOutBuffer);

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

UTF16OutputStream& UTF16Out = S_stdOutStream;
UTF16OutputStream& Debug = S_debugStream;
std::basic_istream<char>& In = std::cin;
std::basic_ostream<char>& Out = std::cout;
std::basic_ostream<char>& Log = std::clog;
std::basic_ostream<char>& Err = std::cerr;

} // namespace streams

} // namespace brindle::utility
