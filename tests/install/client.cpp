// A client with nothing but the public headers and the library. With the one that uses everything
// at any time it uses every public class, so that one that the library does not export is missed at
// link time, and looks at what only works if both share it: facets and exceptions.

#include <brindle/Impl.h>
#include <brindle/Version.h>
#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/ExplainLayout.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/LayoutTree.h>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/CollectingErrorManager.h>
#include <brindle/config/ErrorCollector.h>
#include <brindle/config/Localizer.h>
#include <brindle/config/PrintingErrorManager.h>
#include <brindle/config/ReplacementValue.h>
#include <brindle/config/Report.h>
#include <brindle/console/Command.h>
#include <brindle/debug/StreamBuffers.h>
#include <brindle/debug/Trace.h>
#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/DequeByteStream.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/LimitedByteStream.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PathStreams.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/RLEByteStream.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/filesupport/SafeSaveStream.h>
#include <brindle/filesupport/StdByteStream.h>
#include <brindle/filesupport/StringByteStream.h>
#include <brindle/geom/GeometryStreams.h>
#include <brindle/geom/Transform.h>
#include <brindle/proplist/PropListXMLHandler.h>
#include <brindle/proplist/TableLocalizer.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoopWakeUp.h>
#include <brindle/threads/ForEach.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/SyncPoint.h>
#include <brindle/threads/TaskGroup.h>
#include <brindle/threads/ThreadGroup.h>
#include <brindle/time/TimeStreams.h>
#include <brindle/time/Timecode.h>
#include <brindle/utility/Locale.h>
#include <brindle/utility/SmallBlockAllocator.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>
#include <brindle/xml/ExpatParser.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <typeinfo>
#include <unistd.h>

namespace {

using namespace brindle;

int S_status = 0;

void Check(bool inHolds, char const* inWhat) {
    if (!inHolds) {
        std::fprintf(stderr, "%s\n", inWhat);
        S_status = 1;
    }
}

class CollectingBuffer : public debug::UTF16StreamBufferImpl<std::uint16_t> {
public:
    ~CollectingBuffer() override { FlushAtEnd(); }
    UTF16String text;

private:
    void Emit(std::uint16_t const* inText) override { text += inText; }
};

/// Facets must be found whatever visibility and optimisation the client is compiled with.
void UseTextStreams() {
    oUTF16StringStream out;
    out << std::hex << std::showbase << std::setw(6) << 255 << 'x' << " y";
    Check(out.str() == u"  0xffx y"_utf16, "16-bit insertion");
    iUTF8StringStream in("12.5 word"_utf8);
    double number = 0;
    UTF8String word;
    in >> number >> word;
    Check(number == 12.5, "extraction of a number from bytes");
    Check(word == "word"_utf8, "extraction of a word from bytes");

    std::locale const locale = utility::WithTextFacets(Locale::Default());
    Check(std::has_facet<std::ctype<std::uint16_t>>(locale), "ctype of 16-bit units");
    Check(!std::has_facet<std::num_put<std::uint8_t>>(std::locale()), "the global locale is clean");
    std::basic_ostringstream<std::uint8_t> plain;
    plain.imbue(locale);
    plain << 1.5 << 'c';
    Check(plain.str() == "1.5c"_utf8, "a standard stream class");

    CollectingBuffer buffer;
    auto* const before = utility::SetStreamBuffer(utility::streams::UTF16Out, &buffer);
    utility::streams::UTF16Out << utility::UpperCase(u"stra\u00DFe"_utf16) << 7 << std::flush;
    Check(buffer.text == u"STRASSE7"_utf16, "a client's buffer under a global stream");
    utility::SetStreamBuffer(utility::streams::UTF16Out, before);
    UTF16OutputStream(&buffer) << 1;
    oUTF8StringStream() << 1;
    iUTF16StringStream{u"1"_utf16} >> number;
}

void UseFiles() {
    using namespace filesupport;
    char name[] = "/tmp/brindle-client-XXXXXX";
    Check(::mkdtemp(name) != nullptr, "a directory");
    Dir const dir = DirFromNative(name);
    File file(dir, u"file"_utf16);
    SafeSave(file).GetTempFile();
    Check(dir.BeginFiles(false) == dir.EndFiles(), "a listing");
    Check(dir.BeginSubdirs(false) == dir.EndSubdirs(), "a listing of directories");
    Check(RecursiveFileIterator(dir, false) == RecursiveFileIterator(), "a walk");
    Check(DirHelper(dir.FullPath()).Path() == dir.FullPath(), "a directory's path");
    Check(FileHelper(file.FullPath()).Path() == file.FullPath(), "a file's path");
    UTF16String path = file.FullPath();
    bool isDir = true;
    Check(filesupport::FileUtils::ResolveIT(path, isDir) != 0, "a file that is no shortcut");
    dir.Delete();
    try {
        IPlatformByteStream{file};
        Check(false, "a stream of a file that is not there");
    } catch (file_exception const& error) {
        Check(typeid(error) == typeid(file_not_found_exception), "the type of an exception");
    }
}

/// An exception of a function of the client passes the library.
void UseThreads() {
    using namespace threads;
    auto const pool = CreateAsyncThreadedExecutor("pool", 2, kThreadPriorityNormal);
    TaskGroup group(pool);
    group.Run([] { throw cancelled_exception(); });
    try {
        group.Wait();
        Check(false, "a group");
    } catch (cancelled_exception const&) {
    }
    std::atomic<int> count{0};
    ForEach(pool, 100, [&](std::size_t) { ++count; });
    Check(count == 100, "a parallel loop");
    Progress<int>(pool, [](int) {}).Set(1);
    bool isWoken = false;
    EventLoopWakeUp([&] { isWoken = true; });
    Check(isWoken, "a wake-up");
}

template <typename Group>
class Empty : public Group {
public:
    bool VisitChildren(boost::function<bool(arrange::IArrangeable const&)>) const override {
        return true;
    }
    bool VisitChildren(boost::function<bool(arrange::IArrangeable&)>) override { return true; }
};

template <typename... Groups>
void UseEachGroup() {
    (Empty<Groups>().BestSize(), ...);
}

void UseGroups() {
    using namespace arrange;
    UseEachGroup<Row, Column, Flipping, HorizontalWrapping, VerticalWrapping, AutoLayout,
                 DynamicGroup>();
    Box<AutoLayout> box;
    box.Emplace<FunctionLeaf>(LeafSizes{10, 20});
    box.Emplace<Spacer>(1.0F, 0.0F);
    Check(!ExplainLayout(box, {30, 30}).empty(), "a box");
    Check(LayoutTree({}).LeafNames().empty(), "a described tree");
}

void UseValues() {
    Check(config::GetVersionString() == utility::AsciiToUTF16(BRINDLE_VERSION "." BRINDLE_BUILD),
          "headers and library have one version");
    auto const film =
        time::TimecodeFormat::Create(time::kFrameRate_Film24, time::FrameCounting::kNonDrop);
    Check(film->ToText(time::TickTime(1.0)) == "00:00:01:00", "timecode");
    Check(geom::MatrixT<float>(true).Invert(false), "a matrix of float");
    auto const moved =
        geom::PointT<double>{1, 2} * (geom::Rotation(0.0) * geom::Translation(3.0, 4.0));
    Check(moved == geom::PointT<double>{4, 6}, "a point that is transformed");
    std::ostringstream inserted;
    inserted << moved << time::kFrameRate_VideoPAL << filesupport::File();
    Check(inserted.str() == "(4, 6)25", "values in a stream");
    utility::SmallBlockAllocator::Metrics::Snapshot snapshot;
    static_cast<void>(utility::SmallBlockAllocator::Metrics::GetSnapshot(snapshot));
}

void UseErrors() {
    config::PrintingErrorManager printing("client");
    config::CollectingErrorManager errors(printing);
    config::ErrorManager::Set(&errors);
    proplist::PropList table;
    table.Set("client/Seen", "^1 sah man.");
    proplist::TableLocalizer german;
    german.AddTable((*table.begin()).Key() == "client/Seen" ? "de" : "", table);
    german.SetLanguages({"de"});
    config::Localizer::Set(&german);
    config::ErrorCollector collector;
    config::Report("$$$/client/Seen=^1 was seen.", "Es");
    Check(collector.Errors().at(0).Sentence() == u"Es sah man.", "a collected error");
    config::Localizer::Set(nullptr);
    config::ErrorManager::Set(nullptr);
    try {
        config::Report("$$$/client/Seen=^1 was seen.", "Es");
    } catch (config::no_error_manager const&) {
        return;
    }
    Check(false, "nobody reports");
}

template <typename... Types>
void UseTypeInformation() {
    static std::type_info const* const types[] = {&typeid(Types)...};
    for (std::type_info const* const type : types) {
        Check(*type != typeid(void), "type information");
    }
}

/// The other classes: that the linker finds them is enough.
void UseOtherClasses() {
    using namespace filesupport;
    UseTypeInformation<
        arrange::impl::RowArrangement, arrange::impl::ColumnArrangement, arrange::layout_error,
        Impl, arrange::impl::AbstractArrangeableGroup, arrange::impl::ArrangementSet,
        arrange::impl::GroupArrangement, arrange::impl::IArrangement, config::FileFailure,
        config::Localizer, config::PluralLocalizer, config::ReplacementValue, console::Command,
        debug::TraceHandler, IBufferByteStream, IByteStream, IContainerByteStream<std::string>,
        IDequeByteStream, IRLEByteStream, IStdByteStream, IStringByteStream, OBufferByteStream,
        OBufferedByteStream, ICRCByteStream, ILimitedByteStream, OContainerByteStream<std::string>,
        ODequeByteStream, OPlatformByteStream, ORLEByteStream, OSafeSaveStream, OStdByteStream,
        OStringByteStream, byte_stream_exception, create_accessdenied_exception, create_exception,
        create_fnf_exception, create_invalidpath_exception, create_locked_exception,
        dir_delete_exception, dir_exception, dir_not_found_exception, eof_error,
        file_delete_exception, io_error, rename_dir, rename_dir_already_exists, rename_file,
        proplist::PropListXMLHandler, threads::AsyncEventLoopAdaptor,
        threads::AsyncEventLoopExecutor, threads::AsyncExecutor, threads::AsyncThreadedExecutor,
        threads::SyncPoint, threads::TaskGroup, threads::cancelled_exception,
        threads::task_refused_exception, threads::impl::Completion, threads::impl::LoopCall,
        threads::impl::Task, threads::Barrier, threads::Thread, threads::ThreadGroup,
        xml::AbstractDocParser, xml::AbstractParseHandler, xml::ExpatParser>();
}

} // namespace

int main() {
    UseTextStreams();
    UseFiles();
    UseThreads();
    UseGroups();
    UseValues();
    UseErrors();
    UseOtherClasses();
    return S_status;
}
