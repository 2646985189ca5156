#include <brindle/debug/Asserts.h>

#include "debug/src/assert/AskDeveloper.h"
#include "debug/src/assert/DialogTexts.h"
#include "platform/Process.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/Trace.h>

#include <cstdio>
#include <exception>

namespace brindle::debug {

namespace {

using namespace literals;

std::atomic<bool> S_writeToStdOut{false};
std::atomic<bool> S_assertsAreDisabled{false};

void TraceIfWanted(char const* inText) noexcept {
    try {
        auto const category = "Assert"_utf8;
        if (TraceEnabled(category, 0, true)) {
            TraceMessage(category, 0, inText);
        }
    } catch (...) { // an assert that cannot be traced is shown all the same
    }
}

/// "true", with white space around it as an editor may leave it.
bool IsTrue(UTF8String const& inText) {
    auto const space = " \t\r"_utf8;
    auto const begin = inText.find_first_not_of(space);
    return begin != UTF8String::npos &&
           inText.substr(begin, inText.find_last_not_of(space) + 1 - begin) == "true"_utf8;
}

bool IsSwitchedOn() noexcept {
    try {
        return IsTrue(
            DebugDatabase::Instance().GetEntry("assert.enabled"_utf8, DebugDatabase::sFalseText));
    } catch (...) { // a database that cannot be read has no switch
        return false;
    }
}

[[noreturn]] void KillProcess() noexcept {
    constexpr int kStatus = 255; // what the system makes of -1
    S_assertsAreDisabled = true;
    platform::EndProcess(kStatus);
}

std::int32_t ActOn(DeveloperAnswer const& inAnswer) noexcept {
    switch (inAnswer.showing) {
    case Showing::kNobodyThere:
        return kAssert_IgnoreOnce;
    case Showing::kNotStarted:
        BRN_DebugBreak();
        return kAssert_IgnoreOnce;
    case Showing::kFailed:
        BRN_DebugBreak();
        return kAssert_Break;
    case Showing::kAnswered:
        break;
    }
    switch (inAnswer.button) {
    case kButton_Debug:
        return kAssert_Break;
    case kButton_IgnoreOnce:
        return kAssert_IgnoreOnce;
    case kButton_IgnoreAlways:
        return kAssert_IgnoreAlways;
    case kButton_DisableAsserts:
        S_assertsAreDisabled = true;
        return kAssert_IgnoreAlways;
    case kButton_KillProcess:
        KillProcess();
    default:
        BRN_DebugBreak();
        return kAssert_Failed;
    }
}

std::int32_t RunDialog(char const* inHeading, char const* inBody) noexcept {
    if (S_assertsAreDisabled) {
        return kAssert_IgnoreAlways;
    }
    try {
        return ActOn(AskDeveloper([&] { return AssertQuestion(inHeading, inBody); }));
    } catch (...) {
        BRN_DebugBreak();
        return kAssert_Failed;
    }
}

/// A line of the body; "name: value", or the value alone.
void AppendLine(std::string& ioBody, char const* inName, std::string const& inValue) {
    ((ioBody += inName) += inValue) += "\r\n";
}

std::string TextOrNone(char const* inText) {
    return inText != nullptr ? inText : "";
}

} // namespace

bool BreakAfterAssertDialog(bool& ioIgnoreAlways, char const* inExpression, char const* inMessage,
                            char const* inFile, std::int32_t inLine, char const* inFunction) {
    std::string body;
    if (inMessage != nullptr && *inMessage != '\0') {
        AppendLine(body, "", inMessage);
        AppendLine(body, "", "");
    }
    AppendLine(body, "Expression: ", TextOrNone(inExpression));
    AppendLine(body, "Process: ", platform::CommandLine());
    AppendLine(body, "File: ", TextOrNone(inFile));
    AppendLine(body, "Line: ", std::to_string(inLine));
    AppendLine(body, "Function: ", TextOrNone(inFunction));
    auto const code = DisplayAssert("Debug Assert failed!", body.c_str());
    if (code == kAssert_IgnoreAlways) {
        ioIgnoreAlways = true;
    }
    return code == kAssert_Break;
}

std::int32_t DisplayAssert(char const* inHeading, char const* inBody) noexcept {
    char const* const heading = inHeading != nullptr ? inHeading : "";
    char const* const body = inBody != nullptr ? inBody : "";
    TraceIfWanted(heading);
    TraceIfWanted(body);
    bool const isSwitchedOn = IsSwitchedOn(); // the first question lists the key in the database
    if (S_writeToStdOut) {
        std::puts(heading);
        std::puts(body);
        std::fflush(stdout); // before what failed goes on and perhaps crashes
        return kAssert_IgnoreOnce;
    }
    return isSwitchedOn ? RunDialog(heading, body) : kAssert_IgnoreOnce;
}

void SetAssertWriteToStdOut(bool inWrite) noexcept {
    S_writeToStdOut = inWrite;
}

bool impl::FailAssert(std::atomic<bool>& ioIgnoreAlways, char const* inExpression,
                      char const* inMessage, char const* inFile, std::int32_t inLine,
                      char const* inFunction) {
    if (ioIgnoreAlways.load(std::memory_order_relaxed)) {
        return false;
    }
    bool ignoreAlways = false;
    bool const isToBreak =
        BreakAfterAssertDialog(ignoreAlways, inExpression, inMessage, inFile, inLine, inFunction);
    if (ignoreAlways) {
        ioIgnoreAlways.store(true, std::memory_order_relaxed);
    }
    return isToBreak;
}

} // namespace brindle::debug
