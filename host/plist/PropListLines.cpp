#include "host/plist/PropListLines.h"

#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"

#include <list>

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
std::string ScalarText(PropList const& inList, UTF8String const& inKey) {
    T value{};
    inList.GetValue(inKey, value);
    return TextOf(value);
}

template <typename T>
std::vector<std::string> ElementTexts(PropList const& inList, UTF8String const& inKey) {
    std::list<T> values;
    inList.GetValue(inKey, values);
    std::vector<std::string> texts;
    texts.reserve(values.size());
    for (auto const& value : values) {
        texts.push_back(TextOf(value));
    }
    return texts;
}

void WriteLine(std::ostream& outStream, std::string const& inPath, std::string const& inType,
               std::string const& inValue) {
    outStream << inPath << '\t' << inType << '\t' << inValue << '\n';
}

/// Writes the lines of a property that is not a list.
void WriteValue(PropList const& inList, UTF8String const& inKey, std::string const& inPath,
                std::ostream& outStream) {
    PropListPropertyType const type = inList.GetPropertyType(inKey);
    std::string const name(FindPropertyType(type)->name);
    VisitPropertyType(type, [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if (!IsArray(type)) {
            WriteLine(outStream, inPath, name, EscapedText(ScalarText<T>(inList, inKey)));
            return;
        }
        std::vector<std::string> const elements = ElementTexts<T>(inList, inKey);
        if (elements.empty()) {
            WriteLine(outStream, inPath, name + "[]", "");
        }
        for (std::size_t i = 0; i < elements.size() && outStream; ++i) {
            WriteLine(outStream, inPath + '[' + NumberText(i) + ']', name,
                      EscapedText(elements[i]));
        }
    });
}

/// A list on the current path, and its keys that are still to be written.
struct Level {
    explicit Level(PropList const& inList, std::size_t inPathLength)
        : list(inList), pathLength(inPathLength) {
        list.GetPropertyNames(keys);
    }

    PropList const& list;
    std::size_t pathLength;
    std::list<UTF8String> keys;
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
            texts.push_back(ScalarText<T>(inList, inKey));
        }
    });
    return texts;
}

void WriteLines(PropList const& inList, std::ostream& outStream) {
    std::string path;
    std::list<Level> levels;
    levels.emplace_back(inList, 0);
    while (!levels.empty() && outStream) {
        Level& level = levels.back();
        if (level.keys.empty()) {
            levels.pop_back();
            continue;
        }
        UTF8String const key = std::move(level.keys.front());
        level.keys.pop_front();
        path.resize(level.pathLength);
        path += EscapedKey(key);
        PropList const* const nested = level.list.GetSubList(key);
        if (nested == nullptr) {
            WriteValue(level.list, key, path, outStream);
        } else if (nested->IsEmpty()) {
            WriteLine(outStream, path, "list", "");
        } else {
            path += '/';
            levels.emplace_back(*nested, path.size());
        }
    }
}

} // namespace brindle::host
