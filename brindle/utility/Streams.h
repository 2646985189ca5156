#pragma once

#include <brindle/Export.h>
#include <brindle/utility/StringStreams.h>

#include <istream>
#include <ostream>
#include <streambuf>

namespace brindle::utility {

/// Puts the stream on another buffer, null for none, and resets it to what a new stream on that
/// buffer is: state, format, width, precision, fill, locale, tie and exception mask. Gives back the
/// earlier buffer, which is neither flushed nor destroyed and belongs to the caller.
BRN_API std::basic_streambuf<char>* SetStreamBuffer(std::basic_ostream<char>& ioStream,
                                                    std::basic_streambuf<char>* inBuffer);
BRN_API std::basic_streambuf<std::uint16_t>*
SetStreamBuffer(UTF16OutputStream& ioStream, std::basic_streambuf<std::uint16_t>* inBuffer);

/// The global streams. They have no lock: one thread at a time writes to each of the first two.
namespace streams {

/// Standard output, in lines: see `debug::UTF16StdOutStreamBuffer`.
BRN_API extern UTF16OutputStream& UTF16Out;
/// The developer's debug channel.
BRN_API extern UTF16OutputStream& Debug;

BRN_API extern std::basic_istream<char>& In;  ///< `std::cin`
BRN_API extern std::basic_ostream<char>& Out; ///< `std::cout`
BRN_API extern std::basic_ostream<char>& Log; ///< `std::clog`
BRN_API extern std::basic_ostream<char>& Err; ///< `std::cerr`

} // namespace streams

} // namespace brindle::utility
