#include "host/verbs/Verbs.h"

#include "host/commandline/EscapedText.h"
#include "host/files/FileErrors.h"
#include "host/plist/LoadList.h"
#include "host/plist/PropListLines.h"

#include <brindle/console/Terminal.h>
#include <brindle/utility/Streams.h>

#include <charconv>

namespace brindle::host {

using namespace proplist;

namespace {

/// Writes a value alone: as it is, but without commands to a terminal.
void WriteAlone(std::string const& inText) {
    utility::streams::Out << (console::OutputIsTerminal() ? EscapedText(inText, "") : inText)
                          << '\n';
}

/// Where the keys so far have led, for messages.
struct Place {
    std::string const& file;
    std::string path;
};

void ReportAbsence(Place const& inPlace, Diagnostics& ioDiagnostics) {
    ioDiagnostics.Report(inPlace.file, "there is no '" + inPlace.path + "'");
}

/// Writes the element of an array that a word says.
void ShowElement(std::vector<std::string> const& inElements, std::string const& inIndex,
                 Place const& inPlace, Diagnostics& ioDiagnostics) {
    std::size_t index = 0;
    char const* const last = inIndex.data() + inIndex.size();
    auto const [end, error] = std::from_chars(inIndex.data(), last, index);
    if (error != std::errc() || end != last || index >= inElements.size()) {
        return ReportAbsence({inPlace.file, inPlace.path + '[' + EscapedText(inIndex) + ']'},
                             ioDiagnostics);
    }
    WriteAlone(inElements[index]);
}

/// Writes the list or the value that the keys lead to. Every key but the last names a nested list;
/// behind the key of an array may stand an index.
void Show(PropList const& inList, std::vector<std::string> const& inOperands,
          Diagnostics& ioDiagnostics) {
    PropList const* list = &inList;
    Place place{inOperands[0], ""};
    for (std::size_t i = 1; i < inOperands.size(); ++i) {
        UTF8String const key(inOperands[i].begin(), inOperands[i].end());
        std::size_t const left = inOperands.size() - i - 1;
        place.path += (i == 1 ? "" : "/") + EscapedKey(key);
        PropListPropertyType const type = list->GetPropertyType(key);
        if (type == kPropertyType_None) {
            return ReportAbsence(place, ioDiagnostics);
        }
        if (type == kPropertyType_PropList) {
            list = list->GetSubList(key);
            continue;
        }
        bool const isArray = proplist::IsArray(type);
        if (left > (isArray ? 1 : 0)) {
            return ioDiagnostics.Report(place.file, "'" + place.path + "' is no list");
        }
        std::vector<std::string> const texts = ValueTexts(*list, key);
        if (left == 1) {
            return ShowElement(texts, inOperands.back(), place, ioDiagnostics);
        }
        for (std::string const& text : texts) {
            WriteAlone(isArray ? EscapedText(text) : text);
        }
        return;
    }
    WriteLines(*list, utility::streams::Out);
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    auto const& operands = inArguments.Operands();
    if (operands.empty()) {
        throw usage_error("plist needs a FILE");
    }
    try {
        PropList list;
        LoadList(operands[0], list);
        Show(list, operands, ioDiagnostics);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(operands[0], error.what());
    }
}

} // namespace

Verb const kPlistVerb = {
    "plist",
    "FILE [KEY...]",
    "a property list, or one value of it",
    "Writes a property list, a line for each value: its path, a tab, its type, a tab, the\n"
    "value. The path is the keys of the lists on the way, with / between them, and for an\n"
    "element of an array its index: view/bounds[0]. Types are string, ustring, bool, uint16,\n"
    "uint32, int32, int64, uint64, float and double. An empty list or array has a line with\n"
    "the type list, or one such as int32[], and no value. Backslashes and control characters\n"
    "are written as \\\\, \\t, \\n, \\r or \\u001b, and in a key / and [ as \\/ and \\[.\n"
    "\n"
    "With a KEY, or several that lead from list to list, writes what is there alone: a value as\n"
    "it is, an array with an element a line, escaped, or the lines of a list. A number behind the\n"
    "KEY of an array is the index of one element, from 0. A KEY is written as it is; one that\n"
    "begins with a dash stands behind --. The FILE - is standard input.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
