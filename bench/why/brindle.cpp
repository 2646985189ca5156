#include "Probe.h"

#include <brindle/arrange/Box.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/threads/TaskGroup.h>
#include <brindle/time/Timecode.h>
#include <brindle/utility/Calculator.h>
#include <brindle/utility/DecodeText.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/ParseNumbers.h>
#include <brindle/utility/SmallBlockAllocator.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/TextConversions.h>
#include <brindle/utility/TextOperations.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>
#include <poll.h>

using namespace brindle;

bool UseLibrary() {
    std::atomic<bool> ran{false};
    auto const pool =
        threads::CreateAsyncThreadedExecutor("static", 1, threads::kThreadPriorityNormal);
    threads::TaskGroup group(pool);
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
    Row("Malformed UTF-8 becomes UTF-16 with U+FFFD, and is no failure",
        utility::Utf16("a\xFFz") == u"a\uFFFDz");
    utility::TextReport report;
    bool const isDecoded = utility::DecodeText("a\xFFz\xFE", 4, &report) == u"a\uFFFDz\uFFFD";
    Row("The malformed parts are counted", isDecoded && report.replacedCount == 2);
    Row("Names sorted by the numbers in them",
        utility::NaturalLess()(u"clip 9"_utf16, u"clip 10"_utf16));
    Row("Numbers by the separators of the user's locale",
        utility::NumberToString(1234.5, 1, 2, utility::kNumberFormat_Group) == u"1.234,50" &&
            utility::ParseNumber(u"1.234,5"_utf16, utility::NumberForm::kUser) == 1234.5);
    Row("A calculator for numeric fields", utility::TryCalculate(u"(1080+200)/2"_utf16) == 640.0);
    Row("Plurals in translated texts",
        config::Text("$$$/why/Files=^1{one=one file|other=^1 files}", {2}) == u"2 files");
    time::TickTime const frame(1, time::kFrameRate_VideoNTSC);
    Row("A duration holds a frame of 30000/1001 exactly", frame * 30000 == time::TickTime(1001.0));
    auto const drop =
        time::TimecodeFormat::Create(time::kFrameRate_VideoNTSC, time::FrameCounting::kDropFrame);
    Row("SMPTE timecode, drop-frame included", drop->ToText(frame * 17982) == "00:10:00;00");

    std::unique_ptr<xml::DocParserFactory> factory = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(factory);
    proplist::PropList list, again;
    list.NewSubList("a")->Set("n", std::int64_t{9007199254740993});
    UTF8String document;
    proplist::utils::WritePropList(document, list);
    bool const isRead =
        proplist::utils::TryReadPropList(document, again).status == proplist::kPropListLoad_Done;
    Row("Nested typed values as a text, 64-bit integers exact", isRead && again == list);

    auto const pool =
        threads::CreateAsyncThreadedExecutor("pool", 1, threads::kThreadPriorityNormal);
    std::atomic<int> count{0};
    std::atomic<bool> ran{false};
    threads::TaskGroup group(pool);
    for (int work = 0; work < 100; ++work) {
        group.Run([&] { ++count; });
    }
    group.Wait();
    Row("A pool of one thread takes many functions", count == 100);
    Row("A pool runs a function after a delay",
        pool->Post([&] { ran = true; }, 20) && Await([&] { return ran.load(); }));
    for (int work = 0; work < 100; ++work) {
        group.Run([&] { ++count, std::this_thread::sleep_for(std::chrono::milliseconds(50)); });
    }
    group.Cancel();
    group.Wait();
    Row("What a pool has not begun can be cancelled", count < 200);
    ForkRow([&](std::atomic<bool>& outRan) { return pool->Post([&] { outRan = true; }, 0); });

    bool isTurned = false;
    threads::AdaptCurrentEventLoopAsExecutor()->Post([&] { isTurned = true; }, 0);
    pollfd watched{threads::EventLoopDescriptor(), POLLIN, 0};
    if (poll(&watched, 1, 2000) == 1) {
        threads::DispatchMessages();
    }
    Row("Its queue can be turned by a foreign loop that polls", isTurned);
    void* const block = utility::SmallBlockAllocator::Allocate(32);
    Row("A small-block allocator", block != nullptr);
    utility::SmallBlockAllocator::Dispose(block, 32);

    float left = -1;
    arrange::FunctionLeaf name({20, 10});
    arrange::FunctionLeaf field({arrange::Growing(30), 10},
                                [&](auto const& inRect) { left = inRect.x; });
    arrange::Box<arrange::Row> row({&name, &field}, 5);
    row.Arrange({0, 0, 100, 10});
    Row("A layout engine", left == 25);
}
