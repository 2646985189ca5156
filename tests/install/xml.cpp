// A client that reads XML: the package of an archive must bring the XML parser that the archive
// uses.
#include <brindle/xml/ExpatParser.h>

int main() {
    using namespace brindle;
    std::unique_ptr<xml::AbstractParseHandler> nobody;
    return xml::ExpatParser(nobody).ParseBuffer("<a><b/></a>"_utf8);
}
