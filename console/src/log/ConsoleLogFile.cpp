#include <brindle/console/ConsoleLogFile.h>

#include "filesupport/src/files/CreateFailure.h"
#include "platform/Clock.h"
#include "platform/LogFile.h"
#include "utility/src/base/NeverDestroyed.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/threads/RecursiveMutex.h>
#include <brindle/threads/ScopedLock.h>
#include <brindle/utility/Locale.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/Unicode.h>

#include <array>
#include <atomic>
#include <charconv>
#include <iterator>
#include <limits>
#include <locale>
#include <utility>

namespace brindle::console {

using filesupport::Dir;
using filesupport::File;
using threads::RecursiveMutexLock;

namespace {

/// What belongs to the class.
struct Shared {
    // Recursive, because reporting a failure may lead to a handler that writes to the log.
    threads::RecursiveMutex mutex;
    UTF16String defaultName;              // guarded by the mutex
    bool isBeingCreated = false;          // guarded by the mutex
    std::atomic<bool> hasInstance{false}; // set with the mutex held
};

Shared& Statics() {
    static utility::NeverDestroyed<Shared> shared;
    return shared.Get();
}

/// The creation of the instance, which holds the mutex. Afterwards there is one, also if its log
/// could not be opened: one failure is enough.
class Creation {
public:
    explicit Creation(Shared& ioShared) : mShared(ioShared) { mShared.isBeingCreated = true; }
    Creation(Creation const&) = delete;
    Creation& operator=(Creation const&) = delete;
    ~Creation() {
        mShared.isBeingCreated = false;
        mShared.hasInstance.store(true, std::memory_order_release);
    }

private:
    Shared& mShared;
};

/// The local time as the user writes it. It is formatted in UTF-16, because the user's locale may
/// have another 8-bit encoding than UTF-8.
UTF8String TimeStamp() {
    oUTF16StringStream stream;
    stream.imbue(Locale::Native());
    std::tm const now = platform::LocalTime();
    std::use_facet<std::time_put<std::uint16_t>>(stream.getloc())
        .put(std::ostreambuf_iterator<std::uint16_t>(stream), stream, u' ', &now, 'c');
    return utility::UTF16to8(stream.str());
}

UTF8String LineWithTime(UTF8String const& inText) {
    return inText + TimeStamp() + "\r\n"_utf8;
}

/// As many dashes as the line has bytes, counted in 16 bits.
UTF8String DashesFor(UTF8String const& inLine) {
    return UTF8String(static_cast<std::uint16_t>(inLine.size()), '-') + "\r\n"_utf8;
}

UTF8String LineWithTicks(std::uint32_t inTicks, UTF8String const& inText) {
    constexpr std::uint8_t kBefore[] = {'T', 'i', 'c', 'k', 's', ' ', '=', ' '};
    constexpr std::size_t kBlanks = 6;
    std::array<char, std::numeric_limits<std::uint32_t>::digits10 + 1> digits{};
    auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), inTicks).ptr;
    UTF8String line;
    line.reserve(std::size(kBefore) + digits.size() + kBlanks + inText.size());
    line.append(kBefore, std::size(kBefore));
    line.append(digits.data(), end);
    line.append(kBlanks, ' ');
    return line += inText;
}

/// True if a file cannot be removed for this reason.
bool CannotBeReplaced(platform::ErrorCode inError) noexcept {
    return inError == platform::kError_AccessDenied || inError == platform::kError_WriteProtected ||
           inError == platform::kError_SharingViolation;
}

} // namespace

ConsoleLogFile::ConsoleLogFile() = default;
ConsoleLogFile::~ConsoleLogFile() = default;

ConsoleLogFile& ConsoleLogFile::TheOnlyOne() {
    // Never destroyed: threads may still hold its address when the log is terminated.
    static ConsoleLogFile& log = *new ConsoleLogFile;
    return log;
}

ConsoleLogFile* ConsoleLogFile::GetInstance() {
    ConsoleLogFile& log = TheOnlyOne();
    Shared& shared = Statics();
    if (shared.hasInstance.load(std::memory_order_acquire)) {
        return &log;
    }
    RecursiveMutexLock const lock(shared.mutex, true);
    // What is called while the log is opened may write to it already, in vain.
    if (!shared.hasInstance.load(std::memory_order_relaxed) && !shared.isBeingCreated) {
        Creation const creation(shared);
        log.mStartTicks = platform::TickCount();
        log.OpenDefaultLog();
    }
    return &log;
}

void ConsoleLogFile::Terminate() {
    Shared& shared = Statics();
    RecursiveMutexLock const lock(shared.mutex, true);
    TheOnlyOne().CloseLogFile();
    shared.hasInstance.store(false, std::memory_order_release);
}

void ConsoleLogFile::SetDefaultLogFileName(UTF16String const& inName) {
    RecursiveMutexLock const lock(Statics().mutex, true);
    Statics().defaultName = inName;
}

UTF16String ConsoleLogFile::GetDefaultLogFileName(bool inLast) {
    RecursiveMutexLock const lock(Statics().mutex, true);
    UTF16String const& name = Statics().defaultName;
    return (name.empty() ? config::GetClientName() : name) +
           (inLast ? u" Log-last.txt"_utf16 : u" Log.txt"_utf16);
}

bool ConsoleLogFile::Exists() {
    RecursiveMutexLock const lock(Statics().mutex, true);
    return mFile != nullptr && mFile->Exists();
}

bool ConsoleLogFile::GetLogFilePath(UTF16String& outPath, bool inLast) {
    outPath = File(Dir::PrefDir(), GetDefaultLogFileName(inLast)).FullPath();
    return true;
}

void ConsoleLogFile::OpenDefaultLog() {
    if (mFile != nullptr) {
        return;
    }
    UTF16String path;
    UTF16String previous;
    try {
        GetLogFilePath(path, false);
        if (!File(path).Exists()) {
            return;
        }
        GetLogFilePath(previous, true);
    } catch (filesupport::dir_exception const&) {
        return; // where there are no preferences, nobody has asked for a log
    }
    auto log = platform::LogFile::Start(path, previous);
    if (CannotBeReplaced(log.error)) {
        return;
    }
    if (!log) {
        filesupport::ThrowCreateFailure(File(path), log.error);
    }
    mFile = std::make_unique<File>(path);
    mStream = std::make_unique<platform::LogFile>(std::move(log.value));
    WriteHeader();
}

bool ConsoleLogFile::OpenLogFile(UTF8String const& inPath) {
    RecursiveMutexLock const lock(Statics().mutex, true);
    CloseLogFile();
    mFile = std::make_unique<File>(utility::UTF8to16(inPath));
    auto log = platform::LogFile::Start(mFile->FullPath());
    if (CannotBeReplaced(log.error) && mFile->Exists()) {
        throw config::Because(filesupport::file_delete_exception(*mFile),
                              config::FileOperation::kDelete, log.error);
    }
    if (!log) {
        return false;
    }
    mStream = std::make_unique<platform::LogFile>(std::move(log.value));
    WriteHeader();
    return true;
}

void ConsoleLogFile::CloseLogFile() {
    RecursiveMutexLock const lock(Statics().mutex, true);
    if (mFile != nullptr) {
        WriteFooter();
        mStream.reset();
        mFile.reset();
    }
}

void ConsoleLogFile::WriteToLog(UTF8String const& inText, bool inTimeStamp) {
    RecursiveMutexLock const lock(Statics().mutex, true);
    if (inText.empty() || mFile == nullptr || mStream == nullptr) {
        return;
    }
    // In one piece, so that a kill leaves no half of it. Of a failure there is nobody to tell.
    auto const append = [this](UTF8String const& inWhole) {
        static_cast<void>(mStream->Append(inWhole.data(), inWhole.size()));
    };
    if (inTimeStamp) {
        append(LineWithTicks(platform::TickCount() - mStartTicks, inText));
    } else {
        append(inText);
    }
}

void ConsoleLogFile::WriteHeader() {
    UTF8String const text = LineWithTime("Log file created: "_utf8);
    WriteToLog(text + DashesFor(text), false);
}

void ConsoleLogFile::WriteFooter() {
    UTF8String const text = LineWithTime("Log file closed: "_utf8);
    WriteToLog(DashesFor(text), false);
    WriteToLog(text, false);
}

} // namespace brindle::console
