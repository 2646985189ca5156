// A client that reads XML: an archive brings in what the library's parser stands on.
#include <brindle/xml/ExpatParser.h>

int main() {
    using namespace brindle;
    std::unique_ptr<xml::AbstractParseHandler> nobody;
    return xml::ExpatParser(nobody).ParseBuffer("<a><b/></a>"_utf8);
}
