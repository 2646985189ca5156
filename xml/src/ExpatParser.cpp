#include <brindle/xml/ExpatParser.h>

#include "platform/Files.h"
#include "xml/src/ExpatParse.h"

#include <utility>

namespace brindle::xml {

namespace {

template <typename Document>
std::pair<XMLParseStatus, XMLParseFault> Parse(AbstractParseHandler& ioHandler,
                                               Document& ioDocument) {
    impl::ExpatParse parse(ioHandler);
    auto const status = parse.Document(ioDocument);
    return {status, parse.Fault()};
}

} // namespace

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
    SetFault({});
    auto const [status, fault] = Parse(Handler(), file.value);
    SetFault(fault);
    return status;
}

XMLParseStatus ExpatParser::ParseBuffer(UTF8String const& inBuffer) {
    SetFault({});
    auto const [status, fault] = Parse(Handler(), inBuffer);
    SetFault(fault);
    return status;
}

ExpatParserFactory::~ExpatParserFactory() = default;

std::unique_ptr<AbstractDocParser>
ExpatParserFactory::GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) {
    return std::make_unique<ExpatParser>(ioHandler);
}

} // namespace brindle::xml
