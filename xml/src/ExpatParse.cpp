#include "xml/src/ExpatParse.h"

#include "xml/src/ExpatName.h"

#include <algorithm>

namespace brindle::xml::impl {

namespace {

// Expat counts bytes in `int`, and allocates up to twice the size of what one call passes.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 28;
constexpr std::size_t kBlock = std::size_t{1} << 16;

// Expat's work is proportional to the length of a namespace's name with each prefixed attribute,
// and to the number of declared attributes with each declaration.
constexpr std::size_t kMostNamespaceBytes = 1024;
constexpr int kMostDeclaredAttributes = 10'000;

} // namespace

ExpatParse::ExpatParse(AbstractParseHandler& ioHandler) : mHandler(ioHandler) {
    ExpatMemory::Scope const scope(mMemory);
    mParser.reset(XML_ParserCreate_MM(nullptr, &ExpatMemory::kFunctions, kNamespaceSeparator));
    if (mParser != nullptr) {
        XML_SetUserData(mParser.get(), this);
        XML_SetElementHandler(mParser.get(), StartElement, EndElement);
        XML_SetCharacterDataHandler(mParser.get(), Characters);
        XML_SetStartNamespaceDeclHandler(mParser.get(), StartNamespace);
        XML_SetAttlistDeclHandler(mParser.get(), DeclareAttribute);
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
        mFault.kind = kXMLParseFault_Unreadable;
        mFault.error = platform::kError_NotEnoughMemory;
        return kXMLParseStatus_Failure;
    }
    mHandler.StartDocument();
    bool const isWellFormed = [&] {
        ExpatMemory::Scope const scope(mMemory);
        return inFeed();
    }();
    if (mException != nullptr) {
        std::rethrow_exception(mException);
    }
    if (!isWellFormed) {
        return Fail();
    }
    mFault.kind = kXMLParseFault_None;
    mHandler.EndDocument();
    return kXMLParseStatus_Success;
}

XMLParseStatus ExpatParse::Fail() noexcept {
    XML_Error const error = XML_GetErrorCode(mParser.get());
    if (mMemory.WasExceeded()) {
        mFault.kind = kXMLParseFault_Malformed;
        mFault.reason = "needs too much memory";
    } else if (mFault.kind == kXMLParseFault_Unknown) {
        bool const isOutOfMemory = error == XML_ERROR_NO_MEMORY;
        mFault.kind = isOutOfMemory ? kXMLParseFault_Unreadable : kXMLParseFault_Malformed;
        mFault.error = isOutOfMemory ? platform::kError_NotEnoughMemory : platform::kError_None;
        mFault.reason = XML_ErrorString(error);
    }
    if (mFault.kind == kXMLParseFault_Malformed) {
        mFault.line = XML_GetCurrentLineNumber(mParser.get());
        mFault.column = XML_GetCurrentColumnNumber(mParser.get()) + 1;
    }
    return kXMLParseStatus_Failure;
}

/// Ends the parse of a document that is beyond a limit.
void ExpatParse::Refuse(char const* inReason) noexcept {
    mFault.kind = kXMLParseFault_Malformed;
    mFault.reason = inReason;
    XML_StopParser(mParser.get(), XML_FALSE);
}

bool ExpatParse::FeedAll(UTF8String const& inBuffer) {
    auto const* bytes = reinterpret_cast<char const*>(inBuffer.data());
    std::size_t left = inBuffer.size();
    for (; left > kMostAtOnce; left -= kMostAtOnce, bytes += kMostAtOnce) {
        mMemory.Add(kMostAtOnce);
        if (XML_Parse(mParser.get(), bytes, int{kMostAtOnce}, XML_FALSE) != XML_STATUS_OK) {
            return false;
        }
    }
    mMemory.Add(left);
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
            mFault.kind = kXMLParseFault_Unreadable;
            mFault.error = read.error;
            return false;
        }
        mMemory.Add(read.value);
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
    // Expat sends the end of an empty element even if the start has stopped the parser.
    if (mException != nullptr || mFault.kind != kXMLParseFault_Unknown) {
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
    parse.CountDefaults(inAttributes);
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

void ExpatParse::StartNamespace(void* ioParse, char const*, char const* inName) {
    // The name is null where a default namespace ends.
    if (inName != nullptr && std::strlen(inName) > kMostNamespaceBytes) {
        static_cast<ExpatParse*>(ioParse)->Refuse("the name of a namespace is too long");
    }
}

void ExpatParse::DeclareAttribute(void* ioParse, char const*, char const*, char const*, char const*,
                                  int) {
    auto& parse = *static_cast<ExpatParse*>(ioParse);
    if (++parse.mDeclaredAttributes > kMostDeclaredAttributes) {
        parse.Refuse("too many attributes are declared");
    }
}

/// A short document may declare attributes that each of many elements then has.
void ExpatParse::CountDefaults(char const* const* inAttributes) noexcept {
    for (inAttributes += XML_GetSpecifiedAttributeCount(mParser.get()); *inAttributes != nullptr;
         ++inAttributes) {
        mDefaultBytes += std::strlen(*inAttributes);
    }
    if (mDefaultBytes > mMemory.Allowance()) {
        Refuse("declared attributes amount to too much");
    }
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
            parse.Refuse("entities nest too deep");
        }
    });
}

} // namespace brindle::xml::impl
