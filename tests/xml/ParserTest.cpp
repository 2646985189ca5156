#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/InTemporaryDirectory.h"
#include "xml/src/ExpatParse.h"

#include <boost/thread/thread.hpp>

namespace brindle::xml {

namespace {

using tests::AllocationFailure;
using Handler = std::unique_ptr<AbstractParseHandler>;

/// Writes down what it hears and its end; at one event, it throws.
struct Recorder : AbstractParseHandler {
    explicit Recorder(UTF16String& ioLog, int inThrowAt = -1) : mLog(ioLog), mLeft(inThrowAt) {}
    ~Recorder() override { mLog += '~'; }
    void StartDocument() override { Hear(u"{"_utf16); }
    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const& inAttributes) override {
        UTF16String event = u"<"_utf16 + inName;
        for (auto const& [name, value] : inAttributes) {
            event += u" "_utf16 + name + u"="_utf16 + value;
        }
        Hear(event + u">"_utf16);
    }
    void EndElement(UTF16String const& inName) override { Hear(u"</"_utf16 + inName + u">"_utf16); }
    void Characters(UTF16String const& inText) override { Hear(inText); }
    void EndDocument() override { Hear(u"}"_utf16); }
    void Hear(UTF16String const& inEvent) { mLog += mLeft-- == 0 ? throw mLeft : inEvent; }

    UTF16String& mLog;
    int mLeft;
};

class Parser : public tests::InTemporaryDirectory {
protected:
    /// What a recorder hears of the document, in memory as in a file, and the status.
    std::string Heard(std::string const& inDocument) const {
        Fill("document", inDocument);
        UTF16String ofFile, ofBuffer;
        Handler handler = std::make_unique<Recorder>(ofFile);
        ExpatParseHandler file(handler);
        ExpatParseHandler buffer(handler = std::make_unique<Recorder>(ofBuffer));
        int const status = file.ParseDocument(At("document"));
        EXPECT_TRUE(buffer.ParseBuffer({inDocument.begin(), inDocument.end()}) == status &&
                    ofFile == ofBuffer);
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
        EXPECT_EQ(Heard(document), events) << document;
    }
    for (std::size_t length = 0; length < kDocument.size(); ++length) {
        std::string const cut = Heard(kDocument.substr(0, length));
        EXPECT_EQ(cut, whole.substr(0, cut.size() - 2) + "10");
    }
}

TEST_F(Parser, EndsCleanlyWhereverAHandlerThrowsOrMemoryRunsOut) {
    UTF8String const document(kDocument.begin(), kDocument.end());
    for (int event = 0; event < 11; ++event) {
        UTF16String log;
        Recorder recorder(log, event);
        EXPECT_THROW(impl::ExpatParse(recorder).Document(document), int);
        EXPECT_EQ(recorder.mLeft, -1) << "an event behind the last";
    }
    XML_Memory_Handling_Suite const memory = {
        [](std::size_t n) { return AllocationFailure::IsNow() ? nullptr : std::malloc(n); },
        [](void* p, std::size_t n) { return AllocationFailure::IsNow() ? nullptr : realloc(p, n); },
        std::free};
    AbstractParseHandler handler;
    auto const parse = [&] {
        bool const isWhole = impl::ExpatParse(handler, &memory).Document(document) == 0;
        isWhole ? void() : throw std::bad_alloc(); // Expat's refusals count with ours
    };
    EXPECT_GT(tests::RefuseEachAllocation(parse, [] {}), 30);
}

TEST_F(Parser, TakesWhatIsHugeOrDeepAndRefusesWhatExplodes) {
    std::string deep, ends, text, bomb = "<!DOCTYPE r [<!ENTITY e0 'x'>";
    for (int i = 1; i < 1'000'000; ++i) {
        std::string const name = "<!ENTITY e" + std::to_string(i) + " '";
        std::string const last = "&e" + std::to_string(i - 1) + ";";
        deep += "<r>";
        ends += "</r>";
        text += "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
        bomb += i < 40 ? name + last + last + "'>" : "";
    }
    EXPECT_TRUE(Heard(deep + ends) == "{" + deep + ends + "}0");
    EXPECT_EQ(Heard(bomb + "]><r a='&e39;'/>"), "{10");
    EXPECT_TRUE(Heard("<r a='" + text + "'>" + text + "</r>") ==
                "{<r a=" + text + ">" + text + "</r>}0");
}

TEST_F(Parser, BoundsHowDeepEntitiesNestOnASmallStack) {
    auto const declare = [](std::string const& inName, std::string const& inText) {
        return "<!ENTITY " + inName + " '" + inText + "'>";
    };
    /// Declarations of e1 to e`inCount`, of which each names the one before, first to last or last
    /// to first.
    auto const chain = [&](int inCount, bool inIsReversed = false) {
        std::string declarations;
        for (int i = 2; i <= inCount; ++i) {
            auto const one = declare("e" + std::to_string(i), "&e" + std::to_string(i - 1) + ";");
            inIsReversed ? declarations.insert(0, one) : declarations.append(one);
        }
        return inIsReversed ? declarations + declare("e1", "x") : declare("e1", "x") + declarations;
    };
    std::string many, parameters = declare("% p0", "");
    for (int i = 1; i < 24'000; ++i) {
        auto const number = std::to_string(i);
        many += declare("m" + number, "&e63;&#38;#60;&#38;");
        parameters += declare("% p" + number, "&#37;p" + std::to_string(i - 1) + ";");
    }
    std::string const body = "]><r a='&e64;'>&e64;</r>", whole = "{<r a=x>x</r>}0";
    struct {
        char const* name;
        std::string declarations, body, expected;
    } const documents[] = {
        {"64 levels", chain(64), body, whole},
        {"64 levels, the inner ones declared later", chain(64, true), body, whole},
        {"many at one depth", chain(64) + many, body, whole},
        {"parameter entities", parameters + chain(64) + "%p23999;", body, whole},
        {"65 levels, unused", chain(65), body, "{10"},
        {"65 levels, the inner ones declared later", chain(65, true), body, "{10"},
        {"24,000 levels in content", chain(24'000), "]><r>&e24000;</r>", "{10"},
        {"24,000 levels in a default", chain(24'000) + "<!ATTLIST r b CDATA '&e24000;'>", body,
         "{10"},
        {"a ring of 24,000", declare("e1", "&e24000;") + chain(24'000), "]><r>&e24000;</r>", "{10"},
        {"itself", declare("e64", "&e64;"), body, "{10"}};
    boost::thread::attributes small;
    small.set_stack_size(std::size_t{256} << 10);
    boost::thread(small, [&] {
        for (auto const& document : documents) {
            EXPECT_EQ(Heard("<!DOCTYPE r [" + document.declarations + document.body),
                      document.expected)
                << document.name;
        }
    }).join();
}

struct WatchedFactory : ExpatParserFactory {
    ~WatchedFactory() override { ++S_deleted; }
    inline static int S_deleted = 0;
};

TEST_F(Parser, ComesFromTheInstalledFactoryAndTakesItsHandler) {
    UTF16String first, second;
    Handler handler = std::make_unique<Recorder>(first);
    EXPECT_TRUE(!Initialized() && GetParser(handler) == nullptr && handler != nullptr);
    std::unique_ptr<DocParserFactory> factory = std::make_unique<WatchedFactory>();
    auto* const installed = factory.get();
    SetParserFactory(factory);
    SetParserFactory(factory = std::unique_ptr<DocParserFactory>(installed));
    EXPECT_TRUE(Initialized() && factory == nullptr && WatchedFactory::S_deleted == 0);
    auto const parser = GetParser(handler);
    SetParserFactory(factory = std::make_unique<WatchedFactory>());
    EXPECT_TRUE(Initialized() && handler == nullptr && WatchedFactory::S_deleted == 1);
    ResetParserFactory();
    EXPECT_TRUE(!Initialized() && WatchedFactory::S_deleted == 2);

    ExpatParseHandler copy(static_cast<ExpatParseHandler&>(*parser));
    for (auto const& path : {At("none"), At(""), u"C:\\proc\\self\\mem"_utf16}) {
        EXPECT_EQ(copy.ParseDocument(path), 10) << "no file, a directory, or one without reading";
    }
    ExpatParseHandler assigned(handler = std::make_unique<Recorder>(second));
    assigned = copy;
    assigned = static_cast<ExpatParseHandler&>(assigned);
    EXPECT_EQ(parser->ParseBuffer("<a/>"_utf8), 0);
    EXPECT_EQ(assigned.ParseBuffer("<b>"_utf8), 10);
    EXPECT_TRUE(second == u"~"_utf16 && first == u"{{<b>"_utf16);
}

} // namespace

} // namespace brindle::xml
