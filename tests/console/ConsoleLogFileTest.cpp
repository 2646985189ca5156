#include <brindle/console/ConsoleLogFile.h>

#include "platform/LogFile.h"

#include "tests/support/Environment.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/CommonDirs.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>

#include <algorithm>
#include <optional>
#include <regex>
#include <sys/stat.h>

namespace brindle::console {

namespace {

namespace fs = std::filesystem;
using filesupport::Dir;

/// What a log consists of: text between a header and, once it is closed, a footer.
struct ParsedLog {
    std::string text;
    bool isClosed = false;
};

/// Takes a line that begins so, with its line end, and a line of as many dashes, from either end of
/// the text. False if they are not there.
bool TakeStamp(std::string& ioText, std::string const& inStart, bool inIsFooter) {
    auto const start = inIsFooter ? ioText.rfind(inStart) : ioText.find(inStart);
    auto const end = ioText.find("\r\n", start) + 2;
    if (start == std::string::npos || end < start) {
        return false;
    }
    auto const dashes = std::string(end - start, '-') + "\r\n";
    auto const place = inIsFooter ? start - dashes.size() : end;
    bool const isWhole = inIsFooter ? start >= dashes.size() && end == ioText.size() : start == 0;
    if (!isWhole || ioText.compare(place, dashes.size(), dashes) != 0) {
        return false;
    }
    ioText.erase(std::min(start, place), end - start + dashes.size());
    return true;
}

/// Nothing for bytes that are no log.
std::optional<ParsedLog> Parse(std::string inBytes) {
    if (!TakeStamp(inBytes, "Log file created: ", false)) {
        return {};
    }
    bool const isClosed = TakeStamp(inBytes, "Log file closed: ", true);
    return ParsedLog{inBytes, isClosed};
}

class ConsoleLog : public tests::InTemporaryDirectory {
protected:
    void SetUp() override {
        mPreferences = fs::path(filesupport::NativePath(Dir::PrefDir()))
                           .lexically_relative(mTemporary.Native());
    }
    void TearDown() override {
        ConsoleLogFile::Terminate();
        ConsoleLogFile::SetDefaultLogFileName(UTF16String());
    }

    std::string InPreferences(std::string const& inName) const { return mPreferences / inName; }

    void FillLogs() const {
        Fill(mLog, "old");
        Fill(mLast, "older");
    }
    static void Write(std::string const& inText) {
        ConsoleLogFile::GetInstance()->WriteToLog(tests::AsUTF8(inText), false);
    }
    void ExpectLogged(std::string const& inName, std::string const& inText, bool inIsClosed) const {
        auto const log = Parse(ContentOf(inName));
        ASSERT_TRUE(log) << ContentOf(inName);
        EXPECT_EQ(log->text, inText);
        EXPECT_EQ(log->isClosed, inIsClosed);
    }
    void ExpectNoLog() const {
        Write("x");
        EXPECT_FALSE(ConsoleLogFile::GetInstance()->Exists());
        ConsoleLogFile::Terminate();
    }

    tests::Environment const mSettings{{{"XDG_CONFIG_HOME", mTemporary.Native()}}};
    fs::path mPreferences;
    std::string const mLog = "No Company Name/No Client Name/No Client Internal Version/"
                             "No Client Name Log.txt";
    std::string const mLast = "No Company Name/No Client Name/No Client Internal Version/"
                              "No Client Name Log-last.txt";
};

TEST_F(ConsoleLog, EachRunKeepsItsLogAndTheOneBefore) {
    ExpectNoLog();
    EXPECT_EQ(EntryCount(mPreferences), 0) << "nobody has asked for a log";
    FillLogs();
    fs::permissions(Native(mLog), fs::perms(0640));
    auto* const log = ConsoleLogFile::GetInstance();
    EXPECT_TRUE(log->Exists());
    EXPECT_EQ(ContentOf(mLast), "old");
    EXPECT_EQ(fs::status(Native(mLog)).permissions(), fs::perms(0640));
    log->WriteToLog("caf\u00E9\n"_utf8, false);
    log->WriteToLog(UTF8String(), true);
    log->WriteToLog("timed\r\n"_utf8, true);
    log->WriteToLog("\xFF"_utf8, false);
    auto const open = Parse(ContentOf(mLog));
    ASSERT_TRUE(open) << ContentOf(mLog);
    EXPECT_FALSE(open->isClosed);
    EXPECT_TRUE(
        std::regex_match(open->text, std::regex("caf\u00E9\nTicks = \\d{1,5}      timed\r\n\xFF")))
        << open->text;
    auto const text = open->text;
    ConsoleLogFile::Terminate();
    ExpectLogged(mLog, text, true);
    log->WriteToLog("an address from before stays valid"_utf8, true);
    EXPECT_FALSE(log->Exists());

    Write("second");
    ExpectLogged(mLast, text, true);
    log->CloseLogFile();
    ExpectLogged(mLog, "second", true);
    EXPECT_FALSE(log->Exists());
    EXPECT_EQ(EntryCount(mPreferences), 2);
}

TEST_F(ConsoleLog, HeaderHasTheTimeAsTheUserWritesIt) {
    Fill(mLog, "");
    Write("");
    auto const content = ContentOf(mLog);
    std::time_t const now = std::time(nullptr);
    char written[2][200]{};
    for (int secondsBefore : {0, 1}) {
        std::time_t const then = now - secondsBefore;
        std::strftime(written[secondsBefore], sizeof written[0], "Log file created: %c\r\n",
                      std::localtime(&then));
    }
    auto const line = content.substr(0, content.find('\n') + 1);
    EXPECT_TRUE(line == written[0] || line == written[1]) << line;
    EXPECT_EQ(content, line + std::string(line.size(), '-') + "\r\n");
}

TEST_F(ConsoleLog, NameOfTheClientCanBeReplaced) {
    ConsoleLogFile::SetDefaultLogFileName(u"other"_utf16);
    Fill(InPreferences("other Log.txt"), "old");
    Write("text");
    ExpectLogged(InPreferences("other Log.txt"), "text", false);
    EXPECT_EQ(ContentOf(InPreferences("other Log-last.txt")), "old");
    UTF16String path;
    EXPECT_TRUE(ConsoleLogFile::GetInstance()->GetLogFilePath(path, true));
    EXPECT_EQ(filesupport::NativePath(filesupport::File(path)),
              Native(InPreferences("other Log-last.txt")));
}

TEST_F(ConsoleLog, WhatIsNoLogIsLeftAlone) {
    fs::create_directories(Native(mLog));
    ExpectNoLog();
    EXPECT_TRUE(fs::is_directory(Native(mLog)));
    fs::remove(Native(mLog));
    ASSERT_EQ(::mkfifo(Native(mLog).c_str(), 0600), 0);
    ExpectNoLog();
    EXPECT_TRUE(fs::is_fifo(Native(mLog)));
    fs::remove(Native(mLog));
    // Somebody else's log is theirs, also between this process's descriptors.
    FillLogs();
    {
        auto other = platform::LogFile::Start(At(mLog), At(mLast));
        ASSERT_TRUE(other);
        EXPECT_EQ(other.value.Append("one", 3), platform::kError_None);
        ExpectNoLog();
        EXPECT_THROW(ConsoleLogFile::GetInstance()->OpenLogFile(tests::AsUTF8(Native(mLog))),
                     filesupport::file_delete_exception);
        Fill(mLog, ""); // somebody makes room
        EXPECT_EQ(other.value.Append("two", 3), platform::kError_None);
    }
    EXPECT_EQ(ContentOf(mLog), "two");
    EXPECT_EQ(ContentOf(mLast), "old");
}

TEST_F(ConsoleLog, WithoutPreferencesThereIsNoLogAndNoFailure) {
    fs::permissions(mTemporary.Native(), fs::perms(0755));
    filesupport::commondirs::SetAppDirOverride(Dir(At("missing")));
    tests::Environment const nowhere{
        {{"XDG_CONFIG_HOME", Native("no")}, {"HOME", mTemporary.Native()}}};
    {
        tests::OrdinaryUser const user;
        EXPECT_THROW(Dir::PrefDir(), filesupport::dir_exception);
        ExpectNoLog();
    }
    filesupport::commondirs::SetAppDirOverride(Dir());
}

TEST_F(ConsoleLog, OldLogThatCannotBeKeptDoesNotStandInTheWay) {
    Fill(mLog, "old");
    fs::create_directories(Native(mLast));
    Write("new");
    ExpectLogged(mLog, "new", false);
    EXPECT_TRUE(fs::is_directory(Native(mLast)));
    EXPECT_EQ(EntryCount(mPreferences), 2);
}

TEST_F(ConsoleLog, LinkToALogStaysOne) {
    Fill("real.txt", "old");
    fs::create_symlink(Native("real.txt"), Native(mLog));
    Write("new");
    EXPECT_TRUE(fs::is_symlink(Native(mLog)));
    ExpectLogged("real.txt", "new", false);
    EXPECT_EQ(ContentOf(mLast), "old");
}

TEST_F(ConsoleLog, ExplicitLogReplacesAFile) {
    auto* const log = ConsoleLogFile::GetInstance();
    Fill("explicit.txt", "old");
    EXPECT_TRUE(log->OpenLogFile(tests::AsUTF8(Native("explicit.txt"))));
    Write("first");
    EXPECT_TRUE(log->OpenLogFile(tests::AsUTF8(Native("next.txt"))));
    Write("second");
    ExpectLogged("explicit.txt", "first", true);
    ExpectLogged("next.txt", "second", false);

    EXPECT_FALSE(log->OpenLogFile(tests::AsUTF8(Native("missing/x"))));
    EXPECT_FALSE(log->Exists());
    ExpectLogged("next.txt", "second", true);
    EXPECT_THROW(log->OpenLogFile(tests::AsUTF8(mTemporary.Native())),
                 filesupport::file_delete_exception);
    EXPECT_TRUE(log->Exists()) << "the file that is held is there";
    Write("nowhere");
    log->CloseLogFile();
    EXPECT_FALSE(log->Exists());
}

TEST_F(ConsoleLog, FullDiskDropsWholeTexts) {
    Fill(mLog, "");
    Write("fits");
    auto const before = ContentOf(mLog);
    {
        tests::FileSizeLimit const limit(before.size() + 3);
        Write("does not fit");
        EXPECT_EQ(ContentOf(mLog), before);
        Write("abc");
    }
    Write("later");
    ExpectLogged(mLog, "fitsabclater", false);
}

TEST_F(ConsoleLog, WritingGoesOnWhenTheDirectoryHasGone) {
    Fill(mLog, "");
    Write("a");
    fs::remove_all(Native(mPreferences));
    Write("b");
    EXPECT_FALSE(ConsoleLogFile::GetInstance()->Exists());
    ConsoleLogFile::Terminate();
    ExpectNoLog();
}

TEST_F(ConsoleLog, ThreadsMayOpenWriteAndTerminateAtOnce) {
    Fill(mLog, "");
    tests::InThreads(4, [&](unsigned inThread) {
        for (int i = 0; i < 50; ++i) {
            Write("text\n");
            if (inThread == 0) {
                ConsoleLogFile::Terminate();
            }
        }
    });
    ConsoleLogFile::Terminate();
    auto const log = Parse(ContentOf(mLog));
    ASSERT_TRUE(log);
    EXPECT_TRUE(log->isClosed);
}

TEST_F(ConsoleLog, FaultAtAnyCallKeepsBothNamesWhole) {
    using Fault = tests::SystemCallFault;
    auto const work = [] {
        try {
            Write("text\n");
            ConsoleLogFile::Terminate();
            return 1;
        } catch (filesupport::create_exception const&) {
            // Reported once: from then on the run has no log.
            return ConsoleLogFile::GetInstance()->Exists() ? 2 : 0;
        }
    };
    Fault const faults[] = {
        {Fault::kKillBefore}, {Fault::kKillAfter}, {Fault::kRefuse, ENOSPC}, {Fault::kRefuse, EIO}};
    for (Fault fault : faults) {
        int reports = 0;
        for (bool hasHappened = true; hasHappened; ++fault.call) {
            FillLogs();
            auto const run = tests::RunWithFault(work, fault);
            hasHappened = run.hasHappened;
            reports += run.status == 0 ? 1 : 0;
            SCOPED_TRACE("kind " + std::to_string(fault.kind) + ", call " +
                         std::to_string(fault.call) + ", number " + std::to_string(run.call));
            EXPECT_NE(run.status, 2);
            auto const log = ContentOf(mLog), last = ContentOf(mLast);
            EXPECT_TRUE(run.status != 0 || log == "old") << log;
            if (log == "old") {
                EXPECT_TRUE(last == "older" || last == "old") << last;
            } else {
                EXPECT_TRUE(last == "old" || fault.kind == Fault::kRefuse) << last;
                EXPECT_TRUE(log.empty() || Parse(log) || fault.kind == Fault::kRefuse) << log;
            }
            for (auto const& entry : fs::directory_iterator(Native(mPreferences))) {
                bool const isLeft = entry.path().filename().string()[0] == '.';
                EXPECT_TRUE(!isLeft || run.status < 0) << entry;
                if (isLeft) {
                    fs::remove(entry);
                }
            }
            ASSERT_EQ(work(), 1);
            ExpectLogged(mLog, "text\n", true);
        }
        EXPECT_GT(fault.call, 10);
        EXPECT_EQ(reports > 0, fault.kind == Fault::kRefuse) << "a disk that fails is reported";
    }
}

} // namespace

} // namespace brindle::console
