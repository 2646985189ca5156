#pragma once

#include <brindle/Export.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextTypes.h>

#include <boost/core/noncopyable.hpp>

namespace brindle::console {

/// A command of the developer's console. A client derives its own, and registers a function that
/// creates it:
///
///     class Beep : public console::Command {
///     public:
///         using Command::Command;
///         void Execute(UTF16String const&, UTF16OutputStream& ioOut) override { ioOut << u'\a'; }
///     };
///
///     console::CommandRegistry::RegisterCommand(
///         u"beep"_utf16, u"beep - makes a sound."_utf16,
///         [](UTF16String const& name, UTF16String const& help) -> console::Command* {
///             return new Beep(name, help);
///         });
///
/// One object serves all calls of its command. Threads that execute commands at the same time may
/// call it at the same time.
class BRN_API Command : boost::noncopyable {
public:
    /// By convention the help is one line that begins with the name.
    Command(UTF16String const& inName, UTF16String const& inHelp);
    virtual ~Command();

    /// Runs the command. `inArguments` is what the line holds behind the name, without blanks and
    /// tabs around it; it may be empty. What this throws reaches the caller of `ExecuteCommand`.
    virtual void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) = 0;

    /// The word by which it is called.
    UTF16String const& GetName() const noexcept { return mName; }
    /// The line that the list of commands shows.
    UTF16String const& GetHelp() const noexcept { return mHelp; }

private:
    UTF16String mName;
    UTF16String mHelp;
};

} // namespace brindle::console
