#include "platform/desktop/KeyFile.h"

#include <algorithm>
#include <cstddef>

namespace brindle::platform {

namespace {

constexpr bool IsBlank(char inCharacter) {
    return inCharacter == ' ' || inCharacter == '\t' || inCharacter == '\r';
}

std::string_view Trimmed(std::string_view inText) {
    while (!inText.empty() && IsBlank(inText.front())) {
        inText.remove_prefix(1);
    }
    while (!inText.empty() && IsBlank(inText.back())) {
        inText.remove_suffix(1);
    }
    return inText;
}

} // namespace

KeyFileReader::KeyFileReader(std::string_view inBytes) : mRest(inBytes) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (mRest.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        mRest.remove_prefix(kByteOrderMark.size());
    }
}

bool KeyFileReader::Next(KeyFileEntry& outEntry) {
    while (!mRest.empty()) {
        auto const lineEnd = std::min(mRest.find('\n'), mRest.size());
        auto const line = Trimmed(mRest.substr(0, lineEnd));
        mRest.remove_prefix(std::min(lineEnd + 1, mRest.size()));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            // An incomplete heading still ends the group before it.
            mGroup = line.back() == ']' ? line.substr(1, line.size() - 2) : std::string_view();
            continue;
        }
        auto const equals = line.find('=');
        if (equals != std::string_view::npos) {
            outEntry = {mGroup, Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1))};
            return true;
        }
    }
    return false;
}

std::string UnescapedValue(std::string_view inValue) {
    std::string text;
    for (std::size_t i = 0; i < inValue.size(); ++i) {
        if (inValue[i] != '\\' || i + 1 == inValue.size()) {
            text += inValue[i];
            continue;
        }
        switch (auto const character = inValue[++i]) {
        case 's':
            text += ' ';
            break;
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case 'r':
            text += '\r';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            text += '\\';
            text += character;
        }
    }
    return text;
}

} // namespace brindle::platform
