#include "tests/host/Command.h"
#include "tests/host/ListDocument.h"

namespace brindle::host {

namespace {

class Plist : public tests::Command {
protected:
    /// Writes the document of a list with these pairs.
    void FillList(std::string const& inPairs) const { Fill("list", tests::ListDocument(inPairs)); }
};

using tests::List;
using tests::Pair;

TEST_F(Plist, WritesEveryValueOnALine) {
    FillList(
        Pair("a", "<ustring>L\xC3\xA4nge\n\ttab\\ \xC2\x9B</ustring>") +
        Pair("b/[0]\\", "<string> x</string>") + Pair("c", "<false/>") +
        Pair("d", "<int type='unsigned' size='16'>65535</int>") +
        Pair("e", "<int type='unsigned' size='32'>4294967295</int>") +
        Pair("f", "<int type='signed' size='32'>-2147483648</int>") +
        Pair("g", "<int type='signed' size='64'>-9223372036854775808</int>") +
        Pair("h", "<int type='unsigned' size='64'>18446744073709551615</int>") +
        Pair("i", "<float>0.1</float>") + Pair("j", "<double>-1e+300</double>") +
        Pair("k", "<array><array.type><int type='signed' size='32'/></array.type></array>") +
        Pair("l", "<array><string>x\ny</string><string></string></array>") +
        Pair("m", "<array><true/><false/></array>") + Pair("n", List("")) +
        Pair("o", List(Pair("", "<true/>") + Pair("p", List(Pair("q", "<double>0.1</double>"))))) +
        Pair("r", "<array><float>0.1</float></array>"));
    Expect("plist list",
           "a\tustring\tL\xC3\xA4nge\\n\\ttab\\\\ \\u009b\nb\\/\\[0]\\\\\tstring\t x\n"
           "c\tbool\tfalse\nd\tuint16\t65535\ne\tuint32\t4294967295\nf\tint32\t-2147483648\n"
           "g\tint64\t-9223372036854775808\nh\tuint64\t18446744073709551615\n"
           "i\tfloat\t0.1\nj\tdouble\t-1e+300\nk\tint32[]\t\nl[0]\tstring\tx\\ny\n"
           "l[1]\tstring\t\nm[0]\tbool\ttrue\nm[1]\tbool\tfalse\nn\tlist\t\n"
           "o/\tbool\ttrue\no/p/q\tdouble\t0.1\nr[0]\tfloat\t0.1\n");
    std::pair<char const*, char const*> const rows[] = {{"a", "L\xC3\xA4nge\n\ttab\\ \xC2\x9B\n"},
                                                        {"'b/[0]\\'", " x\n"},
                                                        {"o", "\tbool\ttrue\np/q\tdouble\t0.1\n"},
                                                        {"l", "x\\ny\n\n"},
                                                        {"l 0", "x\ny\n"},
                                                        {"l 1", "\n"},
                                                        {"k", ""},
                                                        {"n", ""},
                                                        {"o ''", "true\n"},
                                                        {"o p q", "0.1\n"}};
    for (auto const& [keys, output] : rows) {
        Expect(std::string("plist list ") + keys, output);
    }
    EXPECT_EQ(Run("plist - m 1 <list").output, "false\n");
    EXPECT_EQ(Run("plist list >/dev/full").status, 1);
}

TEST_F(Plist, ReportsWhatIsWrongAndLeavesTheFileAlone) {
    FillList(Pair("a/", List(Pair("b", "<true/>"))) +
             Pair("l", "<array><true/><false/><true/></array>"));
    std::string const cut = ContentOf("list").substr(0, 99);
    Fill("cut", cut);
    Fill("newer", tests::ListDocument("", "5"));
    Fill("page", "<html><key>a</key></html>");
    std::pair<char const*, char const*> const rows[] = {
        {"list c", "list: there is no 'c'"},
        {"list a/ c", "list: there is no 'a\\//c'"},
        {"list a/ b c", "list: 'a\\//b' is no list"},
        {"cut", "cut: cannot be read as a property list: line 1, column 99: unclosed token"},
        {"newer", "newer: is a property list of a later version"},
        {"page", "page: is no property list"},
        {"missing", "missing: no such file or directory"},
        {".", ".: is a directory"},
        {"/dev/null",
         "/dev/null: cannot be read as a property list: line 1, column 1: no element found"},
        {"list l 3", "list: there is no 'l[3]'"},
        {"list l x", "list: there is no 'l[x]'"},
        {"list l 1 0", "list: 'l' is no list"},
    };
    for (auto const& [words, reason] : rows) {
        ExpectFailure(std::string("plist ") + words, reason);
    }
    EXPECT_EQ(ContentOf("cut"), cut);
    ExpectWrongUsage("plist");

    FillList("");
    EXPECT_EQ(Run("plist list").status, 0) << "an empty list is a list";
}

TEST_F(Plist, DeepNestingNeedsNoStack) {
    std::string begin, path, end;
    for (int i = 0; i < 100'000; ++i) {
        begin += "<prop.list><prop.pair><key>k</key>";
        path += "k/";
        end += "</prop.pair></prop.list>";
    }
    FillList(Pair("k", begin + "<true/>" + end));
    EXPECT_EQ(Run("plist list", "ulimit -s 256; ").output, path + "k\tbool\ttrue\n");
}

} // namespace

} // namespace brindle::host
