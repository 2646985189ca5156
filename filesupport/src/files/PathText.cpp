#include "filesupport/src/files/PathText.h"

#include <algorithm>

namespace brindle::filesupport {

namespace {

constexpr std::uint16_t kSeparator = u'\\';

bool BeginsWith(UTF16String const& inText, UTF16String const& inPrefix) noexcept {
    return inText.compare(0, inPrefix.size(), inPrefix) == 0;
}

bool IsNetworkPath(UTF16String const& inPath) noexcept {
    return inPath.size() >= 3 && inPath[0] == kSeparator && inPath[1] == kSeparator &&
           inPath.find(kSeparator, 2) != UTF16String::npos;
}

/// Behind the prefix for long paths, a relative path "UNC\x" would be read as a server.
bool ReadsAsServer(UTF16String const& inPath) noexcept {
    return inPath.size() >= 4 && (inPath[0] | 0x20) == 'u' && (inPath[1] | 0x20) == 'n' &&
           (inPath[2] | 0x20) == 'c' && inPath[3] == kSeparator;
}

} // namespace

void NormalizePath(UTF16String& ioPath) {
    if (ioPath.empty()) {
        return;
    }
    std::replace(ioPath.begin(), ioPath.end(), std::uint16_t{u'/'}, kSeparator);
    if (BeginsWith(ioPath, u"\\\\?\\UNC\\"_utf16)) {
        ioPath.erase(2, 6);
    } else if (BeginsWith(ioPath, u"\\\\?\\"_utf16)) {
        ioPath.erase(0, 4);
    }
    if (ioPath.empty()) {
        return;
    }
    // The first unit is kept as it is, so that the two backslashes of a network path survive.
    auto const isPair = [](std::uint16_t inLeft, std::uint16_t inRight) {
        return inLeft == kSeparator && inRight == kSeparator;
    };
    ioPath.erase(std::unique(ioPath.begin() + 1, ioPath.end(), isPair), ioPath.end());
}

void DropTrailingSeparator(UTF16String& ioPath) {
    if (!ioPath.empty() && ioPath.back() == kSeparator) {
        ioPath.pop_back();
    }
}

std::size_t LastSeparator(UTF16String const& inPath) noexcept {
    constexpr std::uint16_t kSeparators[] = {u'\\', u'/'};
    return inPath.find_last_of(kSeparators, UTF16String::npos, 2);
}

UTF16String LastComponent(UTF16String const& inPath) {
    return inPath.substr(LastSeparator(inPath) + 1); // npos + 1 is 0
}

UTF16String BeforeLastComponent(UTF16String const& inPath) {
    std::size_t const separator = LastSeparator(inPath);
    return separator == UTF16String::npos ? UTF16String() : inPath.substr(0, separator);
}

UTF16String JoinedPath(UTF16String const& inParent, UTF16String const& inName) {
    UTF16String path;
    path.reserve(inParent.size() + 1 + inName.size());
    path = inParent;
    if (inParent.empty() || inParent.back() != kSeparator) {
        path += kSeparator;
    }
    return path += inName;
}

UTF16String WithLastComponent(UTF16String const& inPath, UTF16String const& inName) {
    return inPath.substr(0, LastSeparator(inPath) + 1) + inName;
}

UTF16String PrefixedPath(UTF16String const& inPath) {
    if (IsNetworkPath(inPath)) {
        return u"\\\\?\\UNC\\"_utf16 + inPath.substr(2);
    }
    return (ReadsAsServer(inPath) ? u"\\\\?\\.\\"_utf16 : u"\\\\?\\"_utf16) + inPath;
}

} // namespace brindle::filesupport
