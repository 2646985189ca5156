#include <brindle/filesupport/Dir.h>

#include "filesupport/src/files/PathText.h"

#include "platform/Directories.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/TextOperations.h>

#include <utility>
#include <vector>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

namespace {

platform::FileInfo InspectOrThrow(Dir const& inDir) {
    auto const info = platform::Inspect(inDir.Helper().Path());
    if (info.error == platform::kError_FileNotFound) {
        throw Because(dir_not_found_exception(inDir), FileOperation::kInspect, info.error);
    }
    if (!info) {
        throw Because(dir_exception(inDir), FileOperation::kInspect, info.error);
    }
    return info.value;
}

} // namespace

DirHelper::DirHelper(UTF16String const& inPath) : mPath(inPath) {
    DropTrailingSeparator(mPath);
    NormalizePath(mPath);
}

UTF16String DirHelper::FullNativePath() const {
    return PrefixedPath(mPath);
}

Dir::Dir(Dir const& inParent, UTF16String const& inName)
    : mHelper(JoinedPath(inParent.mHelper.Path(), inName)) {}

Dir::Dir(Dir const& inParent, UTF16String const& inName, bool inResolveAlias)
    : Dir(inParent, inName) {
    File target;
    Dir targetDir;
    bool isDir = false;
    if (inResolveAlias && ResolveIfAlias(File(inParent, inName), target, targetDir, isDir) &&
        isDir) {
        *this = targetDir;
    }
}

std::string Dir::FullPathMultiByte() const {
    return platform::ToCodePage(mHelper.Path());
}

UTF16String Dir::GetName() const {
    return LastComponent(mHelper.Path());
}

Dir Dir::Parent() const {
    return Dir(BeforeLastComponent(mHelper.Path()));
}

bool Dir::IsTopLevelDir() const {
    return BeforeLastComponent(mHelper.Path()).empty();
}

bool Dir::Exists() const {
    auto const info = platform::Inspect(mHelper.Path());
    return info && info.value.kind == platform::FileKind::kDirectory;
}

std::uint64_t Dir::Modified() const {
    return InspectOrThrow(*this).modified;
}

std::uint64_t Dir::Created() const {
    return InspectOrThrow(*this).created;
}

void Dir::Create() const {
    auto const error = platform::CreateDirectory(mHelper.Path());
    if (error != platform::kError_None && error != platform::kError_AlreadyExists) {
        throw Because(dir_exception(*this), FileOperation::kCreate, error);
    }
}

void Dir::CreateAll() const {
    if (mHelper.Path().empty()) {
        throw Because(dir_exception(*this), FileOperation::kCreate, platform::kError_PathNotFound);
    }
    std::vector<Dir> missing; // the innermost one first
    for (Dir dir = *this; !dir.mHelper.Path().empty() && !dir.Exists(); dir = dir.Parent()) {
        missing.push_back(dir);
    }
    for (; !missing.empty(); missing.pop_back()) {
        Dir const& dir = missing.back();
        auto const error = platform::CreateDirectory(dir.mHelper.Path());
        // Another process may have made it meanwhile.
        if (error != platform::kError_None && !dir.Exists()) {
            bool const isTaken = error == platform::kError_AlreadyExists;
            throw Because(dir_exception(dir), FileOperation::kCreate,
                          isTaken ? platform::kError_NotADirectory : error);
        }
    }
}

void Dir::Delete() const {
    auto const removal = platform::RemoveTree(mHelper.Path());
    if (removal.error == platform::kError_None) {
        return;
    }
    if (removal.isDirectory) {
        throw Because(dir_exception(Dir(removal.path)), FileOperation::kDelete, removal.error);
    }
    throw Because(file_delete_exception(File(removal.path)), FileOperation::kDelete, removal.error);
}

void Dir::Rename(UTF16String const& inNewName) {
    DirHelper renamed(WithLastComponent(mHelper.Path(), inNewName));
    auto const error = platform::Move(mHelper.Path(), renamed.Path());
    if (error == platform::kError_AlreadyExists) {
        throw Because(rename_dir_already_exists(*this, inNewName), FileOperation::kRename, error);
    }
    if (error != platform::kError_None) {
        throw Because(rename_dir(*this, inNewName), FileOperation::kRename, error);
    }
    mHelper = std::move(renamed);
}

} // namespace brindle::filesupport

std::size_t std::hash<brindle::filesupport::Dir>::operator()(
    brindle::filesupport::Dir const& inDir) const noexcept {
    return brindle::utility::TextHash()(inDir.Helper().Path());
}
