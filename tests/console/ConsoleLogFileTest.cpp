#include <brindle/console/ConsoleLogFile.h>

#include "platform/LogFile.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/InPreferences.h"
#include "tests/support/InThreads.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/filesupport/CommonDirs.h>
#include <brindle/filesupport/FileExceptions.h>

#include <regex>
#include <sys/stat.h>

namespace brindle::console {

namespace {

namespace fs = std::filesystem;
using filesupport::Dir;

class ConsoleLog : public tests::InPreferences {
protected:
    void TearDown() override {
        ConsoleLogFile::Terminate();
        ConsoleLogFile::SetDefaultLogFileName(UTF16String());
    }

    void FillLogs() const {
        Fill(mLog, "old");
        Fill(mLast, "older");
    }
    static void Write(std::string const& inText) {
        ConsoleLogFile::GetInstance()->WriteToLog(tests::AsUTF8(inText), false);
    }
    /// The text between the header and the footer, for which "[closed]" stands.
    std::string Logged(std::string const& inName) const {
        static std::regex const form("(Log file created: [^\r]+\r\n)(-+)\r\n([\\s\\S]*?)"
                                     "((-+)\r\n(Log file closed: [^\r]+\r\n))?");
        auto const content = ContentOf(inName);
        std::smatch match;
        bool const isLog = std::regex_match(content, match, form) &&
                           match.length(1) == match.length(2) && match.length(5) == match.length(6);
        return isLog ? match.str(3) + (match[4].matched ? "[closed]" : "") : "no log: " + content;
    }
    void ExpectNoLog() const {
        Write("x");
        EXPECT_FALSE(ConsoleLogFile::GetInstance()->Exists());
        ConsoleLogFile::Terminate();
    }

    std::string const mLog = Preference("No Client Name Log.txt");
    std::string const mLast = Preference("No Client Name Log-last.txt");
};

TEST_F(ConsoleLog, EachRunKeepsItsLogAndTheOneBefore) {
    ExpectNoLog();
    EXPECT_EQ(EntryCount(mDirectory), 0) << "nobody has asked for a log";
    FillLogs();
    fs::permissions(Native(mLog), fs::perms(0640));
    auto* const log = ConsoleLogFile::GetInstance();
    EXPECT_TRUE(log->Exists());
    EXPECT_EQ(ContentOf(mLast), "old");
    EXPECT_EQ(fs::status(Native(mLog)).permissions(), fs::perms(0640));
    Write("caf\u00E9\n");
    log->WriteToLog(UTF8String(), true);
    log->WriteToLog("timed\r\n"_utf8, true);
    Write("\xFF");
    auto const text = Logged(mLog);
    std::regex const form("caf\u00E9\nTicks = \\d{1,5}      timed\r\n\xFF");
    EXPECT_TRUE(std::regex_match(text, form)) << text;
    ConsoleLogFile::Terminate();
    EXPECT_EQ(Logged(mLog), text + "[closed]");
    log->WriteToLog("an address from before stays valid"_utf8, true);
    EXPECT_FALSE(log->Exists());

    Write("second");
    EXPECT_EQ(Logged(mLast), text + "[closed]");
    log->CloseLogFile();
    EXPECT_EQ(Logged(mLog), "second[closed]");
    EXPECT_FALSE(log->Exists());
    EXPECT_EQ(EntryCount(mDirectory), 2);
}

TEST_F(ConsoleLog, HeaderHasTheTimeAsTheUserWritesIt) {
    Fill(mLog, "");
    Write("");
    std::tm written{};
    auto const line = ContentOf(mLog);
    char const* const end = ::strptime(line.c_str(), "Log file created: %c", &written);
    ASSERT_NE(end, nullptr) << line;
    EXPECT_EQ(std::string(end, 2), "\r\n");
    EXPECT_LE(std::abs(std::difftime(std::time(nullptr), ::timelocal(&written))), 3700) << line;
}

TEST_F(ConsoleLog, NameOfTheClientCanBeReplacedAndALinkStaysOne) {
    ConsoleLogFile::SetDefaultLogFileName(u"other"_utf16);
    Fill("real.txt", "old");
    fs::create_symlink(Native("real.txt"), Native(Preference("other Log.txt")));
    Write("new");
    EXPECT_TRUE(fs::is_symlink(Native(Preference("other Log.txt"))));
    EXPECT_EQ(Logged("real.txt"), "new");
    UTF16String path;
    EXPECT_TRUE(ConsoleLogFile::GetInstance()->GetLogFilePath(path, true));
    EXPECT_EQ(filesupport::NativePath(filesupport::File(path)),
              Native(Preference("other Log-last.txt")));
    EXPECT_EQ(ContentOf(Preference("other Log-last.txt")), "old");
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

TEST_F(ConsoleLog, ExplicitLogReplacesAFile) {
    auto* const log = ConsoleLogFile::GetInstance();
    Fill("explicit.txt", "old");
    EXPECT_TRUE(log->OpenLogFile(tests::AsUTF8(Native("explicit.txt"))));
    Write("first");
    EXPECT_TRUE(log->OpenLogFile(tests::AsUTF8(Native("next.txt"))));
    Write("second");
    EXPECT_EQ(Logged("explicit.txt"), "first[closed]");
    EXPECT_EQ(Logged("next.txt"), "second");

    EXPECT_FALSE(log->OpenLogFile(tests::AsUTF8(Native("missing/x"))));
    EXPECT_FALSE(log->Exists());
    EXPECT_EQ(Logged("next.txt"), "second[closed]");
    EXPECT_THROW(log->OpenLogFile(tests::AsUTF8(mTemporary.Native())),
                 filesupport::file_delete_exception);
    EXPECT_TRUE(log->Exists()) << "the file that is held is there";
    Write("nowhere");
    fs::permissions(mTemporary.Native(), fs::perms(0555));
    {
        tests::OrdinaryUser const user;
        EXPECT_FALSE(log->OpenLogFile(tests::AsUTF8(Native("new.txt")))) << "nothing to replace";
    }
    fs::permissions(mTemporary.Native(), fs::perms(0755));
    log->CloseLogFile();
    EXPECT_FALSE(log->Exists());
}

TEST_F(ConsoleLog, FullDiskDropsWholeTextsAndARemovedDirectoryAll) {
    Fill(mLog, "");
    Write("fits");
    {
        tests::FileSizeLimit const limit(ContentOf(mLog).size() + 3);
        Write("does not fit");
        Write("abc");
    }
    Write("later");
    EXPECT_EQ(Logged(mLog), "fitsabclater");
    fs::remove_all(Native(mDirectory));
    ExpectNoLog();
    ExpectNoLog();
}

TEST_F(ConsoleLog, ThreadsMayOpenWriteAndTerminateAtOnce) {
    Fill(mLog, "");
    tests::InThreads(4, [&](unsigned inThread) {
        for (int i = 0; i < 50; ++i) {
            Write("text\n");
            inThread == 0 ? ConsoleLogFile::Terminate() : void();
        }
    });
    ConsoleLogFile::Terminate();
    auto const text = Logged(mLog);
    EXPECT_TRUE(std::regex_match(text, std::regex("(text\n)*\\[closed\\]"))) << text;
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
        bool const isRefusal = fault.kind == Fault::kRefuse;
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
            EXPECT_TRUE(last == "old" || (log == "old" ? last == "older" : isRefusal)) << last;
            EXPECT_TRUE(log == "old" || log.empty() || isRefusal ||
                        Logged(mLog) != "no log: " + log)
                << log;
            EXPECT_TRUE(run.status < 0 || EntryCount(mDirectory) == 2)
                << "a temporary file is left";
            ASSERT_EQ(work(), 1);
            EXPECT_EQ(Logged(mLog), "text\n[closed]");
            fs::remove_all(Native(mDirectory));
            fs::create_directory(Native(mDirectory));
        }
        EXPECT_GT(fault.call, 10);
        EXPECT_EQ(reports > 0, isRefusal) << "a disk that fails is reported";
    }
}

} // namespace

} // namespace brindle::console
