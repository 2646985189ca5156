#include "Probe.h"

#include <Poco/DirectoryIterator.h>
#include <Poco/FileStream.h>
#include <Poco/NumberFormatter.h>
#include <Poco/NumberParser.h>
#include <Poco/Path.h>
#include <Poco/TextConverter.h>
#include <Poco/ThreadPool.h>
#include <Poco/Timespan.h>
#include <Poco/UTF16Encoding.h>
#include <Poco/UTF8Encoding.h>
#include <Poco/UTFString.h>
#include <Poco/UnicodeConverter.h>
#include <deque>

namespace {

struct Work : Poco::Runnable {
    explicit Work(std::atomic<int>& outCalls) : calls(outCalls) {}
    void run() override {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ++calls;
    }
    std::atomic<int>& calls;
};

} // namespace

bool UseLibrary() {
    std::atomic<int> calls{0};
    Work work(calls);
    Poco::ThreadPool::defaultPool().start(work);
    Poco::ThreadPool::defaultPool().joinAll();
    return calls == 1 && Poco::NumberFormatter::format(12) == "12" && !Poco::Path::temp().empty();
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
    Poco::UnicodeConverter::convert("a\xFFz", text);
    Row("Malformed UTF-8 converts to UTF-16, with U+FFFD in its place",
        text == Poco::UTF16String{'a', 0xFFFD, 'z'});
    std::string converted;
    Poco::TextConverter converter{Poco::UTF8Encoding(), Poco::UTF16Encoding()};
    Row("The malformed places are counted", converter.convert("a\xFFz\xFE", converted) == 2);
    double number = 0;
    bool const isUsers = Poco::NumberParser::tryParseFloat("1.234,5", number) && number == 1234.5;
    Poco::NumberParser::tryParseFloat("1.234,5", number, ',', '.');
    Row("Numbers with the separators of the user's locale", isUsers            ? "yes"
                                                            : number == 1234.5 ? "of given ones"
                                                                               : "no");
    Poco::Timespan const frame(1001 * Poco::Timespan::SECONDS / 30000);
    Row("A duration holds a frame of 30000/1001 exactly",
        frame.totalMicroseconds() * 30000 == 1001 * Poco::Timespan::SECONDS);

    Poco::ThreadPool pool(1, 1);
    std::deque<Work> works;
    PoolRows([&](std::atomic<int>& outCalls) {
        pool.start(works.emplace_back(outCalls));
        return true;
    });
}
