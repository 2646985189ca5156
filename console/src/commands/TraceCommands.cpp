#include "console/src/commands/TraceCommands.h"

#include "console/src/commands/EndLine.h"
#include "console/src/registry/Tokenizer.h"
#include "debug/src/database/WholeNumber.h"

#include <brindle/debug/Trace.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/Unicode.h>

#include <cstdint>
#include <list>

namespace brindle::console::commands::trace {

namespace {

std::int32_t VolumeIn(UTF16String const& inText) {
    return brindle::debug::WholeNumber(utility::UTF16to8(inText));
}

void PrintVolume(UTF16String const& inCategory, UTF16OutputStream& ioOut) {
    auto const volume = brindle::debug::GetTraceVolume(utility::UTF16to8(inCategory));
    ioOut << u"trace volume for category " << inCategory << u" is "
          << utility::NumberToString(volume) << u"." << EndLine;
}

} // namespace

void Set::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    Tokenizer quoted(inArguments, u"\""_utf16);
    static_cast<void>(quoted.Next());
    Tokenizer plain(inArguments, u" "_utf16);
    auto& tokens = quoted.IsAtEnd() ? plain : quoted;
    auto const category = tokens.Next();
    auto const volumeText = tokens.Next();
    if (volumeText.empty()) {
        PrintVolume(category, ioOut);
        return;
    }
    auto const volume = VolumeIn(volumeText);
    brindle::debug::SetTraceVolume(utility::UTF16to8(category), volume);
    ioOut << u"trace category " << category << u" set to volume " << utility::NumberToString(volume)
          << u"." << EndLine;
}

void Get::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    Tokenizer quoted(inArguments, u"\""_utf16);
    auto const unquoted = quoted.Next();
    PrintVolume(quoted.IsAtEnd() ? unquoted : quoted.Next(), ioOut);
}

void GetCategories::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    ioOut << u"Trace Categories:" << EndLine;
    std::list<UTF8String> names;
    brindle::debug::GetTraceCategories(names);
    for (auto const& name : names) {
        ioOut << utility::UTF8to16(name) << EndLine;
    }
}

void SetMaster::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    auto const volume = VolumeIn(inArguments);
    brindle::debug::SetMasterTraceVolume(volume);
    ioOut << u"Master trace volume set to " << utility::NumberToString(volume) << u"." << EndLine;
}

void GetMaster::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    ioOut << u"Master trace volume is "
          << utility::NumberToString(brindle::debug::GetMasterTraceVolume()) << u"." << EndLine;
}

} // namespace brindle::console::commands::trace
