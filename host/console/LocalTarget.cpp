#include "host/console/LocalTarget.h"

#include "host/commandline/Diagnostics.h"
#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"
#include "host/console/CommandOutput.h"
#include "host/console/CompletionText.h"

#include <brindle/console/Console.h>

namespace brindle::host {

namespace {

/// Throws `line_error` for what would not arrive whole.
UTF16String CommandLine(std::string const& inLine) {
    auto text = utility::UTF8to16(UTF8String(inLine.begin(), inLine.end()));
    if (PlainText(text) != inLine) {
        throw line_error("not a text in UTF-8");
    }
    return text;
}

} // namespace

void LocalTarget::Execute(std::string const& inLine) {
    CommandOutput buffer;
    UTF16OutputStream out(&buffer);
    if (!console::ExecuteCommand(CommandLine(inLine), out)) {
        throw NoCommand(EscapedText(inLine, ""));
    }
    out.flush();
    RequireOutput();
}

void LocalTarget::ShowHelp() {
    CommandOutput buffer;
    UTF16OutputStream out(&buffer);
    console::ListCommands(out);
    out.flush();
    RequireOutput();
}

LineCompletions LocalTarget::Complete(std::string const& inLine, std::size_t inCursor) {
    return CompletionText(
        console::CompleteLine(UTF8String(inLine.begin(), inLine.end()), inCursor));
}

} // namespace brindle::host
