#include "host/verbs/Verbs.h"

#include "host/files/FileErrors.h"
#include "host/plist/LoadList.h"
#include "host/plist/PropListLines.h"

#include <brindle/utility/Streams.h>

namespace brindle::host {

using namespace proplist;

namespace {

/// Writes the list or the value that the keys lead to; every key but the last names a nested list.
void Show(PropList const& inList, std::vector<std::string> const& inOperands,
          Diagnostics& ioDiagnostics) {
    std::string const& file = inOperands[0];
    PropList const* list = &inList;
    std::string path;
    for (std::size_t i = 1; i < inOperands.size(); ++i) {
        UTF8String const key(inOperands[i].begin(), inOperands[i].end());
        path += (i == 1 ? "" : "/") + EscapedKey(key);
        PropListPropertyType const type = list->GetPropertyType(key);
        if (type == kPropertyType_None) {
            ioDiagnostics.Report(file, "there is no '" + path + "'");
            return;
        }
        if (type == kPropertyType_PropList) {
            list = list->GetSubList(key);
            continue;
        }
        if (i + 1 != inOperands.size()) {
            ioDiagnostics.Report(file, "'" + path + "' is no list");
            return;
        }
        for (std::string const& text : ValueTexts(*list, key)) {
            utility::streams::Out << text << '\n';
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
    "it is, an array with an element a line, escaped, or the lines of a list. A KEY is written\n"
    "as it is; one that begins with a dash stands behind --.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
