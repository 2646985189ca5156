#include <brindle/xml/Parser.h>

#include <atomic>

namespace brindle::xml {

namespace {

/// Owned, but not destroyed at exit, when the code of a client's factory may have been unloaded.
std::atomic<DocParserFactory*> S_factoryP{nullptr};

} // namespace

DocParserFactory::~DocParserFactory() = default;

void SetParserFactory(std::unique_ptr<DocParserFactory>& ioFactory) noexcept {
    DocParserFactory* const factory = ioFactory.release();
    DocParserFactory* const previous = S_factoryP.exchange(factory, std::memory_order_acq_rel);
    if (previous != factory) {
        delete previous;
    }
}

void ResetParserFactory() noexcept {
    std::unique_ptr<DocParserFactory> none;
    SetParserFactory(none);
}

bool Initialized() noexcept {
    return S_factoryP.load(std::memory_order_acquire) != nullptr;
}

std::unique_ptr<AbstractDocParser> GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler) {
    DocParserFactory* const factory = S_factoryP.load(std::memory_order_acquire);
    return factory != nullptr ? factory->GetParser(ioHandler) : nullptr;
}

} // namespace brindle::xml
