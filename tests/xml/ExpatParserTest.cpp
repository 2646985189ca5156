#include <brindle/utility/Unicode.h>
#include <brindle/xml/ExpatParser.h>

#include "tests/AllocationFailure.h"
#include "tests/InTemporaryDirectory.h"
#include "xml/src/ExpatParse.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/stat.h>

namespace brindle::xml {

namespace {

/// Writes down what it hears; at one event of all, it throws that event's number.
class Recorder : public AbstractParseHandler {
public:
    explicit Recorder(std::string& outLog, int inThrowAt = -1) : mLog(outLog), mLeft(inThrowAt) {}

    void StartDocument() override { Hear("{"); }
    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const& inAttributes) override {
        std::string line = "<" + Narrow(inName);
        for (auto const& attribute : inAttributes) {
            line += " " + Narrow(attribute.first) + "=" + Narrow(attribute.second);
        }
        Hear(line + ">");
    }
    void EndElement(UTF16String const& inName) override { Hear("</" + Narrow(inName) + ">"); }
    void Characters(UTF16String const& inText) override { Hear(Narrow(inText)); }
    void EndDocument() override { Hear("}"); }

private:
    static std::string Narrow(UTF16String const& inText) {
        UTF8String const bytes = utility::UTF16to8(inText);
        return {bytes.begin(), bytes.end()};
    }
    void Hear(std::string const& inEvent) {
        if (mLeft-- == 0) {
            throw mLog.size();
        }
        mLog += inEvent;
    }

    std::string& mLog;
    int mLeft;
};

UTF8String Bytes(std::string const& inText) {
    return {inText.begin(), inText.end()};
}

/// What a recorder hears of the document, and the status behind it.
std::string Heard(std::string const& inDocument) {
    std::string log;
    std::unique_ptr<AbstractParseHandler> handler = std::make_unique<Recorder>(log);
    auto const status = ExpatParseHandler(handler).ParseBuffer(Bytes(inDocument));
    return log + std::to_string(status);
}

/// Memory for Expat that is counted, and refused from one allocation on.
struct CountedMemory {
    static void* Allocate(std::size_t inSize) { return Reallocate(nullptr, inSize); }
    static void* Reallocate(void* ioBlock, std::size_t inSize) {
        if (S_granted == 0) {
            return nullptr;
        }
        --S_granted;
        S_blocks += ioBlock == nullptr;
        return std::realloc(ioBlock, inSize);
    }
    static void Release(void* ioBlock) {
        S_blocks -= ioBlock != nullptr;
        std::free(ioBlock);
    }

    inline static int S_granted = 0;
    inline static int S_blocks = 0;
    static constexpr XML_Memory_Handling_Suite kSuite = {Allocate, Reallocate, Release};
};

std::string const kDocument =
    "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e '<i>\xE2\x82\xAC</i>'>]>"
    "<r a='1' b='long enough for the heap'>x&e;\n<s c='&lt;'/></r>";

class ExpatParser : public tests::InTemporaryDirectory {
protected:
    std::string HeardOfFile(std::string const& inName) const {
        std::string log;
        std::unique_ptr<AbstractParseHandler> handler = std::make_unique<Recorder>(log);
        auto const status = ExpatParseHandler(handler).ParseDocument(At(inName));
        return log + std::to_string(status);
    }
};

TEST_F(ExpatParser, SendsTheEventsOfADocumentAndReadsNothingElse) {
    Fill("secret", "secret");
    std::string const secret = "SYSTEM 'file://" + Native("secret") + "'>";
    std::string const documents[][2] = {
        {kDocument, "{<r a=1 b=long enough for the heap>x<i>\xE2\x82\xAC</i>\n<s c=<></s></r>}0"},
        {"<p:r xmlns:p='u:v' xmlns='w' xmlns:q='q'><s p:z='1' a='2' q:z='3'/><q:s/></p:r>",
         "{<r><s a=2 z=3></s><s></s></r>}0"},
        {"<r> <!-- c --><?p i?><![CDATA[<&]]>&#65;</r>", "{<r> <&A</r>}0"},
        {"<!DOCTYPE r [<!ENTITY e " + secret + "]><r>&e;</r>", "{<r></r>}0"},
        {"<!DOCTYPE r [<!ENTITY % e " + secret + "%e;]><r>&f;</r>", "{<r></r>}0"},
        {"<!DOCTYPE r " + secret + "<r/>", "{<r></r>}0"},
        {"", "{10"},
        {"<r/><r/>", "{<r></r>10"},
        {"<p:r/>", "{10"},
        {"<r a='1' a='2'/>", "{10"},
        {"<r>\xFF</r>", "{<r>10"},
        {"<?xml version='1.0' encoding='no such'?><r/>", "{10"}};
    for (auto const& [document, events] : documents) {
        EXPECT_EQ(Heard(document), events) << document;
    }
}

TEST_F(ExpatParser, TellsTheEncodingFromTheBytesOfFilesAndBuffers) {
    std::string const narrow = "<r \xC3\xA9='\xC3\xBC'>\xC3\x9F</r>";
    std::string documents[] = {narrow, "\xEF\xBB\xBF" + narrow, "\xFF\xFE", "\xFE\xFF",
                               "<?xml version='1.0' encoding='iso-8859-1'?>"};
    for (auto const unit : utility::UTF8to16(Bytes(narrow))) {
        auto const low = static_cast<char>(unit);
        documents[2].append({low, '\0'});
        documents[3].append({'\0', low});
        documents[4] += low;
    }
    for (auto const& document : documents) {
        Fill("file", document);
        EXPECT_EQ(Heard(document), "{<r \xC3\xA9=\xC3\xBC>\xC3\x9F</r>}0");
        EXPECT_EQ(HeardOfFile("file"), Heard(document));
    }
}

TEST_F(ExpatParser, FailsAtEveryCutAndWhereNoFileCanBeRead) {
    std::string const whole = Heard(kDocument);
    for (std::size_t length = 0; length < kDocument.size(); ++length) {
        std::string const cut = Heard(kDocument.substr(0, length));
        EXPECT_EQ(cut, whole.substr(0, cut.size() - 2) + "10");
    }
    ASSERT_EQ(::mkfifo(Native("fifo").c_str(), 0600), 0);
    for (auto const* name : {"", "none", "fifo", "none/none"}) {
        EXPECT_EQ(HeardOfFile(name), "10") << name;
    }
    // The first page of a process cannot be read.
    std::filesystem::create_symlink("/proc/self/mem", Native("mem"));
    EXPECT_EQ(HeardOfFile("mem"), "{10");
}

TEST_F(ExpatParser, LetsAnExceptionOfAnyEventOutWithNothingLeftBehind) {
    int events = 0;
    for (bool isDone = false; !isDone; ++events) {
        CountedMemory::S_granted = 1'000'000;
        std::string log;
        Recorder recorder(log, events);
        try {
            auto const status =
                impl::ExpatParse(recorder, &CountedMemory::kSuite).Document(Bytes(kDocument));
            EXPECT_EQ(status, 0);
            isDone = true;
        } catch (std::size_t length) {
            EXPECT_EQ(log.size(), length);
        }
        EXPECT_EQ(CountedMemory::S_blocks, 0);
    }
    EXPECT_EQ(events, 12); // eleven, and a run without one
}

TEST_F(ExpatParser, SurvivesEveryRefusedAllocation) {
    std::string log;
    Recorder recorder(log);
    int granted = 0;
    for (int status = 10; status == 10; ++granted) {
        CountedMemory::S_granted = granted;
        status = impl::ExpatParse(recorder, &CountedMemory::kSuite).Document(Bytes(kDocument));
        EXPECT_EQ(CountedMemory::S_blocks, 0);
    }
    EXPECT_GT(granted, 20);

    std::unique_ptr<AbstractParseHandler> handler = std::make_unique<AbstractParseHandler>();
    ExpatParseHandler parser(handler);
    UTF8String const bytes = Bytes(kDocument);
    auto const parse = [&] { ASSERT_EQ(parser.ParseBuffer(bytes), 0); };
    EXPECT_GT(tests::RefuseEachAllocation(parse, [] {}), 3);
}

TEST_F(ExpatParser, TakesWhatIsHugeOrDeepAndRefusesWhatExplodes) {
    constexpr int kDepth = 1'000'000;
    std::string deep, ends, chain = "<!DOCTYPE r [<!ENTITY e0 'x'>", bomb = chain;
    for (int i = 1; i <= kDepth; ++i) {
        deep += "<r>";
        ends += "</r>";
    }
    EXPECT_EQ(Heard(deep + ends), "{" + deep + ends + "}0");
    for (int i = 1; i < 100'000; ++i) {
        std::string const name = "<!ENTITY e" + std::to_string(i) + " '";
        std::string const last = "&e" + std::to_string(i - 1) + ";";
        chain += name + last + "'>";
        bomb += i < 40 ? name + last + last + "'>" : "";
    }
    EXPECT_EQ(Heard(chain + "]><r a='&e99999;'>&e99999;</r>"), "{<r a=x>x</r>}0");
    std::string const exploded = Heard(bomb + "]><r a='&e39;'/>");
    EXPECT_EQ(exploded, "{10");

    std::string text;
    for (int i = 0; i < 2'000'000; ++i) {
        text += "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    }
    Fill("huge", "<r a='" + text + "'>" + text + "<s/>" + text + "</r>");
    EXPECT_TRUE(HeardOfFile("huge") == "{<r a=" + text + ">" + text + "<s></s>" + text + "</r>}0");
}

} // namespace

} // namespace brindle::xml
