#include <brindle/utility/Streams.h>

#include <brindle/debug/StreamBuffers.h>

#include <iostream>

namespace brindle::utility {

namespace {

/// `inFresh` is a stream of the same kind without a buffer.
template <typename Unit>
std::basic_streambuf<Unit>* Reset(std::basic_ios<Unit>& ioStream, std::basic_ios<Unit>& inFresh,
                                  std::basic_streambuf<Unit>* inBuffer) {
    std::basic_streambuf<Unit>* const earlier = ioStream.rdbuf();
    // The exception mask goes too, so that the new state is not thrown.
    ioStream.copyfmt(inFresh);
    ioStream.rdbuf(inBuffer);
    return earlier;
}

// In this order, so that at unload each stream goes before its buffer, and a buffer that goes
// flushes what is left in it.
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
