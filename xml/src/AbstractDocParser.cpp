#include <brindle/xml/AbstractDocParser.h>

#include <utility>

namespace brindle::xml {

AbstractDocParser::AbstractDocParser(std::unique_ptr<AbstractParseHandler>& ioHandler) noexcept
    : mHandler(std::move(ioHandler)) {}

AbstractDocParser::AbstractDocParser(AbstractDocParser& ioOther) noexcept
    : mHandler(std::move(ioOther.mHandler)) {}

AbstractDocParser& AbstractDocParser::operator=(AbstractDocParser& ioOther) noexcept {
    mHandler = std::move(ioOther.mHandler);
    return *this;
}

AbstractDocParser::~AbstractDocParser() = default;

AbstractParseHandler& AbstractDocParser::Handler() const noexcept {
    // The union never destroys its member, so a client's static objects may parse at exit.
    union Ignoring {
        Ignoring() : handler() {}
        ~Ignoring() {}
        AbstractParseHandler handler;
    };
    static Ignoring S_ignoring;
    return mHandler != nullptr ? *mHandler : S_ignoring.handler;
}

} // namespace brindle::xml
