#include "debug/src/assert/AskDeveloper.h"
#include "debug/src/assert/DialogTexts.h"
#include "platform/DebugOutput.h"

#include <brindle/debug/Contract.h>
#include <brindle/debug/Trace.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <cstring>
#include <string>

namespace brindle::utility {

namespace {

/// "<thread id> <Message> <0> ", the message and a line end, unless it has one.
void TraceIfWanted(char const* inMessage) noexcept {
    using namespace literals;
    try {
        auto const category = "Message"_utf8;
        if (debug::TraceEnabled(category, 0, true)) {
            std::string message = inMessage;
            if (message.size() >= 2 && message.compare(message.size() - 2, 2, "\r\n") == 0) {
                message.resize(message.size() - 2);
            }
            debug::TraceMessage(category, 0, message.c_str());
        }
    } catch (...) { // a message that cannot be traced is shown all the same
    }
}

} // namespace

void ThreadSafeMessageDialog(char const* inMessage) noexcept {
    char const* const message = inMessage != nullptr ? inMessage : "";
    TraceIfWanted(message);
    try {
        auto const answer = debug::AskDeveloper([&] { return debug::ContractQuestion(message); });
        if (answer.showing != debug::Showing::kAnswered) {
            platform::WriteDebugOutput(message);
        }
    } catch (...) { // documented: throws nothing
    }
    debug::BRN_DebugBreak();
}

} // namespace brindle::utility
