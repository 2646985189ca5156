#include "host/plist/PropListLines.h"

#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"

#include <vector>

namespace brindle::host {

using namespace proplist;

namespace {

std::string TextOf(UTF16String const& inText) {
    return PlainText(inText);
}

std::string TextOf(UTF8String const& inText) {
    return PlainText(inText);
}

std::string TextOf(bool inFlag) {
    return inFlag ? "true" : "false";
}

template <typename Number>
std::string TextOf(Number inNumber) {
    return NumberText(inNumber);
}

template <typename T>
std::vector<std::string> ElementTexts(PropList const& inList, UTF8String const& inKey) {
    std::vector<std::string> texts;
    for (T const& value : inList.Get<std::vector<T>>(inKey)) {
        texts.push_back(TextOf(value));
    }
    return texts;
}

void WriteLine(std::ostream& outStream, std::string const& inPath, std::string const& inType,
               std::string const& inValue) {
    outStream << inPath << '\t' << inType << '\t' << inValue << '\n';
}

/// Writes the lines of a property that is not a list.
void WriteValue(PropList const& inList, PropListEntry const& inEntry, std::string const& inPath,
                std::ostream& outStream) {
    PropListPropertyType const type = inEntry.Type();
    std::string const name(FindPropertyType(type)->name);
    VisitPropertyType(type, [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if (!IsArray(type)) {
            WriteLine(outStream, inPath, name, EscapedText(TextOf(inEntry.Get<T>())));
            return;
        }
        std::vector<std::string> const elements = ElementTexts<T>(inList, inEntry.Key());
        if (elements.empty()) {
            WriteLine(outStream, inPath, name + "[]", "");
        }
        for (std::size_t i = 0; i < elements.size() && outStream; ++i) {
            WriteLine(outStream, inPath + '[' + NumberText(i) + ']', name,
                      EscapedText(elements[i]));
        }
    });
}

/// A list on the current path, and its first entry that is still to be written.
struct Level {
    PropList const* list;
    std::size_t pathLength;
    PropListIterator next;
};

} // namespace

std::string EscapedKey(UTF8String const& inKey) {
    return EscapedText(PlainText(inKey), "\\/[");
}

std::vector<std::string> ValueTexts(PropList const& inList, UTF8String const& inKey) {
    PropListPropertyType const type = inList.GetPropertyType(inKey);
    std::vector<std::string> texts;
    VisitPropertyType(type, [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if (IsArray(type)) {
            texts = ElementTexts<T>(inList, inKey);
        } else {
            texts.push_back(TextOf(inList.Get<T>(inKey)));
        }
    });
    return texts;
}

void WriteLines(PropList const& inList, std::ostream& outStream) {
    std::string path;
    std::vector<Level> levels{{&inList, 0, inList.begin()}};
    while (!levels.empty() && outStream) {
        Level& level = levels.back();
        if (level.next == level.list->end()) {
            levels.pop_back();
            continue;
        }
        PropListEntry const entry = *level.next;
        ++level.next;
        path.resize(level.pathLength);
        path += EscapedKey(entry.Key());
        PropList const* const nested = entry.SubList();
        if (nested == nullptr) {
            WriteValue(*level.list, entry, path, outStream);
        } else if (nested->IsEmpty()) {
            WriteLine(outStream, path, "list", "");
        } else {
            path += '/';
            levels.push_back({nested, path.size(), nested->begin()});
        }
    }
}

} // namespace brindle::host
