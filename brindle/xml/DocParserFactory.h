#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/AbstractParseHandler.h>

#include <memory>

namespace brindle::xml {

/// Creates parsers. A host installs a factory with `SetParserFactory`.
class BRN_API DocParserFactory {
public:
    DocParserFactory() = default;
    DocParserFactory(DocParserFactory const&) = default;
    DocParserFactory& operator=(DocParserFactory const&) = default;
    virtual ~DocParserFactory();

    /// Returns a new parser, which owns the handler from now on, and empties the holder.
    [[nodiscard]] virtual std::unique_ptr<AbstractDocParser>
    GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) = 0;
};

} // namespace brindle::xml
