#pragma once

#include <brindle/console/Command.h>

/// Commands on trace volumes. A category that holds blanks stands in double quotes. A volume that
/// is no number counts as 0. They throw what the functions of brindle/debug/Trace.h throw.
namespace brindle::console::commands::trace {

/// CATEGORY VOLUME: sets and prints the volume; without VOLUME it only prints.
class Set : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// CATEGORY: prints the volume.
class Get : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// Prints the names of the known categories.
class GetCategories : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// VOLUME: sets the master volume.
class SetMaster : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// Prints the master volume.
class GetMaster : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

} // namespace brindle::console::commands::trace
