#include <brindle/config/Describe.h>

#include "config/src/LocalizedText.h"
#include "platform/Paths.h"
#include "platform/TextEncoding.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/ErrorManager.h>
#include <brindle/config/FileFailure.h>
#include <brindle/config/Text.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <string_view>

namespace brindle::config {

namespace {

/// The key of a row of a table, or `inDefault` if there is no such row.
template <typename Row, std::size_t kCount, typename Value>
char const* KeyOf(Row const (&inRows)[kCount], Value Row::*inColumn, Value inValue,
                  char const* inDefault) {
    for (Row const& row : inRows) {
        if (row.*inColumn == inValue) {
            return row.key;
        }
    }
    return inDefault;
}

/// The path as the user knows it.
UTF16String NativeText(UTF16String const& inPath) {
    auto const native = platform::NativePath(inPath);
    return native ? platform::FromCodePage(native.value) : inPath;
}

/// Keys that say all that one cause would say.
struct {
    std::string_view key;
    utility::SystemError cause;
} constexpr kSayTheCause[] = {
    {kKey_FileNotFound, utility::SystemError::kFileNotFound},
    {kKey_DirNotFound, utility::SystemError::kFileNotFound},
    {kKey_CreateNotFound, utility::SystemError::kFileNotFound},
    {kKey_CreateInvalidPath, utility::SystemError::kPathNotFound},
    {kKey_CreateLocked, utility::SystemError::kWriteProtected},
    {kKey_CreateAccessDenied, utility::SystemError::kAccessDenied},
    {kKey_DirRenameExists, utility::SystemError::kAlreadyExists},
    {kKey_StreamEnd, utility::SystemError::kEndOfFile},
};

/// For the developer, so not translated.
constexpr char kHowToInstall[] =
    "No error manager is installed. A program installs one at its start, before it uses anything "
    "else: brindle::config::PrintingErrorManager errors(\"my program\"); "
    "brindle::config::ErrorManager::Set(&errors);";

/// What the exception says by itself, or what was to be done if that tells more.
std::string_view SentenceOf(FileFailure const& inFailure, char const* inWhat) {
    std::string_view const own = inFailure.Key() != nullptr ? inFailure.Key() : inWhat;
    bool const isVague = own == kKey_File || own == kKey_Dir || own.find("@0") == own.npos;
    bool const namesMore = isVague && !inFailure.Path().empty();
    return namesMore
               ? KeyOf(kOperationKeys, &OperationKey::operation, inFailure.Operation(), own.data())
               : own;
}

UTF16String DescribeFailure(FileFailure const& inFailure, char const* inWhat) {
    std::string_view const key = SentenceOf(inFailure, inWhat);
    UTF16String text = Text(key.data(), {NativeText(inFailure.Path()), inFailure.NewName()});
    auto const cause = inFailure.Cause();
    bool const isSaid =
        std::any_of(std::begin(kSayTheCause), std::end(kSayTheCause),
                    [&](auto const& inRow) { return inRow.key == key && inRow.cause == cause; });
    if (cause != utility::SystemError::kNone && !isSaid) {
        text += u" "_utf16 + Text(KeyOf(kCauseKeys, &CauseKey::cause, cause, kKey_CauseUnknown));
    }
    return text;
}

} // namespace

UTF16String Describe(std::exception const& inException) {
    if (auto const* const failure = dynamic_cast<FileFailure const*>(&inException)) {
        return DescribeFailure(*failure, inException.what());
    }
    if (dynamic_cast<no_error_manager const*>(&inException) != nullptr) {
        return utility::Utf16(kHowToInstall);
    }
    bool const isMemory = dynamic_cast<std::bad_alloc const*>(&inException) != nullptr;
    return Localized(isMemory ? kKey_NoMemory : inException.what()).text;
}

std::string DescribeInUTF8(std::exception const& inException) {
    UTF8String const text = utility::UTF16to8(Printable(Describe(inException)));
    return std::string(text.begin(), text.end());
}

} // namespace brindle::config
