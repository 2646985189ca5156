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
    static AbstractParseHandler S_ignore;
    return mHandler != nullptr ? *mHandler : S_ignore;
}

} // namespace brindle::xml
