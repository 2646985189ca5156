#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/AbstractParseHandler.h>

#include <memory>

namespace brindle::xml {

/// What makes parsers. A host installs one with `SetParserFactory`.
class BRN_API DocParserFactory {
public:
    DocParserFactory() = default;
    DocParserFactory(DocParserFactory const&) = default;
    DocParserFactory& operator=(DocParserFactory const&) = default;
    virtual ~DocParserFactory();

    /// A new parser on the handler, which it takes from the holder.
    virtual std::unique_ptr<AbstractDocParser>
    GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) = 0;
};

} // namespace brindle::xml
