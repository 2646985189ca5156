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
        texts.push_back(EscapedText(TextOf(value)));
    }
    return texts;
}

/// How the scalars and the arrays of a type are written.
struct TypeOfValue {
    char const* name;
    std::string (*scalar)(PropList const& inList, UTF8String const& inKey);
    std::vector<std::string> (*elements)(PropList const& inList, UTF8String const& inKey);
};

template <typename T>
constexpr TypeOfValue Type(char const* inName) {
    return {inName, ScalarText<T>, ElementTexts<T>};
}

/// In the order of the types' numbers, which is the same for scalars and for arrays.
constexpr TypeOfValue kTypes[] = {
    Type<UTF16String>("ustring"),  Type<UTF8String>("string"),    Type<bool>("bool"),
    Type<std::uint16_t>("uint16"), Type<std::uint32_t>("uint32"), Type<std::int32_t>("int32"),
    Type<std::int64_t>("int64"),   Type<std::uint64_t>("uint64"), Type<float>("float"),
    Type<double>("double")};

bool IsArray(PropListPropertyType inType) {
    return inType >= kPropertyType_UTF16StringArray;
}

TypeOfValue const& TypeOf(PropListPropertyType inType) {
    return kTypes[inType -
                  (IsArray(inType) ? kPropertyType_UTF16StringArray : kPropertyType_UTF16String)];
}

void WriteLine(std::ostream& outStream, std::string const& inPath, std::string const& inType,
               std::string const& inValue) {
    outStream << inPath << '\t' << inType << '\t' << inValue << '\n';
}

/// Writes the lines of a property that is not a list.
void WriteValue(PropList const& inList, UTF8String const& inKey, std::string const& inPath,
                std::ostream& outStream) {
    PropListPropertyType const type = inList.GetPropertyType(inKey);
    TypeOfValue const& known = TypeOf(type);
    if (!IsArray(type)) {
        WriteLine(outStream, inPath, known.name, EscapedText(known.scalar(inList, inKey)));
        return;
    }
    std::vector<std::string> const elements = known.elements(inList, inKey);
    if (elements.empty()) {
        WriteLine(outStream, inPath, std::string(known.name) + "[]", "");
    }
    for (std::size_t i = 0; i < elements.size() && outStream; ++i) {
        WriteLine(outStream, inPath + '[' + NumberText(i) + ']', known.name, elements[i]);
    }
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
    return EscapedText(PlainText(inKey), "/[");
}

std::vector<std::string> ValueTexts(PropList const& inList, UTF8String const& inKey) {
    PropListPropertyType const type = inList.GetPropertyType(inKey);
    if (type == kPropertyType_None || type == kPropertyType_PropList) {
        return {};
    }
    TypeOfValue const& known = TypeOf(type);
    return IsArray(type) ? known.elements(inList, inKey)
                         : std::vector<std::string>{known.scalar(inList, inKey)};
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
