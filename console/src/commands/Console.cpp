#include <brindle/console/Console.h>

#include "console/src/commands/DebugCommands.h"
#include "console/src/commands/EndLine.h"
#include "console/src/commands/FileSupportCommands.h"
#include "console/src/commands/TraceCommands.h"
#include "console/src/registry/AtTerminate.h"
#include "console/src/registry/RegisteredCommands.h"
#include "console/src/registry/Tokenizer.h"

#include <brindle/console/CommandRegistry.h>
#include <brindle/debug/TraceExecutorExceptions.h>

#include <iterator>
#include <string_view>

namespace brindle::console {

namespace {

template <typename BuiltIn>
Command* Create(UTF16String const& inName, UTF16String const& inHelp) {
    return new BuiltIn(inName, inHelp);
}

struct BuiltInCommand {
    std::u16string_view help; // begins with the name
    CommandRegistry::Factory factory;

    UTF16String Name() const {
        auto const name = help.substr(0, help.find(u' '));
        return {name.begin(), name.end()};
    }
};

constexpr BuiltInCommand kBuiltInCommands[] = {
    {u"debug.get <variable path> - Gets the value of the debug variable from the debug database.",
     Create<commands::debug::Get>},
    {u"debug.list - displays the entire contents of the debug database.",
     Create<commands::debug::List>},
    {u"debug.set <variable path> = <value> - Sets the value of the debug variable in the debug "
     u"database.",
     Create<commands::debug::Set>},
    {u"debug.clear - clears the contents of the debug database.", Create<commands::debug::Clear>},
    {u"trace.set <category> <volume> - Sets the volume of this trace category.",
     Create<commands::trace::Set>},
    {u"trace.get <category> - Gets the volume of this trace category.",
     Create<commands::trace::Get>},
    {u"trace.getcategories - Lists all catagories that have been traced.",
     Create<commands::trace::GetCategories>},
    {u"trace.set.master <volume> - Sets the master trace volume. This is the highest volume that "
     u"will be traced.",
     Create<commands::trace::SetMaster>},
    {u"trace.get.master - Gets the master trace volume. This is the highest volume that will be "
     u"traced.",
     Create<commands::trace::GetMaster>},
    {u"filesupport.listdirs - list the special directoriees.",
     Create<commands::filesupport::ListDirs>},
    {u"filesupport.listvols - list the mounted volumes.", Create<commands::filesupport::ListVols>},
    {u"filesupport.file <file path> - given a file name, echos the path and indicates if the file "
     u"exists",
     Create<commands::filesupport::FileExists>},
    {u"filesupport.dir <file path> - given a path, echos the path and indicates if the directory "
     u"exists",
     Create<commands::filesupport::DirExists>},
};

} // namespace

void Initialize() {
    for (auto const& command : kBuiltInCommands) {
        UTF16String const help(command.help.begin(), command.help.end());
        CommandRegistry::RegisterCommand(command.Name(), help, command.factory);
    }
    brindle::debug::TraceExecutorExceptions(true);
}

void Terminate() {
    brindle::debug::TraceExecutorExceptions(false);
    if (auto const end = S_atTerminate.load(std::memory_order_acquire)) {
        end();
    }
    for (auto const& command : kBuiltInCommands) {
        CommandRegistry::Remove(command.Name(), command.factory);
    }
}

bool ExecuteCommand(UTF16String const& inLine, UTF16OutputStream& ioOut) {
    Tokenizer tokens(inLine, u" "_utf16);
    auto const name = Trimmed(tokens.Next());
    tokens.SetDelimiters(UTF16String());
    auto const arguments = Trimmed(tokens.Next());
    return !name.empty() && CommandRegistry::Execute(name, arguments, ioOut);
}

void ListCommands(UTF16OutputStream& ioOut) {
    auto const heading = u"Currently installed commands."_utf16;
    ioOut << heading << EndLine << UTF16String(heading.size(), u'-') << EndLine;
    for (auto const& command : CommandRegistry::Descriptions()) {
        ioOut << command.help << EndLine;
    }
    ioOut << EndLine;
}

} // namespace brindle::console
