#include <brindle/utility/StringStreams.h>

#include <utility>

namespace brindle {

namespace {

/// Calls the `imbue` of the base class, which also imbues the string buffer.
template <typename Unit>
std::locale Imbue(std::basic_ios<Unit>& ioStream, std::locale const& inLocale) {
    return ioStream.imbue(utility::WithTextFacets(inLocale));
}

} // namespace

UTF16OutputStream::UTF16OutputStream() : std::basic_ostream<std::uint16_t>(nullptr) {
    Imbue(*this, getloc());
}

// The buffer is set last, because it belongs to the client and must keep its own locale.
UTF16OutputStream::UTF16OutputStream(std::basic_streambuf<std::uint16_t>* inBuffer)
    : UTF16OutputStream() {
    rdbuf(inBuffer);
}

iUTF16StringStream::iUTF16StringStream(UTF16String const& inText)
    : std::basic_istringstream<std::uint16_t>(inText) {
    Imbue(*this, getloc());
}

iUTF16StringStream::iUTF16StringStream(std::uint16_t const* inText)
    : iUTF16StringStream(UTF16String(inText)) {}

oUTF16StringStream::oUTF16StringStream() {
    Imbue(*this, getloc());
}

iUTF8StringStream::iUTF8StringStream(UTF8String const& inText)
    : std::basic_istringstream<std::uint8_t>(inText) {
    Imbue(*this, getloc());
}

iUTF8StringStream::iUTF8StringStream(std::uint8_t const* inText)
    : iUTF8StringStream(UTF8String(inText)) {}

oUTF8StringStream::oUTF8StringStream() {
    Imbue(*this, getloc());
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

// The move constructors are written out, because generated ones would try to move the virtual base.

iUTF16StringStream::iUTF16StringStream(iUTF16StringStream&& inOther)
    : std::basic_istringstream<std::uint16_t>(std::move(inOther)) {}

oUTF16StringStream::oUTF16StringStream(oUTF16StringStream&& inOther)
    : std::basic_ostringstream<std::uint16_t>(std::move(inOther)) {}

iUTF8StringStream::iUTF8StringStream(iUTF8StringStream&& inOther)
    : std::basic_istringstream<std::uint8_t>(std::move(inOther)) {}

oUTF8StringStream::oUTF8StringStream(oUTF8StringStream&& inOther)
    : std::basic_ostringstream<std::uint8_t>(std::move(inOther)) {}

iUTF16StringStream& iUTF16StringStream::operator=(iUTF16StringStream&& inOther) = default;
oUTF16StringStream& oUTF16StringStream::operator=(oUTF16StringStream&& inOther) = default;
iUTF8StringStream& iUTF8StringStream::operator=(iUTF8StringStream&& inOther) = default;
oUTF8StringStream& oUTF8StringStream::operator=(oUTF8StringStream&& inOther) = default;

} // namespace brindle
