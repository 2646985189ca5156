// A client whose static object uses every namespace of the library in its constructor, which runs
// before `main`, and in its destructor, which runs at exit. Nothing may depend on the order of
// static objects: linked with an archive, this file's are constructed before the library's and
// destroyed after them.

#include <brindle/MemoryMappedFile.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/DeferredErrorReporter.h>
#include <brindle/config/ErrorManager.h>
#include <brindle/config/Errors.h>
#include <brindle/config/Localizer.h>
#include <brindle/console/Completion.h>
#include <brindle/console/Console.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/console/Listen.h>
#include <brindle/console/RemoteConsole.h>
#include <brindle/console/Terminal.h>
#include <brindle/debug/Asserts.h>
#include <brindle/debug/Contract.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/SafeTraceStream.h>
#include <brindle/debug/TraceCategory.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CommonDirs.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/geom/Matrix.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/RecursiveMutex.h>
#include <brindle/threads/ScopedLock.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/Calculator.h>
#include <brindle/utility/FileUtils.h>
#include <brindle/utility/Guid.h>
#include <brindle/utility/Locale.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/SmallBlockAllocator.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace brindle {
namespace {

char const* S_moment = "before main";

void Check(bool inHolds, char const* inWhat) {
    if (!inHolds) {
        std::fprintf(stderr, "%s: %s\n", S_moment, inWhat);
        std::_Exit(1);
    }
}

/// Counts what is reported while it is installed.
class CountingErrorManager : public config::ErrorManager {
public:
    CountingErrorManager() { Set(this); }
    ~CountingErrorManager() override { Set(nullptr); }
    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        ++count;
    }
    int count = 0;
};

void UseConfig() {
    CountingErrorManager manager;
    boost::intrusive_ptr<config::DeferredErrorReporter> const reporter =
        new config::DeferredErrorReporter(false);
    config::TestThrowError(false);
    Check(utility::Guid("no guid") == utility::Guid(), "parsing a Guid");
    Check(manager.count == 2, "reporting errors");
    if (S_moment == std::string("before main")) {
        config::SetClientName(u"a name"_utf16);
    }
    Check(config::GetClientName() == u"a name"_utf16, "an identity that was set stays");
}

void UseText() {
    Check(utility::UTF8to16(utility::UTF16to8(u"caf\u00E9"_utf16)) == u"caf\u00E9"_utf16, "UTF-8");
    Check(utility::UpperCase(u"stra\u00DFe"_utf16) == u"STRASSE"_utf16, "case");
    Check(Locale::GetValueFromDisplayString(u"12.5 mm"_utf16) == 12.5, "the user's locale");
    Check(Locale::Default() == std::locale::classic(), "the classic locale");
    Check(utility::StringToNumber(utility::NumberToString(2.5), 0) == 2.5, "numbers");
    Check(utility::Calculate(u"2*(3+4)"_utf16) == 14.0, "the calculator");
    oUTF16StringStream out;
    out << 1.5 << ' ' << utility::Guid::CreateUnique();
    iUTF16StringStream in(out.str());
    double number = 0.0;
    utility::Guid guid;
    in >> number >> guid;
    Check(number == 1.5 && guid != utility::Guid(), "16-bit streams");
    utility::streams::Debug << S_moment << u": text on the debug stream\n" << std::flush;
    utility::streams::UTF16Out << S_moment << std::flush;
    utility::streams::Out << S_moment << std::endl;
}

/// The directory that is to contain the preferences exists.
void UseLog(std::string const& inDirectory) {
    using namespace filesupport;
    ::setenv("XDG_CONFIG_HOME", inDirectory.c_str(), 1);
    Check(!commondirs::PluginsDir().FullPath().empty(), "directories of the application");
    File const file(Dir::PrefDir(), u"a name Log.txt"_utf16);
    file.Create();
    console::ConsoleLogFile::GetInstance()->WriteToLog("text"_utf8, true);
    console::ConsoleLogFile::Terminate();
    Check(file.Size(kFileSize_Data) != 0, "the log");
}

void UseFiles() {
    using namespace filesupport;
    std::string const directory =
        std::filesystem::temp_directory_path() / ("brindle_any_time_" + std::to_string(::getpid()));
    std::filesystem::create_directory(directory);
    File file = FileFromNative(directory + "/list.xml");
    proplist::PropList list;
    list.SetValue("number"_utf8, std::int32_t{7});
    std::unique_ptr<xml::DocParserFactory> factory(new xml::ExpatParserFactory);
    xml::SetParserFactory(factory);
    proplist::utils::SavePropList(file, list);
    proplist::PropList loaded;
    proplist::utils::LoadPropList(file.FullPath(), loaded, false);
    xml::ResetParserFactory();
    std::int32_t number = 0;
    loaded.GetValue("number"_utf8, number);
    Check(number == 7, "property lists and XML");

    IPlatformByteStream source(file);
    IBufferedByteStream buffered(source, 4096, 512);
    OCountingByteStream counter;
    OCRCByteStream sum(counter);
    sum << buffered;
    Check(counter.Count() != 0 && sum.Value() != 0, "byte streams");
    Dir const dir = DirFromNative(directory);
    Check(dir.BeginFiles(false) != dir.EndFiles(), "directories");
    file.Delete();
    UseLog(directory);
    dir.Delete();
    Check(!utility::FileUtils::FileExists(file.FullPath()), "file helpers");
}

void UseThreads() {
    std::atomic<int> sum{0};
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pool", 2, threads::kThreadPriorityNormal);
    for (int i = 1; i <= 10; ++i) {
        pool->Post([&sum, i] { sum += i; }, 0);
    }
    pool->Shutdown();
    pool->Synchronize();
    Check(sum == 55, "executors");
    threads::RecursiveMutex mutex;
    threads::RecursiveMutexLock const lock(mutex, true);
    void* const block = utility::SmallBlockAllocator::Allocate(24);
    utility::SmallBlockAllocator::Dispose(block, 24);
    MemoryMappedFile memory;
    memory.Init("brindle_any_time_" + std::to_string(::getpid()), 4096,
                MemoryMappedFile::kMappedFileCreate);
}

class Leaf : public arrange::Single {
public:
    using Single::Single;

private:
    float BestWidth() const override { return 10; }
    float BestHeight() const override { return 5; }
    geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override {
        return {inRect.width, inRect.height};
    }
};

void UseDiagnostics() {
    std::string const preferences =
        std::filesystem::temp_directory_path() / ("brindle_any_time_" + std::to_string(::getpid()));
    std::filesystem::create_directory(preferences);
    ::setenv("XDG_CONFIG_HOME", preferences.c_str(), 1);
    debug::TraceCategory const category("any time"_utf8);
    Check(category.Enabled(5), "trace categories");
    Check(!debug::TraceEnabled("any time"_utf8, 6, true), "trace volumes");
    BRN_TRACE(category, 5, "text in the log, if there is one");
    ::setenv("DISPLAY", "any", 1);
    debug::SetDialogProgram("/bin/false"); // which does not answer
    Check(!debug::BreakAfterContractDialog("a contract", __FILE__, __LINE__), "contracts");
    debug::DebugDatabase::Instance().SetEntry("assert.enabled"_utf8, "true"_utf8);
    Check(debug::DisplayAssert("an assert", "at any time") == debug::kAssert_Break, "asserts");
    BRN_ASSERT(S_moment != nullptr);
    debug::ShutdownTraceManager();
    console::ConsoleLogFile::Terminate();
    debug::DebugDatabase::Instance().SetEntry("key"_utf8, "value"_utf8);
    Check(debug::DebugDatabase::Instance().HasEntry("key"_utf8), "debug settings");
    console::Initialize();
    UTF16OutputStream nowhere;
    Check(console::ExecuteCommand(u"debug.set key = value"_utf16, nowhere), "commands");
    Check(console::CompleteLine("debug.get k"_utf8, 11).candidates.size() == 1, "completion");
    std::filesystem::permissions(preferences, std::filesystem::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", preferences.c_str(), 1);
    auto const listener = console::Listen(
        u"any time"_utf16,
        threads::CreateAsyncThreadedExecutor("commands", 1, threads::kThreadPriorityNormal));
    console::RemoteConsole remote(console::ListeningPrograms(u"any time"_utf16).at(0));
    Check(remote.ExecuteCommand("debug.list"_utf8).outcome == console::RemoteAnswer::Outcome::kRan,
          "attached consoles");
    console::Terminate();
    Check(!listener.IsListening(), "the end of listening");
    debug::SafeTraceStream stream;
    stream << S_moment << ": text of a trace stream\n";
    std::filesystem::remove_all(preferences);
}

void UseNumbersOfOtherKinds() {
    time::TickTime const second(25, time::kFrameRate_VideoPAL);
    Check(second == time::TickTime(1.0), "time");
    Check(debug::IsValidAddress(&second, false), "debug");
    geom::MatrixT<double> matrix(true);
    Check(matrix.Invert(false), "geometry");
    Leaf leaf;
    Check(leaf.Arrange({0, 0, 10, 5}).x == 10, "layout");
    static_cast<void>(console::OutputIsTerminal());
}

void UseEverything(char const* inMoment) {
    S_moment = inMoment;
    UseConfig();
    UseText();
    UseFiles();
    UseThreads();
    UseDiagnostics();
    UseNumbersOfOtherKinds();
}

struct Client {
    Client() { UseEverything("before main"); }
    ~Client() { UseEverything("at exit"); }
} S_client;

} // namespace
} // namespace brindle

int main() {
    brindle::UseEverything("in main");
}
