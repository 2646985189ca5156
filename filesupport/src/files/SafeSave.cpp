#include <brindle/filesupport/SafeSave.h>

#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/TextEncoding.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/FileUtils.h>
#include <brindle/utility/Numbers.h>

#include <algorithm>
#include <cstdint>

namespace brindle::filesupport {

namespace {

/// The directory of a file as text: of a name alone, the current one.
UTF16String DirectoryOf(File const& inFile) {
    auto const parent = inFile.Parent();
    return parent.Helper().Path().empty() ? u"."_utf16 : parent.Helper().Path();
}

constexpr std::size_t kMostBytes = 255; // of a name

bool IsNameTooLong(UTF16String const& inName) {
    return platform::ToCodePage(inName).size() > kMostBytes;
}

File TempFileFor(File const& inTarget) {
    auto const dot = std::uint16_t{'.'};
    auto const ids = dot + utility::NumberToString(std::int64_t{platform::ProcessId()}) + dot +
                     utility::NumberToString(std::int64_t{platform::ThreadId()});
    auto const number = std::uint16_t{'1'};
    auto title = inTarget.GetTitle();
    auto extension = inTarget.GetExtension(true);
    // A target's name may be so long that the temp file's can hold only some of it.
    if (IsNameTooLong(ids + number + extension)) {
        extension.clear();
    }
    title.resize(std::min(title.size(), kMostBytes)); // a unit is a byte at least
    while (IsNameTooLong(title + ids + number + extension)) {
        title.pop_back();
    }
    return File(utility::FileUtils::UniqueFileName(DirectoryOf(inTarget), title + ids, extension));
}

} // namespace

SafeSave::SafeSave(File& inTarget) : mTarget(inTarget), mTemp(TempFileFor(mTarget)) {}

SafeSave::~SafeSave() {
    if (mTemp == mTarget) {
        return;
    }
    try {
        // Where removing fails, the file stays under a name that no other save takes.
        static_cast<void>(platform::DeleteFile(mTemp.Helper().Path()));
    } catch (...) { // no memory, so it stays as well
    }
}

void SafeSave::Commit() {
    // Afterwards the two are one, and to commit again would be to replace the target by itself.
    if (mTemp == mTarget || platform::ReplaceFile(mTemp.Helper().Path(), mTarget.Helper().Path()) !=
                                platform::kError_None) {
        throw rename_file(mTemp, mTarget.GetName());
    }
    mTemp = mTarget;
}

} // namespace brindle::filesupport
