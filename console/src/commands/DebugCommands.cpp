#include "console/src/commands/DebugCommands.h"

#include "console/src/commands/EndLine.h"
#include "console/src/registry/Tokenizer.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/utility/Unicode.h>

#include <list>

namespace brindle::console::commands::debug {

using brindle::debug::DebugDatabase;

namespace {

void PrintEntry(UTF16String const& inKey, UTF8String const& inValue, UTF16OutputStream& ioOut) {
    ioOut << inKey << u" = " << utility::UTF8to16(inValue) << EndLine;
}

} // namespace

void Get::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    auto const value =
        DebugDatabase::Instance().GetEntry(utility::UTF16to8(inArguments), UTF8String());
    PrintEntry(inArguments, value, ioOut);
}

void List::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    auto const heading = u"Listing contents of debug database!"_utf16;
    ioOut << heading << EndLine << UTF16String(heading.size(), u'-') << EndLine;
    auto& database = DebugDatabase::Instance();
    std::list<UTF8String> keys;
    database.GetDebugKeys(keys);
    for (auto const& key : keys) {
        PrintEntry(utility::UTF8to16(key), database.GetEntry(key, UTF8String()), ioOut);
    }
}

void Set::Execute(UTF16String const& inArguments, UTF16OutputStream&) {
    Tokenizer tokens(inArguments, u"="_utf16);
    auto const key = Trimmed(tokens.Next());
    auto const value = Trimmed(tokens.Next());
    DebugDatabase::Instance().SetEntry(utility::UTF16to8(key), utility::UTF16to8(value));
}

void Clear::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    ioOut << u"Clearing contents of debug database!" << EndLine;
    DebugDatabase::Instance().Clear();
}

} // namespace brindle::console::commands::debug
