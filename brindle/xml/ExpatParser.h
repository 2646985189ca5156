#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/DocParserFactory.h>

#include <memory>

namespace brindle::xml {

/// A parser on the Expat library: namespaces are resolved, and a document in UTF-8, UTF-16, ISO
/// 8859-1 or ASCII is told by its byte-order mark or declaration, and is UTF-8 without either.
///
/// Any bytes may be parsed. Nothing but the document itself is ever read: external entities and
/// external document types are passed over. A document fails whose entities nest more than 64 deep
/// or expand to more than Expat's own limits permit, and so does one with a tag or a comment of a
/// gigabyte. No document needs more than 256 KiB of stack.
class BRN_API ExpatParseHandler : public AbstractDocParser {
public:
    /// Takes the handler and empties the holder.
    explicit ExpatParseHandler(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept;
    ~ExpatParseHandler() override;

    /// Parses a regular file, block by block, sharing it with other readers. No event is sent if it
    /// cannot be opened.
    XMLParseStatus ParseDocument(UTF16String const& inPath) override;
    XMLParseStatus ParseBuffer(UTF8String const& inBuffer) override;
};

/// Makes `ExpatParseHandler` objects.
class BRN_API ExpatParserFactory : public DocParserFactory {
public:
    ~ExpatParserFactory() override;

    std::unique_ptr<AbstractDocParser>
    GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) override;
};

} // namespace brindle::xml
