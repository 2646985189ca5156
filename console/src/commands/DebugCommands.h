#pragma once

#include <brindle/console/Command.h>

/// Commands on the debug database. They throw what the database throws.
namespace brindle::console::commands::debug {

/// KEY: prints the value. A key without one is stored with an empty value.
class Get : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// Prints all keys and values.
class List : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// KEY=VALUE: stores the value, which ends at the next "=" if there is one.
class Set : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// Removes all entries from memory.
class Clear : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

} // namespace brindle::console::commands::debug
