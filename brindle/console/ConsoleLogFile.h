#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <boost/core/noncopyable.hpp>

#include <cstdint>
#include <memory>

namespace brindle::filesupport {
class File;
}
namespace brindle::platform {
class LogFile;
}

namespace brindle::console {

/// The text log of the process. It exists only if a file of its name, "CLIENT Log.txt", is in
/// `Dir::PrefDir`: a developer creates an empty one once. From then on each run keeps its log
/// there, and renames the log of the run before to "CLIENT Log-last.txt".
///
///     console::ConsoleLogFile::GetInstance()->WriteToLog("opened\r\n"_utf8, true);
///     console::ConsoleLogFile::Terminate(); // at the end of the program
///
/// Every operation may be called by any thread, by static objects too, and while another one is
/// in progress on the same thread. Text that was written survives the process. On a full disk a
/// text that does not fit is dropped as a whole, and later ones are tried again; writing goes on,
/// unseen, when the file was deleted.
///
/// One process at a time has a log. The old log is kept, and each of the two names changes in one
/// step, so that neither a kill nor a full disk takes the developer's file away.
class BRN_API ConsoleLogFile : boost::noncopyable {
public:
    /// The log, which is created and opened at the first call. Its address never changes, and is
    /// valid until the process ends. There is no log, and this is no failure, if there is no file
    /// of its name, if that is no regular file, cannot be replaced, or is another process's log.
    /// Throws a class derived from `filesupport::create_exception` if the new file cannot be
    /// created for another reason, such as a full disk. The old one is still there then, and later
    /// calls return an instance without a log.
    static ConsoleLogFile* GetInstance();

    /// Closes the log, if there is an instance. The next `GetInstance` begins anew.
    static void Terminate();

    /// What the names of the log begin with from the next time that they are needed; by default,
    /// and if it is empty, the client's name.
    static void SetDefaultLogFileName(UTF16String const& inName);

    /// True if a log is open, or `OpenLogFile` failed to create it, and its file exists.
    bool Exists();

    /// The path of the log, or with `inLast` that of the log of the run before. Always true. Throws
    /// what `Dir::PrefDir` throws.
    bool GetLogFilePath(UTF16String& outPath, bool inLast);

    /// Closes the log and opens one at this path, in the place of a file that exists; that file is
    /// not kept. False if it cannot be created. Throws `filesupport::file_delete_exception` if the
    /// file that exists cannot be replaced, or is another process's log.
    bool OpenLogFile(UTF8String const& inPath);

    /// Writes the footer and closes the log, if one is open.
    void CloseLogFile();

    /// Appends the text as it is; nothing if it is empty or no log is open. With `inTimeStamp` it
    /// gets "Ticks = ", the milliseconds since the instance was created, and six blanks in front.
    void WriteToLog(UTF8String const& inText, bool inTimeStamp);

private:
    ConsoleLogFile();
    ~ConsoleLogFile();

    static ConsoleLogFile& TheOnlyOne();
    static UTF16String GetDefaultLogFileName(bool inLast);
    void OpenDefaultLog();
    void WriteHeader();
    void WriteFooter();

    std::unique_ptr<filesupport::File> mFile;
    std::unique_ptr<platform::LogFile> mStream;
    std::uint32_t mStartTicks = 0;
};

} // namespace brindle::console
