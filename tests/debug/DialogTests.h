#pragma once

#include "tests/debug/InPreferences.h"
#include "tests/support/Environment.h"

#include <brindle/debug/Asserts.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/Trace.h>

#include <filesystem>
#include <functional>
#include <string>
#include <unistd.h>

namespace brindle::tests {

/// Keeps what is traced while it lives.
class RecordingHandler : public debug::TraceHandler {
public:
    RecordingHandler() { debug::InstallMasterTraceHandler(this); }
    ~RecordingHandler() override { debug::RemoveMasterTraceHandler(); }

    void Trace(UTF8String const& inText) override { mText += Narrow(inText); }
    std::string const& Text() const { return mText; }

private:
    std::string mText;
};

/// A test in which another program stands for the one that shows the dialogs.
class DialogTests : public InPreferences {
protected:
    /// A shell script, whose standard input is the channel to the library.
    std::string Program(std::string const& inScript) const {
        Fill("dialog", inScript);
        std::filesystem::permissions(Native("dialog"), std::filesystem::perms::owner_all);
        return Native("dialog");
    }

    /// Reads the whole request, keeps it, and answers.
    std::string Answering(std::string const& inAnswer) const {
        return Program("#!/bin/sh\ncat > '" + Native("request") + "'\necho '" + inAnswer +
                       "' >&0\n");
    }

    /// Does the work in a process of its own, which has a display, asserts that are switched on and
    /// no terminal.
    std::string WithDialogs(std::string const& inProgram,
                            std::function<std::string()> const& inWork) const {
        return InProcess([&] {
            ::setsid();
            Environment const display(Environment::Values{{"DISPLAY", ":0"}});
            debug::DebugDatabase::SetDisableFileWrites(true);
            debug::DebugDatabase::Instance().SetEntry(AsUTF8("assert.enabled"), AsUTF8("true"));
            debug::SetDialogProgram(inProgram);
            return inWork();
        });
    }

    static std::string Display() { return std::to_string(debug::DisplayAssert("heading", "body")); }
};

} // namespace brindle::tests
