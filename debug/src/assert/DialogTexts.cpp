#include "debug/src/assert/DialogTexts.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>

namespace brindle::debug {

namespace {

struct Text {
    char const* key;
    char const* inEnglish;
};

#define BRN_TEXT(inPath, inEnglish)                                                                \
    { "$$$/private/brindle/debug/" inPath "=" inEnglish, inEnglish }

constexpr Text kAssertTitle = BRN_TEXT("DefaultAssertDialogTitle", "@0 Debug Event");
constexpr Text kContractTitle = BRN_TEXT("ContractDialogTitle", "@0 Debug Event");
constexpr Text kContractHeading =
    BRN_TEXT("ContractDialog/ErrorMessage", "@0 has encountered an error.");
constexpr Text kContinue = BRN_TEXT("ContractDialog/ContinueButton", "Continue");

struct AssertButton {
    int id;
    Text label;
    bool isDefault;
};

constexpr AssertButton kAssertButtons[] = {
    {kButton_Copy, BRN_TEXT("DefaultAssertDialog/CopyButton", "Copy"), true},
    {kButton_Debug, BRN_TEXT("DefaultAssertDialog/DebugButton", "Debug"), true},
    {kButton_IgnoreOnce, BRN_TEXT("DefaultAssertDialog/IgnoreOnceButton", "Ignore Once"), false},
    {kButton_IgnoreAlways, BRN_TEXT("DefaultAssertDialog/IgnoreAlwaysButton", "Ignore Always"),
     false},
    {kButton_DisableAsserts,
     BRN_TEXT("DefaultAssertDialog/DisableAssertsButton", "Disable Asserts"), false},
    {kButton_KillProcess, BRN_TEXT("DefaultAssertDialog/KillProcessButton", "Kill Process"), false},
};

#undef BRN_TEXT

std::string InUTF8(UTF16String const& inText) {
    auto const text = utility::UTF16to8(inText);
    return Printable({reinterpret_cast<char const*>(text.data()), text.size()});
}

UTF16String Localized(Text const& inText) {
    return config::Localizer::Initialized() ? config::Localizer::Get()->LocalizeString(inText.key)
                                            : utility::AsciiToUTF16(inText.inEnglish);
}

std::string WithClientName(Text const& inText) {
    UTF16String const none;
    return InUTF8(utility::ReplaceInString(Localized(inText), config::GetClientName(), none, none,
                                           none, none, none, none, none, none, none));
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
        question.buttons.push_back({button.id, InUTF8(Localized(button.label)), button.isDefault,
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
    question.buttons = {{kButton_Debug, InUTF8(Localized(kContinue)), true, false}};
    question.closingButton = kButton_Debug;
    return question;
}

} // namespace brindle::debug
