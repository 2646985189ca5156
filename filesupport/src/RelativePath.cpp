#include <brindle/filesupport/PathNames.h>

#include <algorithm>
#include <vector>

namespace brindle::filesupport {

bool IsNormalizedRelativePath(UTF16String const& inPath) {
    return !inPath.empty() && inPath[0] != u'/' && inPath[0] != u'\\' &&
           (inPath.size() < 2 || inPath[1] != u':');
}

UTF16String MakeNormalizedRelativePath(File const& inTarget, File const& inBase) {
    Dir const targetParent = inTarget.Parent();
    Dir current = inBase.Parent();
    if (targetParent == current) {
        return inTarget.GetName();
    }
    std::vector<Dir> ancestors{targetParent}; // from the target up
    while (!ancestors.back().IsTopLevelDir()) {
        ancestors.push_back(ancestors.back().Parent());
    }
    UTF16String relative;
    auto common = std::find(ancestors.begin(), ancestors.end(), current);
    while (common == ancestors.end()) {
        relative += u"../"_utf16;
        if (current.IsTopLevelDir()) {
            return UTF16String();
        }
        current = current.Parent();
        common = std::find(ancestors.begin(), ancestors.end(), current);
    }
    while (common != ancestors.begin()) {
        --common;
        relative += common->GetName() + u"/"_utf16;
    }
    return relative + inTarget.GetName();
}

File MakeFileFromPath(UTF16String const& inPath, File const& inBase) {
    if (!IsNormalizedRelativePath(inPath)) {
        return File(inPath);
    }
    Dir dir = inBase.Parent();
    std::size_t start = 0;
    while (start < inPath.size()) {
        std::size_t const slash = inPath.find(u'/', start);
        if (slash == UTF16String::npos) {
            return File(dir, inPath.substr(start));
        }
        UTF16String const component = inPath.substr(start, slash - start);
        if (component == u".."_utf16) {
            dir = dir.Parent();
        } else if (component != u"."_utf16) {
            dir = Dir(dir, component);
        }
        start = slash + 1;
    }
    return File();
}

} // namespace brindle::filesupport
