// A client with nothing but the public headers and the library: both must see the same facets of
// the text streams, whatever visibility and optimisation the client is compiled with.

#include <brindle/debug/StreamBuffers.h>
#include <brindle/utility/Locale.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/StringUtils.h>

#include <cstdio>
#include <iomanip>

using namespace brindle;

namespace {

class CollectingBuffer : public debug::UTF16StreamBufferImpl<std::uint16_t> {
public:
    ~CollectingBuffer() override { FlushAtEnd(); }
    UTF16String text;

private:
    void Emit(std::uint16_t const* inText) override { text += inText; }
};

} // namespace

int main() {
    int status = 0;
    auto const check = [&status](bool inHolds, char const* inWhat) {
        if (!inHolds) {
            std::fprintf(stderr, "%s\n", inWhat);
            status = 1;
        }
    };

    oUTF16StringStream out;
    out << std::hex << std::showbase << std::setw(6) << 255 << 'x' << " y";
    check(out.str() == u"  0xffx y"_utf16, "16-bit insertion");
    iUTF8StringStream in("12.5 word"_utf8);
    double number = 0;
    UTF8String word;
    in >> number >> word;
    check(number == 12.5 && word == "word"_utf8 && in.eof(), "extraction of bytes");

    // Here the facets are looked up by code that is compiled into the client.
    std::locale const locale = utility::WithTextFacets(Locale::Default());
    check(std::has_facet<std::ctype<std::uint16_t>>(locale), "ctype of 16-bit units");
    check(!std::has_facet<std::num_put<std::uint8_t>>(std::locale()), "the global locale is clean");
    std::basic_ostringstream<std::uint8_t> plain;
    plain.imbue(locale);
    plain << 1.5 << 'c';
    check(plain.str() == "1.5c"_utf8, "a standard stream class");

    CollectingBuffer buffer;
    utility::SetStreamBuffer(utility::streams::UTF16Out, &buffer);
    utility::streams::UTF16Out << utility::UpperCase(u"stra\u00DFe"_utf16) << 7 << std::flush;
    check(buffer.text == u"STRASSE7"_utf16, "a client's buffer under a global stream");
    utility::SetStreamBuffer(utility::streams::UTF16Out, nullptr);
    return status;
}
