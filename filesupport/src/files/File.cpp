#include <brindle/filesupport/File.h>

#include "filesupport/src/files/CreateFailure.h"
#include "filesupport/src/files/PathText.h"

#include "platform/Files.h"
#include "platform/TextEncoding.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/TextOperations.h>

#include <cwctype>
#include <utility>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

namespace {

/// Where the extension of a path begins: at its dot, or at the end if it has none.
std::size_t ExtensionStart(UTF16String const& inPath) {
    std::size_t const separator = LastSeparator(inPath);
    std::size_t const dot = inPath.rfind(u'.');
    bool const hasExtension =
        separator != UTF16String::npos && dot != UTF16String::npos && dot > separator;
    return hasExtension ? dot : inPath.size();
}

platform::FileInfo InspectOrThrow(File const& inFile) {
    auto const info = platform::Inspect(inFile.Helper().Path());
    if (info.error == platform::kError_FileNotFound) {
        throw Because(file_not_found_exception(inFile), FileOperation::kInspect, info.error);
    }
    if (!info) {
        throw Because(file_exception(inFile), FileOperation::kInspect, info.error);
    }
    return info.value;
}

} // namespace

FileHelper::FileHelper(UTF16String const& inPath) : mPath(inPath) {
    NormalizePath(mPath);
}

FileHelper::FileHelper(Dir const& inDir, UTF16String const& inName)
    : FileHelper(JoinedPath(inDir.Helper().Path(), inName)) {}

FileHelper::FileHelper(std::string const& inPath) : FileHelper(platform::FromCodePage(inPath)) {}

UTF16String FileHelper::FullNativePath() const {
    return PrefixedPath(mPath);
}

File::File(Dir const& inDir, UTF16String const& inName, bool inResolveAlias)
    : mHelper(inDir, inName) {
    if (inResolveAlias) {
        ResolveIfAliasFileOnly(*this);
    }
}

std::string File::FullPathMultiByte() const {
    return platform::ToCodePage(mHelper.Path());
}

UTF16String File::GetName() const {
    return LastComponent(mHelper.Path());
}

UTF16String File::GetTitle() const {
    UTF16String const& path = mHelper.Path();
    std::size_t const start = LastSeparator(path) + 1; // npos + 1 is 0
    return path.substr(start, ExtensionStart(path) - start);
}

UTF16String File::GetExtension(bool inToLower) const {
    UTF16String const& path = mHelper.Path();
    UTF16String extension = path.substr(ExtensionStart(path));
    if (inToLower) {
        for (std::uint16_t& unit : extension) {
            unit = static_cast<std::uint16_t>(std::towlower(unit));
        }
    }
    return extension;
}

Dir File::Parent() const {
    return Dir(BeforeLastComponent(mHelper.Path()));
}

bool File::Exists() const {
    return static_cast<bool>(platform::Inspect(mHelper.Path()));
}

std::uint64_t File::Modified() const {
    return InspectOrThrow(*this).modified;
}

std::uint64_t File::Created() const {
    return InspectOrThrow(*this).created;
}

void File::SetModified(std::uint64_t inTicks) const {
    auto const error = platform::SetModified(mHelper.Path(), inTicks);
    if (error == platform::kError_FileNotFound) {
        throw Because(file_not_found_exception(*this), FileOperation::kWrite, error);
    }
    if (error != platform::kError_None) {
        throw Because(file_exception(*this), FileOperation::kWrite, error);
    }
}

std::uint64_t File::Size(FileSizeSelector inSelector) const {
    switch (inSelector) {
    case kFileSize_Data:
    case kFileSize_Total:
    case kFileSize_DataOnDisk:
    case kFileSize_TotalOnDisk: {
        auto const info = platform::Inspect(mHelper.Path());
        return info && info.value.kind == platform::FileKind::kFile ? info.value.size : 0;
    }
    case kFileSize_Resource:
    case kFileSize_ResourceOnDisk:
        break;
    }
    return 0;
}

void File::Create() const {
    auto const error = platform::CreateEmptyFile(mHelper.Path());
    if (error != platform::kError_None) {
        ThrowCreateFailure(*this, error);
    }
}

void File::Delete() const {
    auto const error = platform::DeleteFile(mHelper.Path());
    if (error != platform::kError_None) {
        throw Because(file_delete_exception(*this), FileOperation::kDelete, error);
    }
}

void File::Rename(UTF16String const& inNewName) {
    FileHelper renamed(WithLastComponent(mHelper.Path(), inNewName));
    auto const error = platform::Move(mHelper.Path(), renamed.Path());
    if (error != platform::kError_None) {
        throw Because(rename_file(*this, inNewName), FileOperation::kRename, error);
    }
    mHelper = std::move(renamed);
}

} // namespace brindle::filesupport

std::size_t std::hash<brindle::filesupport::File>::operator()(
    brindle::filesupport::File const& inFile) const noexcept {
    return brindle::utility::TextHash()(inFile.Helper().Path());
}
