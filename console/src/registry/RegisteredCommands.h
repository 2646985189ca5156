#pragma once

#include <brindle/console/CommandRegistry.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextTypes.h>

#include <vector>

// What the console itself does with the registry, beside what clients may.
namespace brindle::console::CommandRegistry {

/// Executes a command, without a lock. Returns false if there is none.
bool Execute(UTF16String const& inName, UTF16String const& inArguments, UTF16OutputStream& ioOut);

/// Removes the command if it was registered with this factory, also if it was never executed. The
/// registry destroys the object, at once or when the last execution has ended.
void Remove(UTF16String const& inName, Factory inFactory);

struct Description {
    UTF16String name;
    UTF16String help;
};

/// All commands, in the order of their names.
std::vector<Description> Descriptions();

} // namespace brindle::console::CommandRegistry
