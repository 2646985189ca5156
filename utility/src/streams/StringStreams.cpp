#include <brindle/utility/StringStreams.h>

namespace brindle {

namespace {

/// Calls the `imbue` of the base class, which also imbues the string buffer.
template <typename Unit>
std::locale Imbue(std::basic_ios<Unit>& ioStream, std::locale const& inLocale) {
    return ioStream.imbue(utility::WithTextFacets(inLocale));
}

} // namespace

UTF16OutputStream::UTF16OutputStream() : std::basic_ostream<std::uint16_t>(nullptr) {
    Imbue(*this, std::locale());
}

// The buffer is set last, because it belongs to the client and must keep its own locale.
UTF16OutputStream::UTF16OutputStream(std::basic_streambuf<std::uint16_t>* inBuffer)
    : UTF16OutputStream() {
    rdbuf(inBuffer);
}

iUTF16StringStream::iUTF16StringStream(UTF16String const& inText)
    : std::basic_istringstream<std::uint16_t>(inText) {
    Imbue(*this, std::locale());
}

iUTF16StringStream::iUTF16StringStream(std::uint16_t const* inText)
    : iUTF16StringStream(UTF16String(inText)) {}

oUTF16StringStream::oUTF16StringStream() {
    Imbue(*this, std::locale());
}

iUTF8StringStream::iUTF8StringStream(UTF8String const& inText)
    : std::basic_istringstream<std::uint8_t>(inText) {
    Imbue(*this, std::locale());
}

iUTF8StringStream::iUTF8StringStream(std::uint8_t const* inText)
    : iUTF8StringStream(UTF8String(inText)) {}

oUTF8StringStream::oUTF8StringStream() {
    Imbue(*this, std::locale());
}

std::locale UTF16OutputStream::imbue(std::locale const& inLocale) {
    return Imbue(*this, inLocale);
}

std::locale iUTF16StringStream::imbue(std::locale const& inLocale) {
    return Imbue(*this, inLocale);
}

std::locale oUTF16StringStream::imbue(std::locale const& inLocale) {
    return Imbue(*this, inLocale);
}

std::locale iUTF8StringStream::imbue(std::locale const& inLocale) {
    return Imbue(*this, inLocale);
}

std::locale oUTF8StringStream::imbue(std::locale const& inLocale) {
    return Imbue(*this, inLocale);
}

} // namespace brindle

template <>
std::basic_ostream<std::uint16_t>& std::operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                   char inCharacter) {
    return ioStream << brindle::UTF16String(1, ioStream.widen(inCharacter));
}
