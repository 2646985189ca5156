// Fails a check and prints what the library answers, for the test of the dialogs:
//
//     asker PROGRAM en|he break|display|contract TEXT...

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>
#include <brindle/debug/Asserts.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>
#include <brindle/utility/Unicode.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

using namespace brindle;
using namespace brindle::literals;

std::map<std::string, char const*> const kHebrew = {
    {"DefaultAssertDialogTitle", "אירוע ניפוי של @0"},
    {"ContractDialogTitle", "אירוע ניפוי של @0"},
    {"CopyButton", "העתקה"},
    {"DebugButton", "ניפוי שגיאות"},
    {"IgnoreOnceButton", "התעלמות הפעם"},
    {"IgnoreAlwaysButton", "התעלמות תמיד"},
    {"DisableAssertsButton", "השבתת בדיקות"},
    {"KillProcessButton", "סיום התהליך"},
    {"ErrorMessage", "אירעה שגיאה ביישום @0."},
    {"ContinueButton", "המשך"},
};

/// Looks the part of a key between its last "/" and its "=" up.
class HebrewLocalizer : public config::Localizer {
public:
    UTF16String LocalizeString(char const* inLiteral) override {
        std::string const literal = inLiteral;
        auto const end = literal.find('=');
        auto const begin = literal.rfind('/', end) + 1;
        return utility::AsciiToUTF16(kHebrew.at(literal.substr(begin, end - begin)));
    }
};

} // namespace

int main(int inCount, char** inArguments) {
    if (inCount < 5) {
        return 2;
    }
    std::string const what = inArguments[3];
    HebrewLocalizer localizer;
    config::Localizer::Set(inArguments[2] == std::string("he") ? &localizer : nullptr);
    config::SetClientName(u"Reel"_utf16);
    debug::DebugDatabase::SetDisableFileWrites(true);
    debug::DebugDatabase::Instance().SetEntry("assert.enabled"_utf8, "true"_utf8);
    debug::SetDialogProgram(inArguments[1]);
    if (what == "contract") {
        utility::ThreadSafeMessageDialog(inArguments[4]);
        std::puts("went on");
    } else if (what == "display" && inCount > 5) {
        std::printf("%d\n", debug::DisplayAssert(inArguments[4], inArguments[5]));
    } else if (what == "break") {
        for (int times = 0; times < 2; ++times) { // whether the place is asked about again
            bool ignoreAlways = false;
            bool const isToBreak = debug::BreakAfterAssertDialog(
                ignoreAlways, "frame != nullptr", inArguments[4], "decoder/src/FrameQueue.cpp", 218,
                "FrameQueue::Take");
            std::printf("%s%s\n", isToBreak ? "break" : "go on", ignoreAlways ? " always" : "");
            std::fflush(stdout);
        }
    }
    return 0;
}
