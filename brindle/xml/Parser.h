#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/DocParserFactory.h>

#include <memory>

/// @file
/// The parser factory of the process. The library installs none: the host does at start-up, before
/// other threads use it.
///
///     std::unique_ptr<xml::DocParserFactory> factory =
///     std::make_unique<xml::ExpatParserFactory>(); xml::SetParserFactory(factory);
///
/// Any thread may call `GetParser` and `Initialized`, but none may be in `GetParser` while the
/// factory is exchanged.

namespace brindle::xml {

/// Installs the factory, which the library owns from now on, and empties the holder. Destroys the
/// factory installed before, unless it is the same object. With an empty holder, none is installed.
BRN_API void SetParserFactory(std::unique_ptr<DocParserFactory>& ioFactory) noexcept;

/// Installs a factory, or none, and returns the former one. See ScopedParserFactory.h.
[[nodiscard]] BRN_API std::unique_ptr<DocParserFactory>
ExchangeParserFactory(std::unique_ptr<DocParserFactory> inFactory) noexcept;

/// Destroys the installed factory. Without this call it is never destroyed, not at exit either.
BRN_API void ResetParserFactory() noexcept;

/// True if a factory is installed.
[[nodiscard]] BRN_API bool Initialized() noexcept;

/// A new parser of the installed factory, which takes the handler from the holder. Without a
/// factory the result is null, and the handler stays with the caller.
[[nodiscard]] BRN_API std::unique_ptr<AbstractDocParser>
GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler);

} // namespace brindle::xml
