#include <brindle/xml/Parser.h>

#include <atomic>
#include <utility>

namespace brindle::xml {

namespace {

/// Owned, but not destroyed at exit, when the code of a client's factory may have been unloaded.
std::atomic<DocParserFactory*> S_factoryP{nullptr};

} // namespace

DocParserFactory::~DocParserFactory() = default;

void SetParserFactory(std::unique_ptr<DocParserFactory>& ioFactory) noexcept {
    DocParserFactory* const factory = ioFactory.get();
    auto previous = ExchangeParserFactory(std::move(ioFactory));
    if (previous.get() == factory) {
        static_cast<void>(previous.release()); // it is installed still
    }
}

std::unique_ptr<DocParserFactory>
ExchangeParserFactory(std::unique_ptr<DocParserFactory> inFactory) noexcept {
    return std::unique_ptr<DocParserFactory>(
        S_factoryP.exchange(inFactory.release(), std::memory_order_acq_rel));
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
