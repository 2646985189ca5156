#include <brindle/filesupport/PathNames.h>

#include <optional>
#include <utility>
#include <vector>

namespace brindle::filesupport {

bool IsNormalizedRelativePath(UTF16String const& inPath) {
    return !inPath.empty() && inPath[0] != u'/' && inPath[0] != u'\\' &&
           (inPath.size() < 2 || inPath[1] != u':');
}

namespace {

/// What leads from one directory to another, with a "/" at its end; nothing if they have no
/// directory in common.
std::optional<UTF16String> Way(Dir inFrom, Dir inTo) {
    UTF16String way;
    std::vector<UTF16String> namesDown; // the last one first
    while (inTo != inFrom) {
        // Of two different directories, the one with the longer path cannot be an ancestor of the
        // other.
        bool const isUp = inFrom.Helper().Path().size() >= inTo.Helper().Path().size();
        Dir& longer = isUp ? inFrom : inTo;
        Dir parent = longer.Parent();
        if (parent.Helper().Path().empty()) {
            return {};
        }
        if (isUp) {
            way += u"../"_utf16;
        } else {
            namesDown.push_back(longer.GetName());
        }
        longer = std::move(parent);
    }
    for (; !namesDown.empty(); namesDown.pop_back()) {
        way += namesDown.back() + u"/"_utf16;
    }
    return way;
}

/// A first name like "a:b" must not be taken for a drive.
UTF16String Unambiguous(UTF16String const& inRelative) {
    bool const isAmbiguous = !inRelative.empty() && !IsNormalizedRelativePath(inRelative);
    return isAmbiguous ? u"./"_utf16 + inRelative : inRelative;
}

} // namespace

UTF16String MakeNormalizedRelativePath(File const& inTarget, File const& inBase) {
    return RelativePath(inBase.Parent(), inTarget);
}

UTF16String RelativePath(Dir const& inFrom, File const& inTo) {
    auto const way = Way(inFrom, inTo.Parent());
    return way ? Unambiguous(*way + inTo.GetName()) : UTF16String();
}

UTF16String RelativePath(Dir const& inFrom, Dir const& inTo) {
    auto const way = Way(inFrom, inTo);
    if (!way) {
        return {};
    }
    return way->empty() ? u"."_utf16 : Unambiguous(way->substr(0, way->size() - 1));
}

File WithExtension(File const& inFile, UTF16String const& inExtension) {
    auto path = inFile.FullPath();
    path.resize(path.size() - inFile.GetExtension(false).size());
    bool const needsDot = !inExtension.empty() && inExtension[0] != u'.';
    return File(path + (needsDot ? u"."_utf16 : UTF16String()) + inExtension);
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
