#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <map>

namespace brindle::xml {

/// Receives a document as events, in the order of the text. A reader derives from it and overrides
/// the events that it needs; the others do nothing.
///
///     struct Titles : xml::AbstractParseHandler {
///         void Characters(UTF16String const& inText) override { text += inText; }
///         UTF16String text;
///     };
///
/// The operations are called on the thread that parses. Names are local names, without prefix and
/// namespace, and references in texts are expanded. Arguments are valid only during the call. A
/// handler may throw: no further event is sent, and the parse throws the same exception.
class BRN_API AbstractParseHandler {
public:
    AbstractParseHandler() = default;
    virtual ~AbstractParseHandler();

    /// The first event, sent as soon as the document is open.
    virtual void StartDocument();
    /// If several attributes have the same local name, the map has the last of them.
    virtual void StartElement(UTF16String const& inName,
                              std::map<UTF16String, UTF16String> const& inAttributes);
    virtual void EndElement(UTF16String const& inName);
    /// The text between two tags may arrive in any number of pieces.
    virtual void Characters(UTF16String const& inText);
    /// The last event, sent only if the whole document is well-formed.
    virtual void EndDocument();

protected:
    AbstractParseHandler(AbstractParseHandler const&) = default;
    AbstractParseHandler& operator=(AbstractParseHandler const&) = default;
};

} // namespace brindle::xml
