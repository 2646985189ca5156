#pragma once

#include "tests/support/Text.h"

#include <brindle/debug/Trace.h>
#include <brindle/threads/Thread.h>

#include <functional>

namespace brindle::tests {

/// Keeps what is traced while it lives, and calls a function with each text.
class RecordingHandler : public debug::TraceHandler {
public:
    RecordingHandler() { debug::InstallMasterTraceHandler(this); }
    ~RecordingHandler() override { debug::RemoveMasterTraceHandler(); }

    void Trace(UTF8String const& inText) override {
        auto text = Narrow(inText);
        auto const thread = "<" + std::to_string(threads::GetCurrentThreadID()) + ">";
        if (text.compare(0, thread.size(), thread) == 0) {
            text.replace(0, thread.size(), "@");
        }
        texts += text + '|';
        if (onText) {
            onText();
        }
    }

    std::string texts; ///< "@" stands for the thread that traces, "|" ends a text
    std::function<void()> onText;
};

} // namespace brindle::tests
