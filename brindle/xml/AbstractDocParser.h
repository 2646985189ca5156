#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/XMLParseStatus.h>

#include <memory>

namespace brindle::xml {

/// A parser with the handler that its events go to, which it owns.
///
/// One thread at a time. It may parse any number of documents, one after another. A parser whose
/// handler was transferred away parses as before, and tells nobody of it.
class BRN_API AbstractDocParser {
public:
    /// Takes the handler of the other parser, which is left without one.
    AbstractDocParser(AbstractDocParser& ioOther) noexcept;
    /// The same; the handler held before is deleted.
    AbstractDocParser& operator=(AbstractDocParser& ioOther) noexcept;
    virtual ~AbstractDocParser();

    /// Parses the file at the path. A failure, of whatever kind, is told by the status alone; the
    /// events before it have been sent. What the handler throws comes out unchanged, and so does
    /// `std::bad_alloc` where memory for an event runs out.
    virtual XMLParseStatus ParseDocument(UTF16String const& inPath) = 0;
    /// The same of a document in memory, whose encoding its own bytes tell.
    virtual XMLParseStatus ParseBuffer(UTF8String const& inBuffer) = 0;

protected:
    /// Takes the handler and empties the holder.
    explicit AbstractDocParser(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept;

    /// Where events go; one that ignores them if there is no handler.
    AbstractParseHandler& Handler() const noexcept;

private:
    std::unique_ptr<AbstractParseHandler> mHandler;
};

} // namespace brindle::xml
