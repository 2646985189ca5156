#pragma once

#include <brindle/config/Errors.h>
#include <brindle/config/FileFailure.h>
#include <brindle/utility/SystemError.h>

#include <cstdint>

/// @file
/// Everything that the library can raise, for the host that has to react to it or to translate it.
///
/// A reportable error is told apart by its module and code; several errors may share these where a
/// host would react in the same way, and then differ in their keys. All of them may be deferred.
/// A new error gets the next free code of its module, and a row in the list at the end.

namespace brindle::config {

///@{
/// Who raises an error: the `module` of `ThrowError`.
inline constexpr std::uint32_t kErrorModule_Config = 100;
inline constexpr std::uint32_t kErrorModule_PropList = 104;
inline constexpr std::uint32_t kErrorModule_Utility = 105;
inline constexpr std::uint32_t kErrorModule_Threads = 106;
inline constexpr std::uint32_t kErrorModule_Geom = 107;
///@}
inline constexpr std::uint32_t kErrorModule_None = 110; ///< no error yet, in a reporter

/// The library keeps the module numbers below `kErrorModule_Host` for itself. From that one on all
/// are the host's, who divides them among its own parts; within them every code is the host's, too.
/// The number itself is that of `Report` without a module.
inline constexpr std::uint32_t kErrorModule_Host = 1000;

/// What is always the same of an error: everything but its replacement values.
struct ErrorCode {
    ErrorLevel level;     ///< whether the program can go on
    std::uint32_t module; ///< who raises it: `kErrorModule_...`
    std::int32_t code;    ///< tells the errors of a module apart
    /// "$$$/path=default text", in which `^1` to `^4` stand for the replacement values.
    char const* key;
};

/// Raises an error of the library. Throws what the nine arguments of the other form would.
inline void ThrowError(ErrorCode const& inError, ReplacementValue const& inFirst = {},
                       ReplacementValue const& inSecond = {}, ReplacementValue const& inThird = {},
                       ReplacementValue const& inFourth = {}) {
    ThrowError(inError.level, inError.key, inError.module, inError.code, true, inFirst, inSecond,
               inThird, inFourth);
}

/// A host asked for a fatal error by `TestThrowError(true)`, to try out its error manager.
inline constexpr ErrorCode kError_FatalTest{
    kErrorLevel_Fatal, kErrorModule_Config, 21,
    "$$$/brn/config/Error/test/fataltest=This is a fatal exception."};

/// The same for `TestThrowError(false)`. `^1` is signed, `^2` unsigned, `^3` a double.
inline constexpr ErrorCode kError_NonFatalTest{
    kErrorLevel_NonFatal, kErrorModule_Config, 20,
    "$$$/brn/config/Error/test/nonfataltest="
    "This is a non-fatal exception. int:^1, uint:^2, double:^3"};

/// A property list was written by a later version of the library. If the report returns, the list
/// is read as far as this version knows its elements.
inline constexpr ErrorCode kError_PropListVersion{
    kErrorLevel_NonFatal, kErrorModule_PropList, 20,
    "$$$/brn/proplist/Error/PropListXMLHandler/VersionGreaterThan="
    "Cannot read PropList data; version greater than expected."};

/// `LoadPropList` was called before `xml::SetParserFactory`: a mistake of the program. Nothing is
/// read.
inline constexpr ErrorCode kError_PropListLoadWithoutParser{
    kErrorLevel_NonFatal, kErrorModule_PropList, 21,
    "$$$/brn/proplist/Error/PropListUtils/MissingParserFactoryLoad="
    "Missing XML Parser Factory in LoadPropList."};

/// The same in `ReadPropList`.
inline constexpr ErrorCode kError_PropListReadWithoutParser{
    kErrorLevel_NonFatal, kErrorModule_PropList, 21,
    "$$$/brn/proplist/Error/PropListUtils/MissingParserFactoryRead="
    "Missing XML Parser Factory in ReadPropList."};

/// The file `^1` is not there, cannot be read or is no property list. The list is empty.
inline constexpr ErrorCode kError_PropListLoad{
    kErrorLevel_NonFatal, kErrorModule_PropList, 22,
    "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListLoad="
    "Error parsing properties list from file \"^1\"."};

/// The file `^1` is no property list and has been renamed to `^2`, as the caller asked. The list is
/// empty, and the program goes on with its defaults. What the host throws here goes no further.
inline constexpr ErrorCode kError_PropListSetAside{
    kErrorLevel_NonFatal, kErrorModule_PropList, 22,
    "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListCorruptRename="
    "Error parsing properties list from file \"^1\". It has been renamed to \"^2\". Proceeding."};

/// A text in memory is no property list. The list keeps what was read before the fault.
inline constexpr ErrorCode kError_PropListRead{
    kErrorLevel_NonFatal, kErrorModule_PropList, 22,
    "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListRead="
    "Error parsing properties list from memory."};

/// A precondition does not hold: a mistake of the program. `debug/Contract.h` shows the developer
/// where.
inline constexpr ErrorCode kError_ContractViolation{
    kErrorLevel_Fatal, kErrorModule_Utility, 25,
    "$$$/brn/utility/Error/Contract/InputContractViolation="
    "An input contract violation has occurred!"};

/// The system has no random bytes for a new identifier. If the report returns, the identifier is
/// all zero.
inline constexpr ErrorCode kError_GuidCreation{
    kErrorLevel_NonFatal, kErrorModule_Utility, 27,
    "$$$/brn/utility/Error/CouldntCreateGUID=Couldn't create Guid."};

/// A text is no identifier. If the report returns, the identifier is all zero. (Code 29 belongs to
/// the failure of the other direction, which this library cannot have.)
inline constexpr ErrorCode kError_GuidMalformed{
    kErrorLevel_NonFatal, kErrorModule_Utility, 28,
    "$$$/brn/utility/Error/MalformedGUID=Malformed Guid string."};

/// The system could not make a lock or a thread. `boost::thread_resource_error` follows if the
/// report returns.
inline constexpr ErrorCode kError_ThreadResources{
    kErrorLevel_NonFatal, kErrorModule_Threads, 20,
    "$$$/brn/threads/Error/NotEnoughThreadResources=Not enough thread resources."};

/// A lock was used against its rules. `boost::lock_error` follows if the report returns.
inline constexpr ErrorCode kError_ThreadLock{
    kErrorLevel_NonFatal, kErrorModule_Threads, 21,
    "$$$/brn/threads/Error/FailedToAcquireThreadLock=Failure to acquire thread lock."};

/// `MatrixT::Invert` was asked to report a singular matrix, which is all zero by now.
inline constexpr ErrorCode kError_SingularMatrix{
    kErrorLevel_NonFatal, kErrorModule_Geom, 0,
    "$$$/brn/geom/matrix/UI=Matrix cannot be inverted."};

/// All of them: what a host that translates has to have texts for, besides the keys below.
inline constexpr ErrorCode kErrorCodes[] = {
    kError_FatalTest,
    kError_NonFatalTest,
    kError_PropListVersion,
    kError_PropListLoadWithoutParser,
    kError_PropListReadWithoutParser,
    kError_PropListLoad,
    kError_PropListSetAside,
    kError_PropListRead,
    kError_ContractViolation,
    kError_GuidCreation,
    kError_GuidMalformed,
    kError_ThreadResources,
    kError_ThreadLock,
    kError_SingularMatrix,
};

///@{
/// What a `ReplacementValue` of a `bool` says.
inline constexpr char kKey_Yes[] = "$$$/brindle/config/Yes=yes";
inline constexpr char kKey_No[] = "$$$/brindle/config/No=no";
///@}

///@{
/// What the exceptions of files and directories give as `what()`; each is the key of the class of
/// its name in `filesupport/FileExceptions.h`. `@0` stands for the path, `@1` for the new name.
inline constexpr char kKey_File[] = "$$$/brindle/filesupport/error=Error with file: '@0'.";
inline constexpr char kKey_FileNotFound[] =
    "$$$/brindle/filesupport/FileNotFound=The file '@0' could not be found.";
inline constexpr char kKey_FileDelete[] =
    "$$$/brindle/filesupport/Delete=Could not delete the file '@0'.";
inline constexpr char kKey_Create[] =
    "$$$/brindle/filesupport/Create=Could not create the file '@0'.";
inline constexpr char kKey_CreateNotFound[] = "$$$/brindle/filesupport/Create/fnf="
                                              "Could not create the file '@0'. "
                                              "The file could not be found.";
inline constexpr char kKey_CreateLocked[] = "$$$/brindle/filesupport/Create/locked="
                                            "Could not create the file '@0'. The disk is locked.";
inline constexpr char kKey_CreateAccessDenied[] = "$$$/brindle/filesupport/Create/accessdenied="
                                                  "Could not create the file '@0'. "
                                                  "Access was denied.";
inline constexpr char kKey_CreateInvalidPath[] = "$$$/brindle/filesupport/Create/invalidpath="
                                                 "Could not create the file '@0'. "
                                                 "The path is not valid.";
inline constexpr char kKey_FileRename[] =
    "$$$/brindle/filesupport/Rename=Could not rename the file '@0' to '@1'.";
inline constexpr char kKey_Dir[] = "$$$/brindle/filesupport/Dir/error=Error with Directory: '@0'.";
inline constexpr char kKey_DirNotFound[] =
    "$$$/brindle/filesupport/DirNotFound=The directory '@0' could not be found.";
inline constexpr char kKey_DirDelete[] =
    "$$$/brindle/filesupport/DirDelete=Could not delete the directory '@0'.";
inline constexpr char kKey_DirRename[] =
    "$$$/brindle/filesupport/DirRename=Could not rename the directory '@0' to '@1'.";
inline constexpr char kKey_DirRenameExists[] = "$$$/brindle/filesupport/DirRename/exists="
                                               "Could not rename the directory '@0' to '@1'. "
                                               "The directory already exists.";
///@}

///@{
/// What `Describe` says of the exceptions of byte streams, whose `what()` is none of these.
inline constexpr char kKey_StreamUse[] =
    "$$$/brindle/filesupport/StreamUse=The stream cannot do this.";
inline constexpr char kKey_StreamEnd[] =
    "$$$/brindle/filesupport/StreamEnd=There is less data than expected.";
inline constexpr char kKey_StreamFailure[] =
    "$$$/brindle/filesupport/StreamFailure=Data could not be read or written.";
///@}

/// All of these keys.
inline constexpr char const* kFileKeys[] = {
    kKey_File,
    kKey_FileNotFound,
    kKey_FileDelete,
    kKey_Create,
    kKey_CreateNotFound,
    kKey_CreateLocked,
    kKey_CreateAccessDenied,
    kKey_CreateInvalidPath,
    kKey_FileRename,
    kKey_Dir,
    kKey_DirNotFound,
    kKey_DirDelete,
    kKey_DirRename,
    kKey_DirRenameExists,
    kKey_StreamUse,
    kKey_StreamEnd,
    kKey_StreamFailure,
};

/// What `Describe` says of an operation on a file or directory whose exception says less itself.
struct OperationKey {
    FileOperation operation; ///< that failed
    char const* key;         ///< of the text, in which `@0` stands for the path
};
/// The sentences of all operations.
inline constexpr OperationKey kOperationKeys[] = {
    {FileOperation::kInspect, "$$$/brindle/filesupport/Operation/Inspect=Could not look at '@0'."},
    {FileOperation::kOpen, "$$$/brindle/filesupport/Operation/Open=Could not open '@0'."},
    {FileOperation::kRead, "$$$/brindle/filesupport/Operation/Read=Could not read '@0'."},
    {FileOperation::kWrite, "$$$/brindle/filesupport/Operation/Write=Could not write '@0'."},
    {FileOperation::kSeek, "$$$/brindle/filesupport/Operation/Seek=Could not seek in '@0'."},
    {FileOperation::kCreate, "$$$/brindle/filesupport/Operation/Create=Could not create '@0'."},
    {FileOperation::kDelete, "$$$/brindle/filesupport/Operation/Delete=Could not delete '@0'."},
    {FileOperation::kRename, "$$$/brindle/filesupport/Operation/Rename=Could not rename '@0'."},
    {FileOperation::kReplace, "$$$/brindle/filesupport/Operation/Replace=Could not replace '@0'."},
    {FileOperation::kMap, "$$$/brindle/filesupport/Operation/Map=Could not make '@0' a volume."},
};

/// Why the system refused, as `Describe` says it behind the sentence of an exception.
struct CauseKey {
    utility::SystemError cause; ///< what the system said
    char const* key;            ///< of the text
};
/// Also for `std::bad_alloc`.
inline constexpr char kKey_NoMemory[] =
    "$$$/brindle/system/NotEnoughMemory=There is not enough memory.";
/// For a cause that is none of `kCauseKeys`.
inline constexpr char kKey_CauseUnknown[] =
    "$$$/brindle/system/GeneralFailure=The system gave no reason.";
/// The sentences of all causes.
inline constexpr CauseKey kCauseKeys[] = {
    {utility::SystemError::kFileNotFound, "$$$/brindle/system/FileNotFound=It does not exist."},
    {utility::SystemError::kPathNotFound,
     "$$$/brindle/system/PathNotFound=A directory on the way does not exist."},
    {utility::SystemError::kTooManyOpenFiles,
     "$$$/brindle/system/TooManyOpenFiles=Too many files are open."},
    {utility::SystemError::kAccessDenied, "$$$/brindle/system/AccessDenied=Permission was denied."},
    {utility::SystemError::kNotEnoughMemory, kKey_NoMemory},
    {utility::SystemError::kInvalidData,
     "$$$/brindle/system/InvalidData=The content does not have the expected form."},
    {utility::SystemError::kNotSameDevice,
     "$$$/brindle/system/NotSameDevice=The two places are on different file systems."},
    {utility::SystemError::kWriteProtected,
     "$$$/brindle/system/WriteProtected=The file system is read-only."},
    {utility::SystemError::kSharingViolation,
     "$$$/brindle/system/SharingViolation=Another program is using it."},
    {utility::SystemError::kEndOfFile, "$$$/brindle/system/EndOfFile=The file is too short."},
    {utility::SystemError::kNotSupported,
     "$$$/brindle/system/NotSupported=The file system does not support this."},
    {utility::SystemError::kFileExists, "$$$/brindle/system/FileExists=It exists already."},
    {utility::SystemError::kAlreadyExists, "$$$/brindle/system/AlreadyExists=It exists already."},
    {utility::SystemError::kDiskFull, "$$$/brindle/system/DiskFull=The disk is full."},
    {utility::SystemError::kInvalidName, "$$$/brindle/system/InvalidName=The name is not valid."},
    {utility::SystemError::kDirectoryNotEmpty,
     "$$$/brindle/system/DirectoryNotEmpty=The directory is not empty."},
    {utility::SystemError::kBusy, "$$$/brindle/system/Busy=It is in use."},
    {utility::SystemError::kNameTooLong, "$$$/brindle/system/NameTooLong=The name is too long."},
    {utility::SystemError::kFileTooLarge,
     "$$$/brindle/system/FileTooLarge=The file would be too large."},
    {utility::SystemError::kNotADirectory,
     "$$$/brindle/system/NotADirectory=It is not a directory."},
    {utility::SystemError::kIODevice, "$$$/brindle/system/IODevice=The device failed."},
    {utility::SystemError::kLinkCircle,
     "$$$/brindle/system/LinkCircle=Symbolic links lead around in a circle."},
};

} // namespace brindle::config
