#pragma once

#include <brindle/console/Command.h>

/// Commands that show the file system as the library sees it.
namespace brindle::console::commands::filesupport {

/// Prints the well-known directories. Throws what `Dir::PrefDir` throws.
class ListDirs : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// Prints the volumes.
class ListVols : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// PATH: prints what is known of the file and of its directory. Each of the two that does not exist
/// is created, renamed to "house" and back, and deleted, to show whether that works; failures are
/// part of the output.
class FileExists : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

/// PATH: prints what is known of the directory and of its parent.
class DirExists : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override;
};

} // namespace brindle::console::commands::filesupport
