#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <map>

namespace brindle::xml {

/// What a reader derives from to receive a document, event by event, in the order of the text.
///
/// The operations are called on the thread that parses. Names are local names, without prefix or
/// namespace; references are expanded. An argument may change once the call has returned. A handler
/// may throw: no event follows, and the exception comes out of the parse.
class BRN_API AbstractParseHandler {
public:
    AbstractParseHandler() = default;
    virtual ~AbstractParseHandler();

    /// Comes first, before anything is known of the document but that it can be opened.
    virtual void StartDocument();
    /// Of attributes with the same local name, the last is in the map.
    virtual void StartElement(UTF16String const& inName,
                              std::map<UTF16String, UTF16String> const& inAttributes);
    virtual void EndElement(UTF16String const& inName);
    /// A piece of text, never empty and never cut inside a character; the text between two tags
    /// comes in any number of pieces.
    virtual void Characters(UTF16String const& inText);
    /// Comes last, and only if the whole document is well-formed.
    virtual void EndDocument();

protected:
    AbstractParseHandler(AbstractParseHandler const&) = default;
    AbstractParseHandler& operator=(AbstractParseHandler const&) = default;
};

} // namespace brindle::xml
