#include "host/lineedit/LineEditor.h"

#include "host/commandline/EscapedText.h"
#include "host/lineedit/HistoryFile.h"

#include <brindle/console/Terminal.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <histedit.h>
#include <new>

namespace brindle::host {

namespace {

constexpr std::size_t kMostShown = 100;
constexpr int kHistorySize = 1000;

/// The editing library converts between bytes and characters by the locale, of which the encoding
/// has to be UTF-8.
void UseUTF8() {
    if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
}

bool ContinuesACharacter(char inByte) {
    return (static_cast<unsigned char>(inByte) & 0xC0) == 0x80;
}

int CharacterCount(std::string const& inText) {
    return static_cast<int>(
        std::count_if(inText.begin(), inText.end(), std::not_fn(ContinuesACharacter)));
}

/// What all candidates begin with, in whole characters.
std::string CommonStart(std::vector<std::string> const& inCandidates) {
    auto const& first = inCandidates[0];
    auto length = first.size();
    for (auto const& other : inCandidates) {
        auto const end = std::mismatch(first.begin(), first.end(), other.begin(), other.end());
        length = std::min(length, static_cast<std::size_t>(end.first - first.begin()));
    }
    while (length < first.size() && ContinuesACharacter(first[length])) {
        --length;
    }
    return first.substr(0, length);
}

/// Writes candidates below the line, as many side by side as the terminal is wide.
void Show(std::vector<std::string> const& inCandidates) {
    auto& out = utility::streams::Out;
    std::size_t const width = console::ErrorOutputWidth();
    std::size_t column = 0;
    auto const shown = std::min(inCandidates.size(), kMostShown);
    for (std::size_t i = 0; i < shown; ++i) {
        auto const text = EscapedText(inCandidates[i], "");
        bool const fits = column != 0 && column + text.size() + 2 <= width;
        out << (fits ? "  " : "\n") << text;
        column = (fits ? column + 2 : 0) + text.size();
    }
    if (shown < inCandidates.size()) {
        out << "\n... and " << inCandidates.size() - shown << " more";
    }
    out << '\n' << std::flush;
}

} // namespace

struct LineEditor::Editing {
    Editing(std::string const& inPrompt, Completer const& inCompleter,
            std::string const& inHistoryPath)
        : prompt(inPrompt), completer(inCompleter), file(inHistoryPath) {
        if (editor == nullptr || history == nullptr) {
            throw std::bad_alloc();
        }
        RecallEarlierLines();
        el_set(editor.get(), EL_CLIENTDATA, this);
        el_set(editor.get(), EL_PROMPT, &Prompt);
        el_set(editor.get(), EL_EDITOR, "emacs");
        el_set(editor.get(), EL_SIGNAL, 1);
        el_set(editor.get(), EL_HIST, ::history, history.get());
        // The narrow form would copy the texts and never free them.
        el_wset(editor.get(), EL_ADDFN, L"brindle-complete", L"Complete the word", &Complete);
        el_wset(editor.get(), EL_ADDFN, L"brindle-drop-line", L"Drop the line", &DropLine);
        el_wset(editor.get(), EL_ADDFN, L"brindle-signal", L"Stop or quit the process", &Signal);
        el_source(editor.get(), nullptr); // what the user prefers
        el_set(editor.get(), EL_BIND, "^I", "brindle-complete", nullptr);
        // While a line is typed, the keys of signals are keys like any others.
        el_set(editor.get(), EL_SETTY, "-d", "-isig", nullptr);
        el_set(editor.get(), EL_BIND, "^C", "brindle-drop-line", nullptr);
        el_set(editor.get(), EL_BIND, "^Z", "brindle-signal", nullptr);
        el_set(editor.get(), EL_BIND, "^\\", "brindle-signal", nullptr);
    }
    Editing(Editing const&) = delete;
    Editing& operator=(Editing const&) = delete;

    static EditLine* Open() {
        UseUTF8();
        return el_init("brindle", stdin, stdout, stderr);
    }

    void RecallEarlierLines() {
        HistEvent event;
        ::history(history.get(), &event, H_SETSIZE, kHistorySize);
        for (auto const& line : file.Read()) {
            Enter(line);
        }
    }

    void Enter(std::string const& inLine) {
        HistEvent event;
        ::history(history.get(), &event, H_ENTER, inLine.c_str());
        last = inLine;
    }

    void Remember(std::string const& inLine) {
        auto const line = inLine.substr(0, inLine.find_last_not_of(" \t") + 1);
        if (!line.empty() && line != last) {
            Enter(line);
            file.Append(line);
        }
    }

    static Editing& Of(EditLine* inEditor) {
        void* self = nullptr;
        el_get(inEditor, EL_CLIENTDATA, &self);
        return *static_cast<Editing*>(self);
    }

    static char* Prompt(EditLine* inEditor) { return Of(inEditor).prompt.data(); }

    static unsigned char DropLine(EditLine* inEditor, int) {
        Of(inEditor).isDropped = true;
        utility::streams::Out << "^C\n" << std::flush;
        return CC_NEWLINE;
    }

    // The editing library restores the terminal before the signal takes effect.
    static unsigned char Signal(EditLine*, int inKey) {
        constexpr int kControlZ = 'Z' - '@';
        std::raise(inKey == kControlZ ? SIGTSTP : SIGQUIT);
        return CC_REFRESH;
    }

    // No exception may pass through the editing library.
    static unsigned char Complete(EditLine* inEditor, int) noexcept {
        try {
            return Of(inEditor).CompleteWord();
        } catch (std::exception const&) {
            return CC_ERROR;
        }
    }

    unsigned char CompleteWord() {
        auto const* const info = el_line(editor.get());
        std::string const line(info->buffer, info->lastchar);
        auto const cursor = static_cast<std::size_t>(info->cursor - info->buffer);
        auto const found = completer(line, cursor);
        if (found.candidates.empty() || found.start > cursor) {
            return CC_ERROR;
        }
        auto const typed = line.substr(found.start, cursor - found.start);
        auto word = CommonStart(found.candidates);
        bool const isOnlyOne = found.candidates.size() == 1;
        bool const isDirectory = !word.empty() && (word.back() == '/' || word.back() == '\\');
        if (isOnlyOne && !isDirectory) {
            word += ' ';
        }
        if (isOnlyOne || word.size() > typed.size()) {
            el_deletestr(editor.get(), CharacterCount(typed));
            // A name that is not UTF-8 cannot be inserted.
            if (el_insertstr(editor.get(), word.c_str()) != 0) {
                el_insertstr(editor.get(), typed.c_str());
            }
            return CC_REFRESH;
        }
        Show(found.candidates);
        return CC_REDISPLAY;
    }

    std::string prompt;
    Completer completer;
    HistoryFile file;
    std::unique_ptr<History, void (*)(History*)> history{history_init(), history_end};
    std::unique_ptr<EditLine, void (*)(EditLine*)> editor{Open(), el_end};
    std::string last; // line in the history
    bool isDropped = false;
};

LineEditor::LineEditor(std::string const& inPrompt, Completer const& inCompleter,
                       std::string const& inHistoryPath)
    : mEditing(std::make_unique<Editing>(inPrompt, inCompleter, inHistoryPath)) {}

LineEditor::~LineEditor() = default;

bool LineEditor::ReadLine(std::string& outLine) {
    Editing& editing = *mEditing;
    utility::streams::Out.flush();
    char const* line = nullptr;
    int count = 0;
    do {
        editing.isDropped = false;
        el_resize(editing.editor.get());
        line = el_gets(editing.editor.get(), &count);
    } while (editing.isDropped);
    if (line == nullptr || count <= 0) {
        utility::streams::Out << '\n'; // behind the prompt
        return false;
    }
    outLine.assign(line, static_cast<std::size_t>(count));
    while (!outLine.empty() && (outLine.back() == '\n' || outLine.back() == '\r')) {
        outLine.pop_back();
    }
    editing.Remember(outLine);
    return true;
}

} // namespace brindle::host
