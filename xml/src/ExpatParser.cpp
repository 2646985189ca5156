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
        return kXMLParseStatus_Failure;
    }
    return impl::ExpatParse(Handler()).Document(file.value);
}

XMLParseStatus ExpatParser::ParseBuffer(UTF8String const& inBuffer) {
    return impl::ExpatParse(Handler()).Document(inBuffer);
}

ExpatParserFactory::~ExpatParserFactory() = default;

std::unique_ptr<AbstractDocParser>
ExpatParserFactory::GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) {
    return std::make_unique<ExpatParser>(ioHandler);
}

} // namespace brindle::xml
