#pragma once

#include <brindle/xml/Parser.h>

#include <memory>
#include <utility>

namespace brindle::xml {

/// Installs a factory of parsers for a scope, and at its end the former one, which it keeps:
///
///     xml::ScopedParserFactory const installed(std::make_unique<CountingParserFactory>());
///
/// No thread may be in `GetParser` at either moment.
class ScopedParserFactory {
public:
    /// Takes ownership of the factory; null installs none.
    explicit ScopedParserFactory(std::unique_ptr<DocParserFactory> inFactory) noexcept
        : mFormer(ExchangeParserFactory(std::move(inFactory))) {}
    ScopedParserFactory(ScopedParserFactory const&) = delete;
    ScopedParserFactory& operator=(ScopedParserFactory const&) = delete;
    /// Destroys the factory that was installed meanwhile.
    ~ScopedParserFactory() { SetParserFactory(mFormer); }

private:
    std::unique_ptr<DocParserFactory> mFormer;
};

} // namespace brindle::xml
