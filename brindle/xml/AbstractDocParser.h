#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/XMLParseFault.h>
#include <brindle/xml/XMLParseStatus.h>

#include <memory>

namespace brindle::xml {

/// A parser and its handler, which it owns.
///
/// A parser is for one thread at a time, and may parse any number of documents one after another. A
/// parser whose handler was transferred to another one still parses, without events.
class BRN_API AbstractDocParser {
public:
    /// Takes over the handler of the other parser, which is left without one.
    AbstractDocParser(AbstractDocParser& ioOther) noexcept;
    /// The same; this parser's previous handler is destroyed.
    AbstractDocParser& operator=(AbstractDocParser& ioOther) noexcept;
    virtual ~AbstractDocParser();

    /// Parses the file at the path. Every failure of the parser is reported by the status, and by
    /// `LastFault`; the events before it have been sent. What the handler throws is passed on
    /// unchanged, and `std::bad_alloc` is thrown if memory for an event runs out.
    [[nodiscard]] virtual XMLParseStatus ParseDocument(UTF16String const& inPath) = 0;
    /// The same for a document in memory, whose first bytes determine its encoding.
    [[nodiscard]] virtual XMLParseStatus ParseBuffer(UTF8String const& inBuffer) = 0;

    /// Why and where the last parse failed.
    [[nodiscard]] XMLParseFault const& LastFault() const noexcept { return mFault; }

protected:
    /// Takes the handler and empties the holder.
    explicit AbstractDocParser(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept;

    /// The handler; without one, an object that ignores all events.
    AbstractParseHandler& Handler() const noexcept;

    /// To be called by the parses of derived classes; otherwise the fault is unknown.
    void SetFault(XMLParseFault const& inFault) noexcept { mFault = inFault; }

private:
    std::unique_ptr<AbstractParseHandler> mHandler;
    XMLParseFault mFault;
};

} // namespace brindle::xml
