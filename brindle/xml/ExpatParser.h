#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/DocParserFactory.h>

#include <memory>

namespace brindle::xml {

/// A parser on the Expat library. It resolves namespaces, and reads UTF-8, UTF-16, ISO 8859-1 and
/// ASCII, as the document's byte-order mark or declaration says; without either it is UTF-8.
///
/// Any bytes may be parsed. Nothing but the document itself is ever read: external entities and
/// external document types are ignored. So that no document can exhaust the process, one fails
/// whose entities nest more than 64 deep or expand to more than Expat's own limits permit, that
/// names a namespace by more than 1,024 bytes or declares more than 10,000 attributes, that has a
/// tag or a comment of a gigabyte, or of which more than 64 MiB and a hundred times its size would
/// be made. No document needs more than 256 KiB of stack.
class BRN_API ExpatParser : public AbstractDocParser {
public:
    /// Takes the handler and empties the holder.
    explicit ExpatParser(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept;
    ~ExpatParser() override;

    /// Parses a regular file, block by block, and shares it with other readers. No event is sent if
    /// the file cannot be opened.
    XMLParseStatus ParseDocument(UTF16String const& inPath) override;
    XMLParseStatus ParseBuffer(UTF8String const& inBuffer) override;
};

/// Creates `ExpatParser` objects.
class BRN_API ExpatParserFactory : public DocParserFactory {
public:
    ~ExpatParserFactory() override;

    std::unique_ptr<AbstractDocParser>
    GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) override;
};

} // namespace brindle::xml
