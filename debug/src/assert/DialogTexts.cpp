#include "debug/src/assert/DialogTexts.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Text.h>
#include <brindle/utility/Unicode.h>

namespace brindle::debug {

namespace {

constexpr char kAssertTitle[] = "$$$/private/brindle/debug/DefaultAssertDialogTitle=@0 Debug Event";
constexpr char kContractTitle[] = "$$$/private/brindle/debug/ContractDialogTitle=@0 Debug Event";
constexpr char kContractHeading[] =
    "$$$/private/brindle/debug/ContractDialog/ErrorMessage=@0 has encountered an error.";
constexpr char kContinue[] = "$$$/private/brindle/debug/ContractDialog/ContinueButton=Continue";

struct AssertButton {
    int id;
    char const* label;
    bool isDefault;
};

constexpr AssertButton kAssertButtons[] = {
    {kButton_Copy, "$$$/private/brindle/debug/DefaultAssertDialog/CopyButton=Copy", true},
    {kButton_Debug, "$$$/private/brindle/debug/DefaultAssertDialog/DebugButton=Debug", true},
    {kButton_IgnoreOnce,
     "$$$/private/brindle/debug/DefaultAssertDialog/IgnoreOnceButton=Ignore Once", false},
    {kButton_IgnoreAlways,
     "$$$/private/brindle/debug/DefaultAssertDialog/IgnoreAlwaysButton=Ignore Always", false},
    {kButton_DisableAsserts,
     "$$$/private/brindle/debug/DefaultAssertDialog/DisableAssertsButton=Disable Asserts", false},
    {kButton_KillProcess,
     "$$$/private/brindle/debug/DefaultAssertDialog/KillProcessButton=Kill Process", false},
};

std::string InUTF8(UTF16String const& inText) {
    auto const text = utility::UTF16to8(inText);
    return Printable({reinterpret_cast<char const*>(text.data()), text.size()});
}

std::string WithClientName(char const* inLiteral) {
    return InUTF8(config::Text(inLiteral, {config::GetClientName()}));
}

} // namespace

DialogQuestion AssertQuestion(char const* inHeading, char const* inBody) {
    DialogQuestion question;
    question.width = 405;
    question.height = 217;
    question.title = WithClientName(kAssertTitle);
    question.heading = Printable(inHeading);
    question.body = Printable(inBody);
    for (auto const& button : kAssertButtons) {
        question.buttons.push_back({button.id, InUTF8(config::Text(button.label)), button.isDefault,
                                    button.id == kButton_Copy});
    }
    question.closingButton = kButton_IgnoreOnce;
    return question;
}

DialogQuestion ContractQuestion(char const* inMessage) {
    DialogQuestion question;
    question.width = 300;
    question.height = 100;
    question.title = WithClientName(kContractTitle);
    question.heading = WithClientName(kContractHeading);
    question.body = Printable(inMessage);
    question.buttons = {{kButton_Debug, InUTF8(config::Text(kContinue)), true, false}};
    question.closingButton = kButton_Debug;
    return question;
}

} // namespace brindle::debug
