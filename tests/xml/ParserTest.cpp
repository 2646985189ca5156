#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/ScopedParserFactory.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/InTemporaryDirectory.h"
#include "xml/src/ExpatParse.h"

#include <pthread.h>

namespace brindle::xml {

namespace {

using Handler = std::unique_ptr<AbstractParseHandler>;

/// Writes the events into a log, and a tilde when it is destroyed. Throws an `int` at the event of
/// the given number, if there is one.
struct Recorder : AbstractParseHandler {
    explicit Recorder(UTF16String& ioLog, int inThrowAt = -1) : mLog(ioLog), mLeft(inThrowAt) {}
    ~Recorder() override { mLog += '~'; }
    void StartDocument() override { Record(u"{"_utf16); }
    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const& inAttributes) override {
        UTF16String event = u"<"_utf16 + inName;
        for (auto const& [name, value] : inAttributes) {
            event += u" "_utf16 + name + u"="_utf16 + value;
        }
        Record(event + u">"_utf16);
    }
    void EndElement(UTF16String const& inName) override {
        Record(u"</"_utf16 + inName + u">"_utf16);
    }
    void Characters(UTF16String const& inText) override { Record(inText); }
    void EndDocument() override { Record(u"}"_utf16); }
    void Record(UTF16String const& inEvent) {
        if (mLeft-- == 0) {
            throw mLeft;
        }
        mLog += inEvent;
    }

    UTF16String& mLog;
    int mLeft; ///< the events before the one that throws; -1 after it
};

class Parser : public tests::InTemporaryDirectory {
protected:
    /// The events and the status of a document, which have to be the same from a file and from
    /// memory.
    std::string Events(std::string const& inDocument) const {
        Fill("document", inDocument);
        UTF16String ofFile, ofBuffer;
        Handler handler = std::make_unique<Recorder>(ofFile);
        ExpatParser file(handler);
        ExpatParser buffer(handler = std::make_unique<Recorder>(ofBuffer));
        int const status = file.ParseDocument(At("document"));
        EXPECT_EQ(buffer.ParseBuffer({inDocument.begin(), inDocument.end()}), status);
        EXPECT_TRUE(ofFile == ofBuffer) << "the events differ";
        return platform::ToCodePage(ofFile) + std::to_string(status);
    }
};

std::string const kDocument = "<!DOCTYPE r [<!ENTITY e '<i>\xE2\x82\xAC</i>'><!ENTITY f '&e;'>]>"
                              "<r a='1' b='on the heap'>x&f;\n<s c='&lt;'/></r>";

TEST_F(Parser, SendsTheEventsOfADocumentAndReadsNothingElse) {
    Fill("secret", "secret");
    std::string const secret = "SYSTEM 'file://" + Native("secret") + "'";
    std::string const whole = "{<r a=1 b=on the heap>x<i>\xE2\x82\xAC</i>\n<s c=<></s></r>}0";
    std::string const documents[][2] = {
        {kDocument, whole},
        {"<p:r xmlns:p='u:v' xmlns='w' xmlns:q='q'><s p:z='1' a='2' q:z='3'/><q:s/></p:r>",
         "{<r><s a=2 z=3></s><s></s></r>}0"},
        {"<r> <!-- c --><?p i?><![CDATA[<&]]>&#65;</r>", "{<r> <&A</r>}0"},
        {{"\xFE\xFF\0<\0r\0>\x20\xAC\0<\0/\0r\0>", 18}, "{<r>\xE2\x82\xAC</r>}0"},
        {"<!DOCTYPE r " + secret + " [<!ENTITY e " + secret + "><!ENTITY % p " + secret +
             ">%p;]><r>&e;&f;</r>",
         "{<r></r>}0"},
        {"<r><p:r/></r>", "{<r>10"}};
    for (auto const& [document, events] : documents) {
        EXPECT_EQ(Events(document), events) << document;
    }
    for (std::size_t length = 0; length < kDocument.size(); ++length) {
        std::string const cut = Events(kDocument.substr(0, length));
        EXPECT_EQ(cut, whole.substr(0, cut.size() - 2) + "10");
    }
}

TEST_F(Parser, EndsCleanlyWhereverAHandlerThrowsOrMemoryRunsOut) {
    UTF8String const document(kDocument.begin(), kDocument.end());
    for (int event = 0; event < 11; ++event) {
        UTF16String log;
        Recorder recorder(log, event);
        EXPECT_THROW((void)impl::ExpatParse(recorder).Document(document), int);
        EXPECT_EQ(recorder.mLeft, -1) << "an event was sent after the one that threw";
    }
    AbstractParseHandler handler;
    auto const parse = [&] {
        impl::ExpatParse expatParse(handler);
        if (expatParse.Document(document) != kXMLParseStatus_Success) {
            EXPECT_EQ(expatParse.Fault().kind, kXMLParseFault_Unreadable);
            EXPECT_EQ(expatParse.Fault().error, platform::kError_NotEnoughMemory);
            throw std::bad_alloc(); // what Expat allocates counts with what the library does
        }
    };
    EXPECT_GT(tests::RefuseEachAllocation(parse, [] {}), 30);
}

std::string Entity(std::string const& inName, std::string const& inText) {
    return "<!ENTITY " + inName + " '" + inText + "'>";
}

TEST_F(Parser, TakesWhatIsHugeOrDeepAndRefusesWhatExplodes) {
    std::string deep, ends, text, bomb = "<!DOCTYPE r [" + Entity("e0", "x");
    for (int i = 1; i < 1'000'000; ++i) {
        deep += "<r>";
        ends += "</r>";
        text += "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    }
    for (int i = 1; i < 40; ++i) {
        auto const inner = "&e" + std::to_string(i - 1) + ";";
        bomb += Entity("e" + std::to_string(i), inner + inner);
    }
    EXPECT_TRUE(Events(deep + ends) == "{" + deep + ends + "}0");
    EXPECT_EQ(Events(bomb + "]><r a='&e39;'/>"), "{10");
    EXPECT_TRUE(Events("<r a='" + text + "'>" + text + "</r>") ==
                "{<r a=" + text + ">" + text + "</r>}0");
}

TEST_F(Parser, RefusesWhatWouldCostFarMoreThanItsSize) {
    constexpr int kMany = 20'000;
    std::string attributes, declarations, elements, prefixed;
    for (int i = 0; i < kMany; ++i) {
        auto const name = "a" + std::to_string(i);
        attributes += " p:" + name + "=''";
        declarations += i < 9'000 ? " " + name + " CDATA 'default'" : "";
        elements += "<a/>";
    }
    std::string const space(1024, 'u'), list = "<!DOCTYPE r [<!ATTLIST a", body = "]><r>";
    struct {
        std::string document;
        char const* reason;
    } const cases[] = {{"<r xmlns:p='" + space + "'" + attributes + "/>", ""},
                       {"<r xmlns:p='" + space + "u'/>", "the name of a namespace is too long"},
                       {"<r xmlns:p='" + std::string(100'000, 'u') + "'" + attributes + "/>",
                        "needs too much memory"},
                       {list + declarations + ">" + body + "<a/></r>", ""},
                       {list + declarations + ">" + body + elements + "</r>",
                        "declared attributes amount to too much"},
                       {list + declarations + "><!ATTLIST b" + declarations + ">" + body + "</r>",
                        "too many attributes are declared"}};
    Handler none;
    ExpatParser parser(none);
    for (auto const& [document, reason] : cases) {
        EXPECT_EQ(parser.ParseBuffer({document.begin(), document.end()}), *reason != 0 ? 10 : 0);
        EXPECT_STREQ(parser.LastFault().reason, reason);
    }
}

TEST_F(Parser, SaysWhyAndWhereItFailed) {
    Handler none;
    ExpatParser parser(none);
    EXPECT_EQ(parser.LastFault().kind, kXMLParseFault_Unknown);
    EXPECT_EQ(parser.ParseBuffer("<a>\n\n <\u00E9></e></a>"_utf8), 10);
    EXPECT_EQ(parser.LastFault().kind, kXMLParseFault_Malformed);
    EXPECT_STREQ(parser.LastFault().reason, "mismatched tag");
    EXPECT_EQ(parser.LastFault().line, 3);
    EXPECT_EQ(parser.LastFault().column, 7);
    EXPECT_EQ(parser.ParseBuffer("<a/>"_utf8), 0);
    EXPECT_EQ(parser.LastFault().kind, kXMLParseFault_None);
    EXPECT_EQ(parser.ParseDocument(At("missing")), 10);
    EXPECT_EQ(parser.LastFault().kind, kXMLParseFault_Unreadable);
    EXPECT_EQ(parser.LastFault().error, platform::kError_FileNotFound);
}

/// Declares the entities e1 to e`inCount`, each of which names the one before; e1 first or last.
std::string EntityChain(int inCount, bool inIsReversed = false) {
    std::string declarations = Entity("e1", "x");
    for (int i = 2; i <= inCount; ++i) {
        auto const one = Entity("e" + std::to_string(i), "&e" + std::to_string(i - 1) + ";");
        declarations.insert(inIsReversed ? 0 : declarations.size(), one);
    }
    return declarations;
}

/// Runs the function in a thread whose stack has 256 KiB.
template <typename Function>
void InSmallStack(Function const& inFunction) {
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, std::size_t{256} << 10);
    pthread_t thread;
    auto const run = [](void* inCall) -> void* {
        (*static_cast<Function const*>(inCall))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &small, run, const_cast<Function*>(&inFunction)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
}

TEST_F(Parser, BoundsHowDeepEntitiesNestOnASmallStack) {
    std::string many, parameters = Entity("% p0", "");
    for (int i = 1; i < 24'000; ++i) {
        auto const number = std::to_string(i);
        many += Entity("m" + number, "&e63;&#38;#60;&#38;");
        parameters += Entity("% p" + number, "&#37;p" + std::to_string(i - 1) + ";");
    }
    std::string const body = "]><r a='&e64;'>&e64;</r>", whole = "{<r a=x>x</r>}0";
    std::string const longBody = "]><r>&e24000;</r>", failure = "{10";
    struct {
        char const* name;
        std::string declarations, body, expected;
    } const documents[] = {
        {"64 levels", EntityChain(64), body, whole},
        {"64 levels, e1 last", EntityChain(64, true), body, whole},
        {"many at one depth", EntityChain(64) + many, body, whole},
        {"parameter entities", parameters + EntityChain(64) + "%p23999;", body, whole},
        {"65 levels", EntityChain(65), body, failure},
        {"65 levels, e1 last", EntityChain(65, true), body, failure},
        {"24,000 levels in content", EntityChain(24'000), longBody, failure},
        {"24,000 levels in a default", EntityChain(24'000) + "<!ATTLIST r b CDATA '&e24000;'>",
         body, failure},
        {"a ring of 24,000", Entity("e1", "&e24000;") + EntityChain(24'000), longBody, failure},
        {"itself", Entity("e64", "&e64;"), body, failure}};
    InSmallStack([&] {
        for (auto const& document : documents) {
            EXPECT_EQ(Events("<!DOCTYPE r [" + document.declarations + document.body),
                      document.expected)
                << document.name;
        }
    });
}

/// Counts those that exist.
struct CountedFactory : ExpatParserFactory {
    CountedFactory() { ++S_count; }
    ~CountedFactory() override { --S_count; }
    inline static int S_count = 0;
};

TEST_F(Parser, ComesFromTheInstalledFactoryAndTakesItsHandler) {
    UTF16String first, second;
    Handler handler = std::make_unique<Recorder>(first);
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(GetParser(handler), nullptr);
    EXPECT_NE(handler, nullptr);
    std::unique_ptr<DocParserFactory> factory = std::make_unique<CountedFactory>();
    auto* const installed = factory.get();
    SetParserFactory(factory);
    SetParserFactory(factory = std::unique_ptr<DocParserFactory>(installed));
    EXPECT_TRUE(Initialized());
    EXPECT_EQ(factory, nullptr);
    auto const parser = GetParser(handler);
    EXPECT_EQ(handler, nullptr);
    SetParserFactory(factory = std::make_unique<CountedFactory>());
    EXPECT_EQ(CountedFactory::S_count, 1);
    {
        ScopedParserFactory const none(nullptr);
        EXPECT_FALSE(Initialized());
        ScopedParserFactory const inner(std::make_unique<CountedFactory>());
        EXPECT_EQ(CountedFactory::S_count, 2);
    }
    EXPECT_TRUE(Initialized());
    EXPECT_EQ(CountedFactory::S_count, 1);
    ResetParserFactory();
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(CountedFactory::S_count, 0);

    ExpatParser copy(static_cast<ExpatParser&>(*parser));
    for (auto const& path : {At("none"), At(""), u"C:\\proc\\self\\mem"_utf16}) {
        EXPECT_EQ(copy.ParseDocument(path), 10) << "missing, a directory, or an unreadable file";
    }
    ExpatParser assigned(handler = std::make_unique<Recorder>(second));
    assigned = copy;
    assigned = static_cast<ExpatParser&>(assigned);
    EXPECT_EQ(parser->ParseBuffer("<a/>"_utf8), 0);
    EXPECT_EQ(assigned.ParseBuffer("<b>"_utf8), 10);
    EXPECT_EQ(first, u"{{<b>"_utf16);
    EXPECT_EQ(second, u"~"_utf16);
}

} // namespace

} // namespace brindle::xml
