#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <gtest/gtest.h>

namespace brindle::xml {

namespace {

/// Tells of its end, and of each document.
template <typename Base>
class Watched : public Base {
public:
    explicit Watched(std::string& ioLog) : mLog(ioLog) {}
    ~Watched() override { mLog += '-'; }
    void Tell() { mLog += '*'; }

private:
    std::string& mLog;
};

class Handler : public Watched<AbstractParseHandler> {
    using Watched::Watched;
    void StartDocument() override { Tell(); }
};

TEST(Parser, IsThatOfTheInstalledFactoryAndHoldersAreEmptiedOnlyByWhoTakes) {
    std::string first, second, handlers;
    std::unique_ptr<AbstractParseHandler> handler = std::make_unique<Handler>(handlers);
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(GetParser(handler), nullptr);
    EXPECT_NE(handler, nullptr);

    std::unique_ptr<DocParserFactory> factory =
        std::make_unique<Watched<ExpatParserFactory>>(first);
    DocParserFactory* const installed = factory.get();
    SetParserFactory(factory);
    EXPECT_TRUE(Initialized() && factory == nullptr);
    factory.reset(installed);
    SetParserFactory(factory);
    EXPECT_TRUE(Initialized() && factory == nullptr && first.empty());
    auto const parser = GetParser(handler);
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(parser->ParseBuffer("<a/>"_utf8), 0);
    factory = std::make_unique<Watched<ExpatParserFactory>>(second);
    SetParserFactory(factory);
    EXPECT_EQ(first, "-");
    ResetParserFactory();
    EXPECT_EQ(second, "-");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(handlers, "*");
}

TEST(Parser, TransfersItsHandlerToACopy) {
    std::string first, second;
    std::unique_ptr<AbstractParseHandler> handler = std::make_unique<Handler>(first);
    ExpatParseHandler original(handler);
    handler = std::make_unique<Handler>(second);
    ExpatParseHandler assigned(handler);
    ExpatParseHandler copy(original);
    EXPECT_EQ(original.ParseBuffer("<a/>"_utf8), 0);
    EXPECT_EQ(first, "");
    assigned = copy;
    EXPECT_EQ(second, "-");
    ExpatParseHandler& same = assigned;
    assigned = same;
    EXPECT_EQ(assigned.ParseBuffer("<a>"_utf8), 10);
    EXPECT_EQ(first, "*");
}

} // namespace

} // namespace brindle::xml
