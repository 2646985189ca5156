#include <brindle/xml/AbstractParseHandler.h>

namespace brindle::xml {

AbstractParseHandler::~AbstractParseHandler() = default;

void AbstractParseHandler::StartDocument() {}

void AbstractParseHandler::StartElement(UTF16String const&,
                                        std::map<UTF16String, UTF16String> const&) {}

void AbstractParseHandler::EndElement(UTF16String const&) {}

void AbstractParseHandler::Characters(UTF16String const&) {}

void AbstractParseHandler::EndDocument() {}

} // namespace brindle::xml
