#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/XMLParseStatus.h>

#include "platform/Files.h"
#include "xml/src/AttributeMap.h"
#include "xml/src/EntityNesting.h"

#include <boost/core/noncopyable.hpp>
#include <expat.h>

#include <cstddef>
#include <exception>
#include <memory>

namespace brindle::xml::impl {

/// Feeds one document to Expat, and Expat's events to a handler. For a single parse.
class ExpatParse : private boost::noncopyable {
public:
    /// The handler has to outlive the parse. Expat allocates by `inMemory`, or from the heap if it
    /// is null.
    explicit ExpatParse(AbstractParseHandler& ioHandler,
                        XML_Memory_Handling_Suite const* inMemory = nullptr);

    XMLParseStatus Document(UTF8String const& inBuffer);
    /// Parses the file from its current position to its end.
    XMLParseStatus Document(platform::OpenFile& ioFile);

private:
    struct Free {
        void operator()(XML_Parser inParser) const noexcept { XML_ParserFree(inParser); }
    };

    static void XMLCALL StartElement(void* ioParse, char const* inName, char const** inAttributes);
    static void XMLCALL EndElement(void* ioParse, char const* inName);
    static void XMLCALL Characters(void* ioParse, char const* inText, int inLength);
    static void XMLCALL DeclareEntity(void* ioParse, char const* inName, int inIsParameter,
                                      char const* inText, int inLength, char const* inBase,
                                      char const* inSystemId, char const* inPublicId,
                                      char const* inNotation);

    template <typename Event>
    void Send(Event inEvent) noexcept;
    template <typename Feed>
    XMLParseStatus Run(Feed inFeed);

    bool FeedAll(UTF8String const& inBuffer);
    bool FeedAll(platform::OpenFile& ioFile);
    bool EndsInsideToken(std::size_t inFed, std::size_t inLength) const noexcept;

    AbstractParseHandler& mHandler;
    std::unique_ptr<XML_ParserStruct, Free> mParser;
    std::exception_ptr mException; ///< what the handler threw
    // Members only so that their storage is reused from event to event.
    UTF16String mName;
    UTF16String mText;
    AttributeMap mAttributes;
    EntityNesting mEntities;
};

} // namespace brindle::xml::impl
