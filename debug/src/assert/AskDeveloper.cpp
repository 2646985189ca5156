#include "debug/src/assert/AskDeveloper.h"

#include "platform/ChildProcess.h"
#include "platform/ControllingTerminal.h"
#include "platform/Dialogs.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/base/NeverDestroyed.h"

#include <brindle/debug/Asserts.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace brindle::debug {

namespace {

utility::Mutex S_programMutex;
utility::Mutex S_terminalMutex;

/// As long as it lives, this thread is asking.
class Asking {
public:
    Asking() noexcept { S_isInProgress = true; }
    Asking(Asking const&) = delete;
    Asking& operator=(Asking const&) = delete;
    ~Asking() { S_isInProgress = false; }

    static bool IsInProgress() noexcept { return S_isInProgress; }

private:
    inline static thread_local bool S_isInProgress = false;
};

std::string& ChosenProgram() BRN_REQUIRES(S_programMutex) {
    static utility::NeverDestroyed<std::string> program;
    return program.Get();
}

std::vector<std::string> Programs() {
    utility::MutexLock const lock(S_programMutex);
    auto const& chosen = ChosenProgram();
    return chosen.empty() ? platform::DialogPrograms() : std::vector<std::string>{chosen};
}

/// The id that is this text; 0 if no button has it.
int ButtonOf(DialogQuestion const& inQuestion, std::string const& inId) {
    for (auto const& button : inQuestion.buttons) {
        if (std::to_string(button.id) == inId) {
            return button.id;
        }
    }
    return 0;
}

bool IsMissing(platform::ErrorCode inError) noexcept {
    return inError == platform::kError_FileNotFound || inError == platform::kError_PathNotFound ||
           inError == platform::kError_AccessDenied;
}

/// Nothing if there is no display or no program.
std::optional<DeveloperAnswer> AskByDialog(DialogQuestion const& inQuestion) {
    if (!platform::HasDisplay()) {
        return {};
    }
    auto const request = WriteRequest(inQuestion);
    for (auto const& program : Programs()) {
        auto const reply = platform::AskProgram(program, request);
        if (IsMissing(reply.error)) {
            continue;
        }
        if (!reply) {
            return DeveloperAnswer{Showing::kNotStarted};
        }
        if (reply.value == kNoDisplay) {
            return {};
        }
        return DeveloperAnswer{reply.value.empty() ? Showing::kFailed : Showing::kAnswered,
                               ButtonOf(inQuestion, reply.value)};
    }
    return {};
}

/// A button that is offered at the terminal, from which text is copied without one.
struct Choice {
    std::string letter;
    DialogButton button;
};

std::vector<Choice> ChoicesOf(DialogQuestion const& inQuestion) {
    auto const letters = LettersOf(inQuestion.buttons);
    std::vector<Choice> choices;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if (!letters[i].letter.empty() && !inQuestion.buttons[i].isForCopy) {
            choices.push_back({letters[i].letter, inQuestion.buttons[i]});
        }
    }
    return choices;
}

/// The answer that a typed line stands for: its first letter counts.
std::optional<int> ButtonFor(std::vector<Choice> const& inChoices, std::string inLine) {
    inLine.erase(0, std::min(inLine.find_first_not_of(" \t"), inLine.size()));
    if (!inLine.empty() && inLine[0] >= 'A' && inLine[0] <= 'Z') {
        inLine[0] = static_cast<char>(inLine[0] | 0x20);
    }
    for (auto const& choice : inChoices) {
        if (inLine.compare(0, choice.letter.size(), choice.letter) == 0) {
            return choice.button.id;
        }
    }
    return {};
}

std::string TextForTerminal(DialogQuestion const& inQuestion,
                            std::vector<Choice> const& inChoices) {
    auto text = '\n' + inQuestion.title + '\n' + inQuestion.heading + "\n\n" + inQuestion.body;
    text += text.back() == '\n' ? "\n" : "\n\n";
    for (auto const& choice : inChoices) {
        text += "  " + choice.letter + "  " + choice.button.label + '\n';
    }
    return text;
}

DeveloperAnswer AskAtTerminal(DialogQuestion const& inQuestion) {
    utility::MutexLock const lock(S_terminalMutex);
    auto const choices = ChoicesOf(inQuestion);
    for (auto prompt = TextForTerminal(inQuestion, choices) + "> ";; prompt = "> ") {
        auto const line = platform::AskAtControllingTerminal(prompt);
        if (!line) {
            return {Showing::kNobodyThere};
        }
        if (auto const button = ButtonFor(choices, *line)) {
            return {Showing::kAnswered, *button};
        }
    }
}

} // namespace

void SetDialogProgram(std::string const& inNativePath) {
    utility::MutexLock const lock(S_programMutex);
    ChosenProgram() = inNativePath;
}

DeveloperAnswer AskDeveloper(std::function<DialogQuestion()> const& inMakeQuestion) {
    if (Asking::IsInProgress()) {
        return {Showing::kNobodyThere};
    }
    Asking const asking;
    auto const question = inMakeQuestion();
    auto const answer = AskByDialog(question);
    return answer ? *answer : AskAtTerminal(question);
}

} // namespace brindle::debug
