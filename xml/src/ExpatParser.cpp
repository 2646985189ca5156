#include <brindle/xml/ExpatParser.h>

#include "platform/Files.h"
#include "xml/src/ExpatParse.h"

namespace brindle::xml {

ExpatParser::ExpatParser(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept
    : AbstractDocParser(ioHandler) {}

ExpatParser::~ExpatParser() = default;

XMLParseStatus ExpatParser::ParseDocument(UTF16String const& inPath) {
    auto file = platform::OpenForReading(inPath);
    if (!file) {
        XMLParseFault fault;
        fault.kind = kXMLParseFault_Unreadable;
        fault.error = file.error;
        SetFault(fault);
        return kXMLParseStatus_Failure;
    }
    return Parse(file.value);
}

XMLParseStatus ExpatParser::ParseBuffer(UTF8String const& inBuffer) {
    return Parse(inBuffer);
}

template <typename Document>
XMLParseStatus ExpatParser::Parse(Document& ioDocument) {
    SetFault({});
    impl::ExpatParse parse(Handler());
    auto const status = parse.Document(ioDocument);
    SetFault(parse.Fault());
    return status;
}

ExpatParserFactory::~ExpatParserFactory() = default;

std::unique_ptr<AbstractDocParser>
ExpatParserFactory::GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) {
    return std::make_unique<ExpatParser>(ioHandler);
}

} // namespace brindle::xml
