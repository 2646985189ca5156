#pragma once

#include <brindle/Export.h>
#include <brindle/utility/StringStreams.h>

#include <istream>
#include <ostream>
#include <streambuf>

namespace brindle::utility {

/// Gives the stream another buffer, or none if `inBuffer` is null, and resets everything else to
/// what a new stream has: state, format, width, precision, fill, locale, tie and exception mask.
/// Returns the previous buffer, which is neither flushed nor destroyed and belongs to the caller.
BRN_API std::basic_streambuf<char>* SetStreamBuffer(std::basic_ostream<char>& ioStream,
                                                    std::basic_streambuf<char>* inBuffer);
BRN_API std::basic_streambuf<std::uint16_t>*
SetStreamBuffer(UTF16OutputStream& ioStream, std::basic_streambuf<std::uint16_t>* inBuffer);

/// The global streams. They can be used at any time, also in the constructors and destructors of
/// static objects. They are not locked: only one thread at a time may use one of the streams of
/// 16-bit units.
namespace streams {

///@{
/// Standard output and standard error for text:
///
///     utility::streams::TextOut << u"caf\u00E9 "_utf16 << 3 << '\n';
///
/// Text is written as UTF-8, as it is and at once, in the order in which it and the standard
/// streams are used; flushing flushes the standard stream.
BRN_API extern UTF16OutputStream& TextOut;
BRN_API extern UTF16OutputStream& TextErr;
///@}

/// Standard output in lines of at most 255 units, for developers: each flush ends a line, and so
/// does every 255th unit, which may split a surrogate pair. See `debug::UTF16StdOutStreamBuffer`.
BRN_API extern UTF16OutputStream& UTF16Out;
/// The developer's debug channel.
BRN_API extern UTF16OutputStream& Debug;

BRN_API extern std::basic_istream<char>& In;  ///< `std::cin`
BRN_API extern std::basic_ostream<char>& Out; ///< `std::cout`
BRN_API extern std::basic_ostream<char>& Log; ///< `std::clog`
BRN_API extern std::basic_ostream<char>& Err; ///< `std::cerr`

} // namespace streams

} // namespace brindle::utility
