#include <brindle/proplist/FileValues.h>

#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/PercentNames.h>
#include <brindle/utility/TextConversions.h>

#include <string>

namespace brindle::proplist {

namespace {

template <typename FileOrDir>
UTF8String PathText(FileOrDir const& inFile) {
    auto const native = filesupport::NativePath(inFile);
    return utility::PercentEncoded(native.empty() ? utility::ToStd(inFile.FullPath()) : native);
}

std::string PathIn(UTF8String const& inText) {
    std::string path;
    return utility::PercentDecode(inText, path) ? path : utility::ToStd(inText);
}

/// True for a path in the library's form.
bool HasDrive(std::string const& inPath) noexcept {
    return inPath.size() >= 3 && inPath[1] == ':' && inPath[2] == '\\';
}

} // namespace

UTF8String PropertyValue<filesupport::File>::ToStored(filesupport::File const& inFile) {
    return PathText(inFile);
}

bool PropertyValue<filesupport::File>::FromStored(UTF8String const& inStored,
                                                  filesupport::File& outFile) {
    auto const path = PathIn(inStored);
    outFile = HasDrive(path) ? filesupport::File(utility::Utf16(path))
                             : filesupport::FileFromNative(path);
    return true;
}

UTF8String PropertyValue<filesupport::Dir>::ToStored(filesupport::Dir const& inDir) {
    return PathText(inDir);
}

bool PropertyValue<filesupport::Dir>::FromStored(UTF8String const& inStored,
                                                 filesupport::Dir& outDir) {
    auto const path = PathIn(inStored);
    outDir =
        HasDrive(path) ? filesupport::Dir(utility::Utf16(path)) : filesupport::DirFromNative(path);
    return true;
}

} // namespace brindle::proplist
