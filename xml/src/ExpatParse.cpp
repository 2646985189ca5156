#include "xml/src/ExpatParse.h"

#include "xml/src/ExpatName.h"

#include <algorithm>

namespace brindle::xml::impl {

namespace {

// Expat counts bytes in `int`, and allocates up to twice the size of what one call passes.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 28;
constexpr std::size_t kBlock = std::size_t{1} << 16;

} // namespace

ExpatParse::ExpatParse(AbstractParseHandler& ioHandler, XML_Memory_Handling_Suite const* inMemory)
    : mHandler(ioHandler), mParser(XML_ParserCreate_MM(nullptr, inMemory, kNamespaceSeparator)) {
    if (mParser != nullptr) {
        XML_SetUserData(mParser.get(), this);
        XML_SetElementHandler(mParser.get(), StartElement, EndElement);
        XML_SetCharacterDataHandler(mParser.get(), Characters);
        XML_SetEntityDeclHandler(mParser.get(), DeclareEntity);
    }
}

XMLParseStatus ExpatParse::Document(UTF8String const& inBuffer) {
    return Run([&] { return FeedAll(inBuffer); });
}

XMLParseStatus ExpatParse::Document(platform::OpenFile& ioFile) {
    return Run([&] { return FeedAll(ioFile); });
}

template <typename Feed>
XMLParseStatus ExpatParse::Run(Feed inFeed) {
    if (mParser == nullptr) {
        return kXMLParseStatus_Failure;
    }
    mHandler.StartDocument();
    bool const isWellFormed = inFeed();
    if (mException != nullptr) {
        std::rethrow_exception(mException);
    }
    if (!isWellFormed) {
        return kXMLParseStatus_Failure;
    }
    mHandler.EndDocument();
    return kXMLParseStatus_Success;
}

bool ExpatParse::FeedAll(UTF8String const& inBuffer) {
    auto const* bytes = reinterpret_cast<char const*>(inBuffer.data());
    std::size_t left = inBuffer.size();
    for (; left > kMostAtOnce; left -= kMostAtOnce, bytes += kMostAtOnce) {
        if (XML_Parse(mParser.get(), bytes, int{kMostAtOnce}, XML_FALSE) != XML_STATUS_OK) {
            return false;
        }
    }
    return XML_Parse(mParser.get(), bytes, static_cast<int>(left), XML_TRUE) == XML_STATUS_OK;
}

bool ExpatParse::FeedAll(platform::OpenFile& ioFile) {
    std::size_t length = kBlock;
    for (std::size_t fed = 0;;) {
        void* const block = XML_GetBuffer(mParser.get(), static_cast<int>(length));
        if (block == nullptr) {
            return false;
        }
        auto const read = ioFile.Read(block, length);
        if (!read) {
            return false;
        }
        bool const isLast = read.value < length;
        if (XML_ParseBuffer(mParser.get(), static_cast<int>(read.value), isLast) != XML_STATUS_OK) {
            return false;
        }
        if (isLast) {
            return true;
        }
        fed += length;
        // Expat rescans an unfinished token from its start with every block, so the blocks double
        // within a long token.
        length = EndsInsideToken(fed, length) ? std::min(2 * length, kMostAtOnce) : kBlock;
    }
}

bool ExpatParse::EndsInsideToken(std::size_t inFed, std::size_t inLength) const noexcept {
    auto const token = XML_GetCurrentByteIndex(mParser.get()); // -1 before the first token
    return static_cast<std::ptrdiff_t>(inFed) - token > static_cast<std::ptrdiff_t>(inLength / 2);
}

template <typename Event>
void ExpatParse::Send(Event inEvent) noexcept {
    // Expat sends the end of an empty element even if its start has stopped the parser.
    if (mException != nullptr) {
        return;
    }
    try {
        inEvent();
    } catch (...) {
        mException = std::current_exception();
        XML_StopParser(mParser.get(), XML_FALSE);
    }
}

void ExpatParse::StartElement(void* ioParse, char const* inName, char const** inAttributes) {
    auto& parse = *static_cast<ExpatParse*>(ioParse);
    parse.Send([&] {
        AssignLocalName(inName, parse.mName);
        parse.mAttributes.Assign(inAttributes);
        parse.mHandler.StartElement(parse.mName, parse.mAttributes.Get());
    });
}

void ExpatParse::EndElement(void* ioParse, char const* inName) {
    auto& parse = *static_cast<ExpatParse*>(ioParse);
    parse.Send([&] {
        AssignLocalName(inName, parse.mName);
        parse.mHandler.EndElement(parse.mName);
    });
}

void ExpatParse::Characters(void* ioParse, char const* inText, int inLength) {
    auto& parse = *static_cast<ExpatParse*>(ioParse);
    parse.Send([&] {
        utility::impl::AssignUTF8to16(inText, static_cast<std::size_t>(inLength), parse.mText);
        parse.mHandler.Characters(parse.mText);
    });
}

void ExpatParse::DeclareEntity(void* ioParse, char const* inName, int inIsParameter,
                               char const* inText, int inLength, char const*, char const*,
                               char const*, char const*) {
    // References to parameter entities and to external ones are not expanded.
    if (inIsParameter != 0 || inText == nullptr) {
        return;
    }
    auto& parse = *static_cast<ExpatParse*>(ioParse);
    parse.Send([&] {
        if (!parse.mEntities.Declare(inName, {inText, static_cast<std::size_t>(inLength)})) {
            XML_StopParser(parse.mParser.get(), XML_FALSE);
        }
    });
}

} // namespace brindle::xml::impl
