#pragma once

#include <brindle/Export.h>
#include <brindle/xml/AbstractDocParser.h>
#include <brindle/xml/AbstractParseHandler.h>
#include <brindle/xml/DocParserFactory.h>

#include <memory>

// The parser of the process. The library reads XML with what the host installs here at start-up,
// before other threads use it, and installs none by itself:
//
//     std::unique_ptr<xml::DocParserFactory> factory = std::make_unique<xml::ExpatParserFactory>();
//     xml::SetParserFactory(factory);
//
// Reading is for any thread; nobody may be in `GetParser` while the factory is exchanged.

namespace brindle::xml {

/// Installs the factory, takes it from the holder, and deletes the one installed before, unless it
/// is the same object. An empty holder leaves none installed.
BRN_API void SetParserFactory(std::unique_ptr<DocParserFactory>& ioFactory) noexcept;

/// Deletes the installed factory, which otherwise stays until the process ends.
BRN_API void ResetParserFactory() noexcept;

/// True if a factory is installed.
BRN_API bool Initialized() noexcept;

/// A new parser of the installed factory, which takes the handler from the holder. Without a
/// factory the result is empty, and the handler stays where it is.
BRN_API std::unique_ptr<AbstractDocParser>
GetParser(std::unique_ptr<AbstractParseHandler>& ioHandler);

} // namespace brindle::xml
