#include "tests/host/Command.h"
#include "tests/host/ListDocument.h"

#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;
using tests::List;
using tests::Pair;

class Layout : public tests::Command {
protected:
    static std::string Text(std::string const& inText) { return "<string>" + inText + "</string>"; }
    static std::string Number(std::string const& inNumber) {
        return "<double>" + inNumber + "</double>";
    }
    static std::string Row(std::string const& inChildren) {
        return Pair("kind", Text("Row")) + Pair("children", List(inChildren));
    }

    /// Arranges a tree whose root has these pairs.
    Outcome RunTree(std::string const& inPairs, std::string const& inWords = "100x50") const {
        Fill("tree.xml", tests::ListDocument(inPairs));
        return Run("layout tree.xml " + inWords);
    }

    std::string const mLeaf = Pair("width", Number("10")) + Pair("height", Number("20"));
};

/// The places of what a picture shows, each by its left, top, width and height, from the corner of
/// the frame and without outlines.
std::vector<double> PlacesIn(std::string const& inPicture) {
    std::regex const form(
        R"re(<rect class="(\w+)" x="(\S+)" y="(\S+)" width="(\S+)" height="(\S+)")re");
    std::set<std::string> const undrawn{"frame", "edge", "cut", "margin"};
    std::vector<double> places;
    double left = 0, top = 0;
    std::sregex_iterator const end;
    for (std::sregex_iterator match(inPicture.begin(), inPicture.end(), form); match != end;
         ++match) {
        auto const number = [&](std::size_t inGroup) { return std::stod(match->str(inGroup)); };
        std::string const kind = match->str(1);
        double const inset = kind == "group" ? 0 : 0.5;
        if (kind == "frame") {
            left = number(2);
            top = number(3);
        } else if (undrawn.count(kind) == 0) {
            places.insert(places.end(), {number(2) - left - inset, number(3) - top - inset,
                                         number(4) + 2 * inset, number(5) + 2 * inset});
        }
    }
    return places;
}

TEST_F(Layout, ThePictureShowsThePlacesThatAreListed) {
    int trees = 0;
    for (auto const& file : fs::directory_iterator(BRINDLE_SOURCES "/examples/layouts")) {
        ++trees;
        for (std::string const size : {"280x110", "120x106", "54x54"}) {
            std::string const words = "layout " + file.path().string() + ' ' + size;
            SCOPED_TRACE(words);
            Expect(words + " --svg=out.svg");
            std::istringstream listing(Run(words).output);
            std::string rest;
            EXPECT_TRUE(std::getline(listing, rest)) << "the root, which is not drawn";
            auto const places = PlacesIn(ContentOf("out.svg"));
            for (std::size_t i = 0; i < places.size(); ++i) {
                double listed = -1;
                listing >> listed;
                EXPECT_NEAR(places[i], listed, 0.011) << i; // a picture has two decimals
                if (i % 4 == 3) {
                    std::getline(listing, rest);
                }
            }
            EXPECT_FALSE(std::getline(listing, rest)) << rest;
        }
    }
    EXPECT_EQ(trees, 14);
}

TEST_F(Layout, ReadsNumbersOfAnyTypeAndListsExactPlaces) {
    std::string const lists =
        Pair("label", "<ustring>a\\b\n&lt;</ustring>") +
        Pair("margins", List(Pair("left", "<int type='unsigned' size='16'>1</int>") +
                             Pair("top", Number("1")) + Pair("bottom", Number("2")))) +
        Pair("width", List(Pair("best", Number("0.1")) + Pair("expandable", "<true/>") +
                           Pair("maximum", "<int type='signed' size='64'>30</int>"))) +
        Pair("height", "<int type='unsigned' size='64'>18</int>");
    std::string const tree = Row(Pair("10", List(mLeaf)) + Pair("9", List(lists)) +
                                 Pair("4000000000", List(Row(Pair("1", List(mLeaf)))))) +
                             Pair("spacing", List(Pair("horizontal", "<float>2.3</float>"))) +
                             Pair("alignment", List(Pair("vertical", Text("bottom"))));
    EXPECT_EQ(RunTree(tree).output, "0 29 55.6 21  .\n"
                                    "1 30 30 18  9  a\\\\b\\n<\n"
                                    "33.3 30 10 20  10\n"
                                    "45.6 30 10 20  4000000000\n"
                                    "45.6 30 10 20  4000000000/1\n");
    EXPECT_EQ(RunTree(mLeaf + Pair("margins", Number("60"))).output, "60 60 0 0  .\n");
    EXPECT_EQ(RunTree(mLeaf, "10x19.5 --explain").output,
              "* leaf: minimum 10x20, best 10x20, does not fit: chosen, it is the only one\n");
    RunTree(tree, "100x50 --svg=out.svg");
    EXPECT_NE(ContentOf("out.svg").find(">a\\b\n&lt;</text>"), std::string::npos);
}

TEST_F(Layout, NamesTheWrongKeyWithItsPath) {
    std::string const flag = "<true/>";
    std::string const row = Pair("kind", Text("Row"));
    auto const inSecond = [&](std::string const& inPairs) {
        return Row(Pair("1", List(mLeaf)) + Pair("2", List(Row(Pair("7", List(inPairs))))));
    };
    std::string const range = "a number from 0 to 1e9 is expected, not ";
    std::pair<std::string, std::string> const rows[] = {
        {"", "width: is missing; a number or a list is expected"},
        {Pair("kind", Text("row")),
         "kind: one of Row, Column, Flipping, HorizontalWrapping, VerticalWrapping, AutoLayout is "
         "expected, not \"row\""},
        {mLeaf + Row(Pair("1", List(mLeaf))),
         "height: unknown key; known here are kind, children, spacing, alignment, separators, "
         "name, label, margins"},
        {Pair("width", flag) + Pair("hight\n", flag),
         "hight\\n: unknown key; known here are width, height, role, name, label, margins, kind, "
         "children"},
        {mLeaf + Pair("label", List("")), "label: a text is expected, not a list"},
        {Row(Pair("1", List(Pair("name", Text("x")))) +
             Pair("2", List(mLeaf + Pair("name", Text("x"))))),
         "children/2/name: another node is named \"x\", too"},
        {Pair("width", "<array><true/></array>"),
         "width: a number or a list is expected, not an array"},
        {Row(""), "children: is missing; a list with at least one child is expected"},
        {Pair("children", List("")), "kind: is missing; the kind of the group is expected"},
        {row + Pair("separators", Number("1")),
         "separators: true or false is expected, not a number"},
        {row + Pair("alignment", flag), "alignment: a list is expected, not true or false"},
        {row + Pair("spacing", List(Pair("x", flag))),
         "spacing/x: unknown key; known here are horizontal, vertical"},
        {Row(Pair("01", List(mLeaf))), "children/01: the key has to be a whole number from 1 up"},
        {inSecond(Pair("width", List(Pair("best", Text("x"))))),
         "children/2/children/7/width/best: a number is expected, not a text"},
        {inSecond(Pair("width", "<float>-0.5</float>")),
         "children/2/children/7/width: " + range + "-0.5"},
        {Pair("width", Number("1000000003")), "width: " + range + "1000000003"},
        {Pair("width", List(Pair("best", Number("1")) + Pair("maximum", Number("2")))),
         "width/maximum: only what is expandable has one"}};
    for (auto const& [pairs, message] : rows) {
        Fill("tree.xml", tests::ListDocument(pairs));
        ExpectFailures({{"layout tree.xml 100x50", "tree.xml: " + message}});
    }
}

TEST_F(Layout, TakesTreesOfAnySizeAndRefusesThoseThatAreTooDeep) {
    std::string many;
    for (int i = 1; i <= 100'000; ++i) {
        many += Pair(std::to_string(i), List(mLeaf));
    }
    std::string const lines = RunTree(Row(many)).output;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 100'001);
    for (int const levels : {2000, 2001, 100'000}) {
        std::string tree;
        std::string ends;
        for (int i = 1; i < levels; ++i) {
            tree += Pair("kind", Text("AutoLayout")) +
                    "<prop.pair><key>children</key><prop.list><prop.pair><key>1</key><prop.list>";
            ends += "</prop.list></prop.pair></prop.list></prop.pair>";
        }
        Outcome const outcome = RunTree(tree + mLeaf + ends);
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'),
                  levels == 2000 ? 2000 : 0);
        EXPECT_EQ(outcome.errors,
                  levels == 2000 ? "" : "brindle: tree.xml: the tree has more than 2000 levels\n");
    }
}

TEST_F(Layout, ExitStatusTellsWrongUsageAndUnusableFiles) {
    Fill("damaged.xml", "<prop.map version='4'><prop.list>");
    Fill("later.xml", tests::ListDocument(mLeaf, "5"));
    RunTree(mLeaf);
    for (std::string const words : {"missing.xml 1x1", "damaged.xml 1x1", "later.xml 1x1", ". 1x1",
                                    "tree.xml 1x1 --svg=.", "tree.xml 1x1 --svg=no/out"}) {
        Outcome const outcome = Run("layout " + words);
        EXPECT_EQ(outcome.status, 1) << words;
        EXPECT_EQ(outcome.output, "") << words;
        EXPECT_EQ(outcome.errors.find("brindle: "), 0u) << words;
    }
    ExpectWrongUsage("layout",
                     {"", "tree.xml", "tree.xml 1", "tree.xml 1x", "tree.xml x1", "tree.xml 1x1x1",
                      "tree.xml 0x1", "tree.xml 1x-1", "tree.xml 1xnan", "tree.xml infx1",
                      "tree.xml 2e9x1", "tree.xml 1x1 2", "tree.xml 1x1 --svg",
                      "tree.xml 1x1 --svg=", "tree.xml 1x1 --svg=x --explain"});
}

} // namespace

} // namespace brindle::host
