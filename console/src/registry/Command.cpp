#include <brindle/console/Command.h>

namespace brindle::console {

Command::Command(UTF16String const& inName, UTF16String const& inHelp)
    : mName(inName), mHelp(inHelp) {}

Command::~Command() = default;

} // namespace brindle::console
