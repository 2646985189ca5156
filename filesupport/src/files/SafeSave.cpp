#include <brindle/filesupport/SafeSave.h>

#include "filesupport/src/files/PathText.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/TemporaryFile.h"
#include "platform/TextEncoding.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/FileUtils.h>
#include <brindle/utility/Numbers.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace brindle::filesupport {

namespace {

/// The directory of a file as text: the current one for a name alone, and the root, which is empty,
/// for "\\name".
UTF16String DirectoryOf(File const& inFile) {
    auto const path = inFile.FullPath();
    return LastSeparator(path) == UTF16String::npos ? u"."_utf16 : BeforeLastComponent(path);
}

constexpr std::size_t kMostBytes = 255; // of a name

bool IsNameTooLong(UTF16String const& inName) {
    return platform::ToCodePage(inName).size() > kMostBytes;
}

/// What the names of the temp files have in common: what stands before the counter and behind it.
struct TempNames {
    UTF16String base;
    UTF16String extension;
};

TempNames TempNamesFor(File const& inTarget) {
    auto const dot = std::uint16_t{'.'};
    auto const ids = dot + utility::NumberToString(std::int64_t{platform::ProcessId()}) + dot +
                     utility::NumberToString(std::int64_t{platform::ThreadId()});
    auto const number = std::uint16_t{'1'};
    auto title = inTarget.GetTitle();
    auto extension = inTarget.GetExtension(true);
    // The target's name may be so long that only a part of it fits.
    if (IsNameTooLong(ids + number + extension)) {
        extension.clear();
    }
    title.resize(std::min(title.size(), kMostBytes)); // a unit is a byte at least
    while (IsNameTooLong(title + ids + number + extension)) {
        title.pop_back();
    }
    return {title + ids, extension};
}

} // namespace

SafeSave::SafeSave(File& inTarget) : mTarget(inTarget) {}

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
        }
        if (created.error != platform::kError_AlreadyExists) {
            return;
        }
    }
}

void SafeSave::Commit() {
    auto const error = mTempFile == nullptr ? platform::kError_FileNotFound
                                            : mTempFile->TakePlaceOf(mTarget.Helper().Path());
    if (error != platform::kError_None) {
        throw config::Because(rename_file(GetTempFile(), mTarget.GetName()),
                              config::FileOperation::kReplace, error);
    }
    mTempFile.reset();
    mTemp = mTarget;
}

} // namespace brindle::filesupport
