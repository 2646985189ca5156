#include <brindle/xml/ExpatParser.h>

#include "platform/Files.h"
#include "xml/src/ExpatParse.h"

namespace brindle::xml {

ExpatParseHandler::ExpatParseHandler(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept
    : AbstractDocParser(ioHandler) {}

ExpatParseHandler::~ExpatParseHandler() = default;

XMLParseStatus ExpatParseHandler::ParseDocument(UTF16String const& inPath) {
    auto file = platform::OpenForReading(inPath);
    if (!file) {
        return kXMLParseStatus_Failure;
    }
    return impl::ExpatParse(Handler()).Document(file.value);
}

XMLParseStatus ExpatParseHandler::ParseBuffer(UTF8String const& inBuffer) {
    return impl::ExpatParse(Handler()).Document(inBuffer);
}

ExpatParserFactory::~ExpatParserFactory() = default;

std::unique_ptr<AbstractDocParser>
ExpatParserFactory::GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) {
    return std::make_unique<ExpatParseHandler>(ioHandler);
}

} // namespace brindle::xml
