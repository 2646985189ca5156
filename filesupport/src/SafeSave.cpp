#include "platform/Files.h"
#include "platform/Process.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/utility/FileUtils.h>
#include <brindle/utility/Numbers.h>

#include <cstdint>

namespace brindle::filesupport {

namespace {

/// The directory of a file as text: of a name alone, the current one.
UTF16String DirectoryOf(File const& inFile) {
    auto const parent = inFile.Parent();
    return parent.Helper().Path().empty() ? u"."_utf16 : parent.Helper().Path();
}

File TempFileFor(File const& inTarget) {
    auto const dot = std::uint16_t{'.'};
    auto const base = inTarget.GetTitle() + dot +
                      utility::NumberToString(static_cast<std::int64_t>(platform::ProcessId())) +
                      dot +
                      utility::NumberToString(static_cast<std::int64_t>(platform::ThreadId()));
    return File(utility::FileUtils::UniqueFileName(DirectoryOf(inTarget), base,
                                                   inTarget.GetExtension(true)));
}

} // namespace

SafeSave::SafeSave(File& inTarget) : mTarget(inTarget), mTemp(TempFileFor(mTarget)) {}

SafeSave::~SafeSave() {
    if (mTemp == mTarget) {
        return;
    }
    try {
        platform::DeleteFile(mTemp.Helper().FullNativePath());
    } catch (...) {
        // The file stays, under a name that no other save takes.
    }
}

void SafeSave::Commit() {
    // Afterwards the two are one, and to commit again would be to replace the target by itself.
    if (mTemp == mTarget ||
        platform::ReplaceFile(mTemp.Helper().FullNativePath(), mTarget.Helper().FullNativePath()) !=
            platform::kError_None) {
        throw rename_file(mTemp, mTarget.GetName());
    }
    mTemp = mTarget;
}

} // namespace brindle::filesupport
