#include <brindle/filesupport/PathNames.h>

#include <utility>
#include <vector>

namespace brindle::filesupport {

bool IsNormalizedRelativePath(UTF16String const& inPath) {
    return !inPath.empty() && inPath[0] != u'/' && inPath[0] != u'\\' &&
           (inPath.size() < 2 || inPath[1] != u':');
}

UTF16String MakeNormalizedRelativePath(File const& inTarget, File const& inBase) {
    Dir target = inTarget.Parent();
    Dir base = inBase.Parent();
    UTF16String relative;
    std::vector<UTF16String> namesDown; // the last one first
    while (target != base) {
        // Of two different directories, the one with the longer path cannot be an ancestor of the
        // other.
        bool const isUp = base.Helper().Path().size() >= target.Helper().Path().size();
        Dir& longer = isUp ? base : target;
        Dir parent = longer.Parent();
        if (parent.Helper().Path().empty()) {
            return {};
        }
        if (isUp) {
            relative += u"../"_utf16;
        } else {
            namesDown.push_back(longer.GetName());
        }
        longer = std::move(parent);
    }
    for (; !namesDown.empty(); namesDown.pop_back()) {
        relative += namesDown.back() + u"/"_utf16;
    }
    relative += inTarget.GetName();
    // A first name like "a:b" must not be taken for a drive.
    bool const isAmbiguous = !relative.empty() && !IsNormalizedRelativePath(relative);
    return isAmbiguous ? u"./"_utf16 + relative : relative;
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
