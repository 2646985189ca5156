#include "Probe.h"

#include <Poco/DirectoryIterator.h>
#include <Poco/Exception.h>
#include <Poco/FileStream.h>
#include <Poco/HashMap.h>
#include <Poco/JSON/Parser.h>
#include <Poco/Logger.h>
#include <Poco/MemoryPool.h>
#include <Poco/Net/StreamSocket.h>
#include <Poco/NumberFormatter.h>
#include <Poco/NumberParser.h>
#include <Poco/Path.h>
#include <Poco/RegularExpression.h>
#include <Poco/RunnableAdapter.h>
#include <Poco/TextConverter.h>
#include <Poco/ThreadPool.h>
#include <Poco/Timespan.h>
#include <Poco/UTF16Encoding.h>
#include <Poco/UTF8Encoding.h>
#include <Poco/UnicodeConverter.h>

namespace {

struct Flag : Poco::Runnable {
    std::atomic<bool> ran{false};
    void run() override { ran = true; }
};

struct Sleep : Poco::Runnable {
    void run() override { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }
};

} // namespace

bool UseLibrary() {
    try {
        Flag flag;
        Poco::ThreadPool::defaultPool().start(flag);
        Poco::ThreadPool::defaultPool().joinAll();
        Poco::Logger::get("probe").information("said");
        return flag.ran && Poco::NumberFormatter::format(12) == "12" && !Poco::Path::temp().empty();
    } catch (std::exception const&) {
        return false;
    }
}

bool Save(std::string const& inPath, std::string const& inContent) {
    Poco::FileOutputStream file(inPath);
    file << inContent;
    file.close();
    return file.good();
}

bool OpensWhatItLists(std::string const& inDirectory) {
    return Poco::FileInputStream(Poco::DirectoryIterator(inDirectory)->path()).good();
}

void Rows() {
    FileRows();
    Poco::UTF16String text;
    bool isConverted = true;
    try {
        Poco::UnicodeConverter::convert("a\xFFz", text);
    } catch (std::exception const&) {
        isConverted = false;
    }
    Row("Malformed UTF-8 becomes UTF-16 with U+FFFD, and is no failure",
        isConverted && text == Poco::UTF16String{'a', 0xFFFD, 'z'});
    std::string converted;
    int const faults = Poco::TextConverter(Poco::UTF8Encoding(), Poco::UTF16Encoding())
                           .convert("a\xFFz\xFE", converted);
    Row("The malformed parts are counted", faults == 2);
    double number = 0;
    Row("Numbers by the separators of the user's locale",
        std::string(Poco::NumberParser::tryParseFloat("1.234,5", number) ? "yes"
                    : Poco::NumberParser::tryParseFloat("1.234,5", number, ',', '.')
                        ? "given as arguments"
                        : "no"));
    Row("Regular expressions", Poco::RegularExpression("^a+$").match("aaa"));
    Poco::Timespan const frame(Poco::Timespan(1001, 0).totalMicroseconds() / 30000);
    Row("A duration holds a frame of 30000/1001 exactly",
        frame.totalMicroseconds() * 30000 == 1001 * Poco::Timespan::SECONDS);

    auto const list = Poco::JSON::Parser()
                          .parse(R"({"a": {"n": 9007199254740993}})")
                          .extract<Poco::JSON::Object::Ptr>();
    bool const isSame = list->getObject("a")->getValue<Poco::Int64>("n") == 9007199254740993;
    Row("Nested typed values as a text, 64-bit integers exact", isSame);
    Row("JSON", isSame);
    Poco::HashMap<std::string, int> map;
    map["two"] = 2;
    Row("Hash maps of its own", map["two"] == 2);
    Row("TCP sockets", Poco::Net::StreamSocket(Poco::Net::SocketAddress::IPv4).impl() != nullptr);
    Poco::MemoryPool blocks(32);
    void* const block = blocks.get();
    Row("A small-block allocator", block != nullptr);
    blocks.release(block);

    Poco::ThreadPool pool(1, 1);
    Sleep sleep;
    bool isQueued = true;
    try {
        pool.start(sleep);
        pool.start(sleep);
    } catch (Poco::NoThreadAvailableException const&) {
        isQueued = false;
    }
    pool.joinAll();
    Row("A pool of one thread takes many functions", isQueued);
    Row("What a pool has not begun can be cancelled", isQueued); // nothing waits in a pool
    static Flag flag;
    ForkRow([&](std::atomic<bool>& outRan) {
        pool.start(flag);
        outRan = Await([] { return flag.ran.load(); });
        return true;
    });
}
