#include "proplist/src/NumberText.h"
#include "tests/InTemporaryDirectory.h"
#include "tests/RecordingErrorManager.h"

#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <boost/property_tree/xml_parser.hpp>

#include <filesystem>
#include <locale>
#include <random>
#include <regex>
#include <tuple>

namespace brindle::proplist {

namespace {

class ReadDocuments : public tests::InTemporaryDirectory {
protected:
    ReadDocuments() {
        std::unique_ptr<xml::DocParserFactory> factory(new xml::ExpatParserFactory);
        xml::SetParserFactory(factory);
    }
    ~ReadDocuments() override { xml::ResetParserFactory(); }

    /// Reads into a new list, and gives the document of what was read.
    static std::string Reread(std::string const& inDocument) {
        PropList list;
        utils::ReadPropList(UTF8String(inDocument.begin(), inDocument.end()), list);
        UTF8String text;
        utils::WritePropList(text, list);
        return std::string(text.begin(), text.end());
    }

    std::string const mStart = "<?xml version='1.0'?>\n<prop.map version='4'>\n";
    std::string const mUtils = "$$$/brn/proplist/Error/PropListUtils/";
    tests::RecordingErrorManager mErrors;
    std::mt19937 mRandom{1};
};

TEST_F(ReadDocuments, AsTheyWereWrittenAndByWayOfAnotherReader) {
    std::vector<std::string> values{"", "<true/>\n", "<false/>\n"}; // the first is a list
    for (std::string const scalar :
         {"<int type='unsigned' size='16'>65535", "<int type='unsigned' size='32'>4294967295",
          "<int type='signed' size='32'>-2147483648", "<int type='signed' size='64'>-5000000000",
          "<int type='unsigned' size='64'>18446744073709551615", "<float>3.40282e+38",
          "<double>4.94066e-324", "<string>", "<string>  &lt;&amp;\n\u00E9&gt; .",
          "<ustring>&apos;\U0001F600&quot;"}) {
        auto const tag = scalar.substr(0, scalar.find('>'));
        auto const element = scalar + "</" + tag.substr(1, tag.find(' ') - 1) + ">\n";
        auto const array = "<array>\n<array.type>" + tag + "/></array.type>\n";
        for (auto const& elements : {std::string(), element, element + element}) {
            values.push_back(array + elements + "</array>\n");
        }
        values.push_back(element);
    }
    std::string document;
    for (int round = 0; round < 300; ++round) {
        std::string list = "<prop.list>\n";
        for (char key = 'A'; round > 0 && key < '['; ++key) {
            list += std::string("<prop.pair>\n<key>&lt;") + key + "</key>\n" +
                    values[mRandom() % values.size()] + "</prop.pair>\n";
        }
        values[0] = list + "</prop.list>\n";
        document = mStart + values[0] + "</prop.map>\n";
        EXPECT_EQ(document, Reread(document));
        std::stringstream stream(document);
        boost::property_tree::ptree tree;
        read_xml(stream, tree);
        write_xml(stream = std::stringstream(), tree);
        EXPECT_EQ(document, Reread(stream.str()));
    }
    for (std::size_t cut = 0; cut < document.size() - 1; ++cut) {
        bool const isWhole = document == Reread(document.substr(0, cut));
        EXPECT_EQ("1 104 22 " + mUtils +
                      "ParsingPropertiesListRead=Error parsing properties list from memory.\n",
                  mErrors.TakeLines());
        EXPECT_TRUE(isWhole || cut < document.size() - 12) << "what was read stays";
    }
}

TEST_F(ReadDocuments, OfAnyDepth) {
    std::string text = mStart;
    for (char const* const part :
         {"<prop.list>\n<prop.pair>\n<key>a</key>\n", "</prop.pair>\n</prop.list>\n"}) {
        for (int level = 0; level < 1'000'000; ++level) {
            text += part;
        }
        text += part[1] == 'p' ? "<true/>\n" : "</prop.map>\n";
    }
    EXPECT_TRUE(text == Reread(text));
}

TEST_F(ReadDocuments, NumbersAsAStreamOfTheClassicLocaleDoes) {
    struct Comma : std::numpunct<wchar_t> {
        wchar_t do_decimal_point() const override { return L','; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    auto const expect = [](std::string const& inText, auto inNumber) {
        auto expected = inNumber;
        std::istringstream stream(inText);
        stream.imbue(std::locale::classic());
        stream >> expected;
        UTF16String const text(inText.begin(), inText.end());
        EXPECT_EQ(expected, impl::ExtractNumber<decltype(inNumber)>(text)) << inText;
    };
    char const* const starts[]{"",      "-",     "1e",          "inf",
                               "1e999", "65536", "-4294967295", "18446744073709551616"};
    for (int count = 0; count < 30'000; ++count) {
        std::string text = starts[mRandom() % std::size(starts)];
        for (auto length = mRandom() % 36; length > 0; --length) {
            text += "012345678901234567890123456789+-.eExXinfa, \t"[mRandom() % 44];
        }
        std::apply([&](auto... inZeros) { (expect(text, inZeros), ...); },
                   std::tuple<std::uint16_t, std::uint32_t, std::int32_t, std::int64_t,
                              std::uint64_t, float, double>());
    }
    EXPECT_EQ(5, impl::ExtractNumber<std::int32_t>(u"5\u0135"_utf16));
    std::locale::global(before);
}

TEST_F(ReadDocuments, ThatNoWriterMakes) {
    std::string const cases[][2]{
        {"3'><prop.list><key>a<b/>c</key>no<string>&#x20;<b><![CDATA[>]]></b>no</string>no",
         "3'><key>ac</key><string> &gt;</string>"},
        {"65537'><prop.list><key>a</key><int type='' size='16'>5</int><int type='t' size='8'/>"
         "<int type='x' size='16'>70000</int>",
         "65535'><key>a</key><int type='unsigned' size='16'>4464</int>"},
        {"5'><prop.list><array><array.type><float/><c/></array.type></array><key>a</key><array/>"
         "<key>b</key><array><string>true</string><float/><bool/></array>",
         "5'><key></key><array><array.type><float/></array.type></array>"
         "<key>b</key><array><array.type><bool/></array.type><true/><false/><true/></array>"},
        {"4'><prop.list><array><true/><string>7</string><float> .5x</float></array>",
         "4'><key></key><array><array.type><float/></array.type><float>0</float><float>7</float>"
         "<float>0.5</float></array>"},
        {"4'><prop.list><key>a</key><prop.list><key>b</key></prop.list><false/><key>a</key>"
         "<prop.list><true/></prop.list>",
         "4'><key>a</key><key></key><true/><key>b</key><false/>"},
        {"4'><key>a</key><string>no</string><prop.list><true/>", "4'><key></key><true/>"}};
    std::regex const left("\n|</?prop.(pair|list)>|</prop.map>|<.xml version='1.0'.>");
    for (auto const& [document, expected] : cases) {
        auto const read = Reread("<prop.map version='" + document + "</prop.list></prop.map>");
        EXPECT_EQ("<prop.map version='" + expected, std::regex_replace(read, left, ""));
    }
    std::string const error = "$$$/brn/proplist/Error/PropListXMLHandler/VersionGreaterThan=Cannot "
                              "read PropList data; version greater than expected.";
    EXPECT_EQ(error, mErrors.key);
    EXPECT_EQ((std::vector<std::int32_t>{20, 20}), mErrors.codes);
    mErrors.onError = [] { throw 7; };
    EXPECT_THROW(Reread("<prop.map version='5'/>"), int);
}

TEST_F(ReadDocuments, FromFilesAndSetsCorruptOnesAside) {
    auto const load = [&](std::string const& inContent, bool inRenameCorrupt) {
        inContent.empty() ? void(std::filesystem::remove(Native("x"))) : Fill("x", inContent);
        PropList list;
        list.SetValue("a"_utf8, true);
        utils::LoadPropList(At("x"), list, inRenameCorrupt);
        EXPECT_EQ(inContent != "<a/>", list.IsEmpty());
        return mErrors.TakeLines() + (std::filesystem::exists(Native("x")) ? "here" : "gone");
    };
    std::string const start = "1 104 22 " + mUtils + "ParsingPropertiesList";
    std::string const reason = "Error parsing properties list from file \"^1\".";
    std::string const renamed =
        start + "CorruptRename=" + reason + " It has been renamed to \"^2\". Proceeding.\ngone";
    std::string const failed = start + "Load=" + reason + '\n';
    EXPECT_EQ("here", load("<a/>", true));
    EXPECT_EQ(renamed, load("<cut>", true));
    EXPECT_EQ(At("x.old"), mErrors.values[1].GetText());
    Fill("x.old", "older");
    EXPECT_EQ(failed + "here", load("<cut>", false));
    {
        filesupport::OPlatformByteStream const saving{filesupport::File(At("x"))};
        EXPECT_EQ(failed + "here", load("<cut>", true)) << "somebody is just writing it";
    }
    EXPECT_EQ(failed + "gone", load("", true));
    EXPECT_EQ("older", ContentOf("x.old"));
    mErrors.onError = [] { throw 7; };
    EXPECT_EQ("gone", load("<cut>", true)) << "what the host throws is dropped";
    EXPECT_EQ("<cut>", ContentOf("x.old"));
    std::filesystem::remove(Native("x.old"));
    std::filesystem::create_directories(Native("x.old/in the way"));
    EXPECT_EQ(failed + "here", load("<cut>", true));
    EXPECT_EQ(At("x"), mErrors.values[0].GetText());

    xml::ResetParserFactory();
    Reread("");
    std::string const missing = "1 104 21 " + mUtils + "MissingParserFactory";
    EXPECT_EQ(missing + "Read=Missing XML Parser Factory in ReadPropList.\n" + missing +
                  "Load=Missing XML Parser Factory in LoadPropList.\nhere",
              load("<a/>", true));
}

} // namespace

} // namespace brindle::proplist
