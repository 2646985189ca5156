#include "Probe.h"

#include <brindle/config/Text.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/TaskGroup.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/DecodeText.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/ParseNumbers.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/TextConversions.h>

using namespace brindle;

bool UseLibrary() {
    std::atomic<bool> ran{false};
    threads::TaskGroup group(
        threads::CreateAsyncThreadedExecutor("static", 1, threads::kThreadPriorityNormal));
    group.Run([&] { ran = true; });
    group.Wait();
    return ran && utility::UpperCase(u"a"_utf16) == u"A" &&
           utility::NumberToString(1.5).size() == 4 &&
           config::Text("$$$/why/Count=^1", {2}) == u"2" && filesupport::Dir::TempDir().Exists();
}

bool Save(std::string const& inPath, std::string const& inContent) {
    filesupport::WriteFile(filesupport::FileFromNative(inPath), inContent);
    return true;
}

bool OpensWhatItLists(std::string const& inDirectory) {
    auto const file = filesupport::DirFromNative(inDirectory).BeginFiles(false);
    return filesupport::ReadFile(*file, 10).size() == 1;
}

void Rows() {
    FileRows();
    Row("Malformed UTF-8 converts to UTF-16, with U+FFFD in its place",
        utility::Utf16("a\xFFz") == u"a\uFFFDz");
    utility::TextReport report;
    bool const isDecoded = utility::DecodeText("a\xFFz\xFE", 4, &report) == u"a\uFFFDz\uFFFD";
    Row("The malformed places are counted", isDecoded && report.replacedCount == 2);
    Row("Numbers with the separators of the user's locale",
        utility::NumberToString(1234.5, 1, 2, utility::kNumberFormat_Group) == u"1.234,50" &&
            utility::ParseNumber(u"1.234,5"_utf16, utility::NumberForm::kUser) == 1234.5);
    time::TickTime const frame(1, time::kFrameRate_VideoNTSC);
    Row("A duration holds a frame of 30000/1001 exactly", frame * 30000 == time::TickTime(1001.0));

    auto const pool =
        threads::CreateAsyncThreadedExecutor("pool", 1, threads::kThreadPriorityNormal);
    PoolRows([&](std::atomic<int>& outCalls) { return pool->Post([&] { ++outCalls; }, 0); });
    std::atomic<bool> ran{false};
    pool->Post([&] { ran = true; }, 20);
    Row("A pool runs a function after a delay", Await([&] { return ran.load(); }));
}
