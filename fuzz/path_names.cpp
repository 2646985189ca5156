#include <brindle/filesupport/PathNames.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using brindle::UTF16String;
using brindle::UTF8String;
using namespace brindle::filesupport;
using namespace brindle::literals;

void Require(bool inHolds) {
    if (!inHolds) {
        std::abort();
    }
}

/// Splitting tells every part of a path, and the parts make the path again.
void RequireParts(File const& inFile) {
    UTF16String const path = inFile.FullPath();
    UTF16String const name = inFile.GetName();
    Require(name == inFile.GetTitle() + inFile.GetExtension(false));
    Require(name.find_first_of(u"\\/"_utf16) == UTF16String::npos);
    Require(path.size() >= name.size() &&
            path.compare(path.size() - name.size(), name.size(), name) == 0);

    // Where a name stands directly behind a root, or behind a prefix that only came to be, the
    // parent is another path.
    UTF16String const parent = inFile.Parent().FullPath();
    bool const isBelowADirectory =
        !parent.empty() && parent.size() + 1 + name.size() == path.size();
    Require(!isBelowADirectory || File(inFile.Parent(), name) == inFile);
    Require(parent.size() < path.size() || path.find(u'\\') == UTF16String::npos);
}

/// A path in which every component is a name, so that text can tell the way to it.
bool IsPlain(UTF16String const& inPath) {
    UTF16String const closed = inPath + u"\\"_utf16;
    return closed.find(u"\\.\\"_utf16) == UTF16String::npos &&
           closed.find(u"\\..\\"_utf16) == UTF16String::npos &&
           closed.compare(0, 2, u"\\\\"_utf16) != 0 && inPath.find(u'\\') != UTF16String::npos &&
           inPath.find(u'\\') != 0 && inPath.back() != u'\\';
}

} // namespace

/// Any two texts are taken as paths: the normal form stays as it is, the parts make the path again,
/// and a relative path leads back to where it was made for.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    std::uint8_t const* const end = inData + inSize;
    std::uint8_t const* const newline = std::find(inData, end, '\n');
    UTF16String const first = brindle::utility::UTF8to16(UTF8String(inData, newline));
    UTF16String const second =
        brindle::utility::UTF8to16(UTF8String(newline == end ? end : newline + 1, end));

    File const target(first);
    File const base(second);
    for (File const& file : {target, base}) {
        UTF16String const path = file.FullPath();
        Require(path.find(u'/') == UTF16String::npos);
        Require(path.find(u"\\\\"_utf16, 1) == UTF16String::npos);
        // What a removed prefix or a doubled backslash leaves may look like a prefix again.
        if (path.compare(0, 4, u"\\\\?\\"_utf16) != 0) {
            Require(File(path) == file);
            UTF16String const native = file.Helper().FullNativePath();
            Require(File(native) == file || native == u"\\\\?\\.\\"_utf16 + path);
            RequireParts(file);
        }
        Dir dir(file.FullPath());
        for (std::size_t last = path.size() + 1; !dir.FullPath().empty(); dir = dir.Parent()) {
            Require(dir.FullPath().size() < last);
            last = dir.FullPath().size();
        }
    }

    UTF16String const relative = MakeNormalizedRelativePath(target, base);
    if (!relative.empty() && IsPlain(target.FullPath()) && IsPlain(base.FullPath())) {
        Require(IsNormalizedRelativePath(relative));
        Require(MakeFileFromPath(relative, base) == target);
    }
    MakeFileFromPath(first, base);
    Require(CompareFileNames(first, second) == -CompareFileNames(second, first));
    return 0;
}
