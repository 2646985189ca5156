#include "tests/host/Command.h"

namespace brindle::host {

namespace {

class Plist : public tests::Command {
protected:
    /// Makes a document of pairs, each a key and what follows it.
    void FillList(std::string const& inPairs) const {
        Fill("list", "<prop.map version='4'><prop.list>" + inPairs + "</prop.list></prop.map>");
    }
};

std::string Pair(std::string const& inKey, std::string const& inValue) {
    return "<prop.pair><key>" + inKey + "</key>" + inValue + "</prop.pair>";
}

std::string Int(std::string const& inType, std::string const& inSize, std::string const& inText) {
    return "<int type='" + inType + "' size='" + inSize + "'>" + inText + "</int>";
}

TEST_F(Plist, TellsEveryValueInALine) {
    FillList(
        Pair("a", "<ustring>L\xC3\xA4nge\n\ttab\\ \xC2\x9B</ustring>") +
        Pair("b/[0]\\", "<string> x</string>") + Pair("c", "<false/>") +
        Pair("d", Int("unsigned", "16", "65535")) + Pair("e", Int("unsigned", "32", "4294967295")) +
        Pair("f", Int("signed", "32", "-2147483648")) +
        Pair("g", Int("signed", "64", "-9223372036854775808")) +
        Pair("h", Int("unsigned", "64", "18446744073709551615")) + Pair("i", "<float>0.1</float>") +
        Pair("j", "<double>-1e+300</double>") +
        Pair("k", "<array><array.type><int type='signed' size='32'/></array.type></array>") +
        Pair("l", "<array><string>x\ny</string><string></string></array>") +
        Pair("m", "<array><true/><false/></array>") + Pair("n", "<prop.list></prop.list>") +
        Pair("o",
             "<prop.list>" + Pair("", "<true/>") +
                 Pair("p", "<prop.list>" + Pair("q", "<double>0.1</double>") + "</prop.list>") +
                 "</prop.list>") +
        Pair("r", "<array><float>0.1</float></array>"));
    char const kNested[] = "\tbool\ttrue\np/q\tdouble\t0.1\n";
    Outcome const whole = Run("plist list");
    EXPECT_EQ("a\tustring\tL\xC3\xA4nge\\n\\ttab\\\\ \\u009b\nb\\/\\[0]\\\\\tstring\t x\n"
              "c\tbool\tfalse\nd\tuint16\t65535\ne\tuint32\t4294967295\nf\tint32\t-2147483648\n"
              "g\tint64\t-9223372036854775808\nh\tuint64\t18446744073709551615\n"
              "i\tfloat\t0.1\nj\tdouble\t-1e+300\nk\tint32[]\t\nl[0]\tstring\tx\\ny\n"
              "l[1]\tstring\t\nm[0]\tbool\ttrue\nm[1]\tbool\tfalse\nn\tlist\t\n"
              "o/\tbool\ttrue\no/p/q\tdouble\t0.1\nr[0]\tfloat\t0.1\n",
              whole.output);
    EXPECT_EQ(0, whole.status);
    std::pair<char const*, std::string> const rows[] = {
        {"a", "L\xC3\xA4nge\n\ttab\\ \xC2\x9B\n"},
        {"'b/[0]\\'", " x\n"},
        {"h", "18446744073709551615\n"},
        {"k", ""},
        {"l", "x\\ny\n\n"},
        {"n", ""},
        {"o", kNested},
        {"o ''", "true\n"},
        {"o p q", "0.1\n"},
    };
    for (auto const& [keys, output] : rows) {
        Outcome const outcome = Run(std::string("plist list ") + keys);
        EXPECT_EQ(output, outcome.output) << keys;
        EXPECT_EQ(0, outcome.status) << keys;
    }
    EXPECT_EQ(1, Run("plist list >/dev/full").status);
}

TEST_F(Plist, SaysWhatIsWrongAndLeavesTheFile) {
    FillList(Pair("a/", "<prop.list>" + Pair("b", "<true/>") + "</prop.list>"));
    std::string const whole = ContentOf("list");
    Fill("cut", whole.substr(0, whole.size() - 1));
    Fill("newer", "<prop.map version='5'><prop.list></prop.list></prop.map>");
    Fill("page", "<html><key>a</key></html>");
    std::pair<char const*, char const*> const rows[] = {
        {"list c", "list: there is no 'c'"},
        {"list a/ c", "list: there is no 'a\\//c'"},
        {"list a/ b c", "list: 'a\\//b' is no list"},
        {"cut", "cut: cannot be read as a property list"},
        {"newer", "newer: is a property list of a later version"},
        {"page", "page: is no property list"},
        {"missing", "missing: no such file or directory"},
        {".", ".: is a directory"},
        {"/dev/null", "/dev/null: is no regular file"},
    };
    for (auto const& [words, reason] : rows) {
        Outcome const outcome = Run(std::string("plist ") + words);
        EXPECT_EQ("brindle: " + std::string(reason) + '\n', outcome.errors);
        EXPECT_EQ("", outcome.output) << words;
        EXPECT_EQ(1, outcome.status) << words;
    }
    EXPECT_EQ(whole.substr(0, whole.size() - 1), ContentOf("cut"));
    ExpectWrongUsage("plist");

    FillList("");
    EXPECT_EQ(0, Run("plist list").status) << "an empty list is a list";
}

TEST_F(Plist, DepthNeedsNoStack) {
    std::string begin, path, end;
    for (int i = 0; i < 100'000; ++i) {
        begin += "<prop.list><prop.pair><key>k</key>";
        path += "k/";
        end += "</prop.pair></prop.list>";
    }
    FillList(Pair("k", begin + "<true/>" + end));
    EXPECT_EQ(path + "k\tbool\ttrue\n", Run("plist list", "ulimit -s 256; ").output);
}

} // namespace

} // namespace brindle::host
