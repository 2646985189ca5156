#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/XMLParseFault.h>
#include <brindle/xml/XMLParseStatus.h>

#include "platform/Files.h"
#include "xml/src/AttributeMap.h"
#include "xml/src/EntityNesting.h"
#include "xml/src/ExpatMemory.h"

#include <boost/core/noncopyable.hpp>
#include <expat.h>

#include <cstddef>
#include <exception>
#include <memory>

namespace brindle::xml::impl {

/// Feeds one document to Expat, and Expat's events to a handler. For a single parse.
class ExpatParse : private boost::noncopyable {
public:
    /// The handler has to outlive the parse.
    explicit ExpatParse(AbstractParseHandler& ioHandler);

    XMLParseStatus Document(UTF8String const& inBuffer);
    /// Parses the file from its current position to its end.
    XMLParseStatus Document(platform::OpenFile& ioFile);

    XMLParseFault const& Fault() const noexcept { return mFault; }

private:
    struct Free {
        void operator()(XML_Parser inParser) const noexcept { XML_ParserFree(inParser); }
    };

    static void XMLCALL StartElement(void* ioParse, char const* inName, char const** inAttributes);
    static void XMLCALL EndElement(void* ioParse, char const* inName);
    static void XMLCALL Characters(void* ioParse, char const* inText, int inLength);
    static void XMLCALL StartNamespace(void* ioParse, char const* inPrefix, char const* inName);
    static void XMLCALL DeclareAttribute(void* ioParse, char const* inElement,
                                         char const* inAttribute, char const* inType,
                                         char const* inDefault, int inIsRequired);
    static void XMLCALL DeclareEntity(void* ioParse, char const* inName, int inIsParameter,
                                      char const* inText, int inLength, char const* inBase,
                                      char const* inSystemId, char const* inPublicId,
                                      char const* inNotation);

    template <typename Event>
    void Send(Event inEvent) noexcept;
    void Refuse(char const* inReason) noexcept;
    template <typename Feed>
    XMLParseStatus Run(Feed inFeed);

    bool FeedAll(UTF8String const& inBuffer);
    bool FeedAll(platform::OpenFile& ioFile);
    XMLParseStatus Fail() noexcept;
    bool EndsInsideToken(std::size_t inFed, std::size_t inLength) const noexcept;

    void CountDefaults(char const* const* inAttributes) noexcept;

    AbstractParseHandler& mHandler;
    ExpatMemory mMemory; // outlives the parser
    std::unique_ptr<XML_ParserStruct, Free> mParser;
    std::exception_ptr mException; ///< what the handler threw
    XMLParseFault mFault;
    // Members only so that their storage is reused from event to event.
    UTF16String mName;
    UTF16String mText;
    AttributeMap mAttributes;
    EntityNesting mEntities;
    int mDeclaredAttributes = 0;
    std::size_t mDefaultBytes = 0; ///< of attributes that elements have only by declaration
};

} // namespace brindle::xml::impl
