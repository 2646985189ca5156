#include <brindle/filesupport/SafeSave.h>

#include "filesupport/src/files/DirectoryListing.h"
#include "filesupport/src/files/PathText.h"
#include "filesupport/src/files/TempNames.h"
#include "platform/Files.h"
#include "platform/SaveRemains.h"
#include "platform/TemporaryFile.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/FileUtils.h>

#include <algorithm>
#include <utility>

namespace brindle::filesupport {

namespace {

/// The directory of a file as text: the current one for a name alone, and the root, which is empty,
/// for "\\name".
UTF16String DirectoryOf(File const& inFile) {
    auto const path = inFile.FullPath();
    return LastSeparator(path) == UTF16String::npos ? u"."_utf16 : BeforeLastComponent(path);
}

} // namespace

SafeSave::SafeSave(File& inTarget) : mTarget(inTarget) {}

SafeSave::SafeSave(File const& inTarget) : mTarget(inTarget) {}

SafeSave::~SafeSave() {
    if (mTempFile == nullptr) {
        return;
    }
    try {
        // Where removing fails, the file stays under a name that no other save takes.
        static_cast<void>(mTempFile->Remove());
    } catch (...) { // no memory, so it stays as well
    }
}

File& SafeSave::GetTempFile() {
    if (!mHasTempName) {
        CreateTempFile();
        mHasTempName = true;
    }
    return mTemp;
}

void SafeSave::CreateTempFile() {
    // Others may take a name between the look and the creation, but not a thousand times.
    constexpr int kMostAttempts = 1000;
    auto const directory = DirectoryOf(mTarget);
    auto const names = TempNamesFor(mTarget);
    auto const old = platform::Inspect(mTarget.Helper().Path());
    bool const isFirst = old.error == platform::kError_FileNotFound;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        mTemp = File(utility::FileUtils::UniqueFileName(directory, names.base, names.extension));
        auto created = platform::TemporaryFile::Create(mTemp.Helper().Path(),
                                                       isFirst ? platform::Readers::kAnybody
                                                               : platform::Readers::kOwner);
        if (created) {
            mTempFile = std::make_unique<platform::TemporaryFile>(std::move(created.value));
            return;
        }
        mTempError = created.error;
        if (created.error != platform::kError_AlreadyExists) {
            return;
        }
    }
}

void SafeSave::Commit() {
    auto const error =
        mTempFile == nullptr ? mTempError : mTempFile->TakePlaceOf(mTarget.Helper().Path());
    if (error != platform::kError_None) {
        throw config::Because(rename_file(GetTempFile(), mTarget.GetName()),
                              config::FileOperation::kReplace, error);
    }
    mTempFile.reset();
    mTemp = mTarget;
}

std::size_t SafeSave::RemoveAbandoned(Dir const& inDir) {
    auto listing = ListDirectory(inDir.Helper().Path(), false);
    if (listing.error != platform::kError_None) {
        throw config::Because(dir_exception(inDir), config::FileOperation::kInspect, listing.error);
    }
    return static_cast<std::size_t>(
        std::count_if(listing.files.begin(), listing.files.end(), [](UTF16String const& inPath) {
            return IsOfSave(inPath) && platform::RemoveSaveRemains(inPath) == platform::kError_None;
        }));
}

} // namespace brindle::filesupport
