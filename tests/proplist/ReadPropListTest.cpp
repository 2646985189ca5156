#include "proplist/src/NumberText.h"
#include "tests/InTemporaryDirectory.h"
#include "tests/RecordingErrorManager.h"

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

std::string const kStart = "<?xml version='1.0'?>\n<prop.map version='4'>\n";
std::string const kEnd = "</prop.map>\n";
std::string const kErrors = "$$$/brn/proplist/Error/PropList";

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

    tests::RecordingErrorManager mErrors;
    std::mt19937 mRandom{1};
};

TEST_F(ReadDocuments, AsTheyWereWrittenAndAlsoByWayOfAnotherReader) {
    std::vector<std::string> values{"", "<true/>\n", "<false/>\n"}; // the first is a list
    for (std::string const scalar :
         {"<int type='unsigned' size='16'>65535", "<int type='unsigned' size='32'>4294967295",
          "<int type='signed' size='32'>-2147483648", "<int type='signed' size='64'>-5000000000",
          "<int type='unsigned' size='64'>18446744073709551615", "<float>3.40282e+38",
          "<double>4.94066e-324", "<string>", "<string>  &lt;&amp;\n\u00E9&gt; .",
          "<ustring>&apos;\U0001F600&quot;"}) {
        auto const startTag = scalar.substr(0, scalar.find('>'));
        auto const element =
            scalar + "</" + scalar.substr(1, scalar.find_first_of(" >") - 1) + ">\n";
        auto const array = "<array>\n<array.type>" + startTag + "/></array.type>\n";
        values.insert(values.end(),
                      {element, array + "</array>\n", array + element + element + "</array>\n"});
    }
    std::string document;
    for (int round = 0; round < 300; ++round) {
        std::string list = "<prop.list>\n";
        for (char key = 'A'; round > 0 && key < '['; ++key) {
            list += std::string("<prop.pair>\n<key>&lt;") + key + "</key>\n" +
                    values[mRandom() % values.size()] + "</prop.pair>\n";
        }
        values[0] = list + "</prop.list>\n";
        document = kStart + values[0] + kEnd;
        EXPECT_EQ(document, Reread(document));
        std::stringstream stream(document);
        boost::property_tree::ptree tree;
        read_xml(stream, tree);
        write_xml(stream = std::stringstream(), tree);
        EXPECT_EQ(document, Reread(stream.str()));
    }
    for (std::size_t cut = 0; cut < document.size() - 1; ++cut) {
        bool const isWhole = Reread(document.substr(0, cut)) == document;
        EXPECT_TRUE(isWhole || cut < document.size() - kEnd.size()) << cut;
        EXPECT_EQ(
            "1 104 22 " + kErrors +
                "Utils/ParsingPropertiesListRead=Error parsing properties list from memory.\n",
            mErrors.TakeLines());
    }
}

TEST_F(ReadDocuments, OfAnyDepth) {
    std::string nested = kStart;
    for (int level = 0; level < 1'000'000; ++level) {
        nested += "<prop.list>\n<prop.pair>\n<key>a</key>\n";
    }
    nested += "<true/>\n";
    for (int level = 0; level < 1'000'000; ++level) {
        nested += "</prop.pair>\n</prop.list>\n";
    }
    EXPECT_TRUE(nested + kEnd == Reread(nested + kEnd));
}

TEST_F(ReadDocuments, NumbersAsAStreamOfTheClassicLocaleDoes) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    std::vector<std::string> texts{"",
                                   "-",
                                   "1e",
                                   "inf",
                                   "1e999",
                                   "-1e999",
                                   "1e-320",
                                   "65536",
                                   "-4294967295",
                                   "-2147483649",
                                   "18446744073709551616",
                                   std::string(400, '9')};
    for (int count = 0; count < 20'000; ++count) {
        auto& text = texts.emplace_back();
        for (auto length = 1 + mRandom() % 36; length > 0; --length) {
            text += "012345678901234567890123456789+-.eExXinfa, \t"[mRandom() % 44];
        }
    }
    auto const expect = [](std::string const& inText, auto inNumber) {
        auto expected = inNumber;
        std::istringstream stream(inText);
        stream.imbue(std::locale::classic());
        stream >> expected;
        inNumber =
            impl::ExtractNumber<decltype(inNumber)>(UTF16String(inText.begin(), inText.end()));
        EXPECT_EQ(expected, inNumber) << inText;
    };
    std::tuple<std::uint16_t, std::uint32_t, std::int32_t, std::int64_t, std::uint64_t, float,
               double> const zeros{};
    for (auto const& text : texts) {
        std::apply([&](auto... inZeros) { (expect(text, inZeros), ...); }, zeros);
    }
    EXPECT_EQ(5, impl::ExtractNumber<std::int32_t>(u"5\u0135"_utf16));
    std::locale::global(before);
}

TEST_F(ReadDocuments, ThatNoWriterMakes) {
    // The version, what stands in the root list, and what both are read as; {a} is a key.
    std::string const cases[][2]{
        {"3: {a<b/>c}<string>x<b>y</b>z</string>", "3: {ac}<string>xy</string>"},
        {"x: {a}no<b>no<c d='e'/></b><string>&#x20;<![CDATA[>]]></string>",
         "0: {a}<string> &gt;</string>"},
        {"5: {a}<int size='8' type='t'>5</int><int size='16' type=''/><int size='16'/><bool/>",
         "5: {a}<true/>"},
        {"65537: <int size='16' type='x'>70000</int>{b}<int size='64' type='t'>-1</int>",
         "65535: {}<int16>4464</int>{b}<int type='unsigned' size='64'>18446744073709551615</int>"},
        {"4: "
         "{a}<array><string>true</string><int16>1</int><bool/></array>{b}<array/><float>.5</float>",
         "4: "
         "{}<float>0.5</float>{a}<array><array.type><bool/></array.type><true/><false/><true/></"
         "array>"},
        {"4: {a}<array><true/><int16>70000</int></array>{b}<array><false/><string/></array>",
         "4: {a}<array><array.type><int16/></array.type><int16>0</int><int16>4464</int></array>{b}"
         "<array><array.type><string/></array.type><string>false</string><string></string></"
         "array>"},
        {"4: {a}<prop.list>{b}</prop.list><false/>{a}<prop.list>{c}<true/></prop.list>",
         "4: {a}<prop.list>{c}<true/></prop.list>{b}<false/>"},
        {"4: {a}</prop.list><string>no</string><prop.list>{b}<string/>", "4: {b}<string></string>"},
    };
    auto const inFull = [](std::string inText) {
        for (auto const& [shorthand, meaning] :
             {std::pair("[{]", "<key>"), std::pair("[}]", "</key>"),
              std::pair("int16", "int type='unsigned' size='16'"),
              std::pair("(.*): (.*)", "<?xml version='1.0'?><prop.map "
                                      "version='$1'><prop.list>$2</prop.list></prop.map>")}) {
            inText = std::regex_replace(inText, std::regex(shorthand), meaning);
        }
        return inText;
    };
    for (auto const& [document, expected] : cases) {
        EXPECT_EQ(inFull(expected),
                  std::regex_replace(Reread(inFull(document)), std::regex("\n|</?prop.pair>"), ""));
    }
    std::string const error =
        "1 104 20 " + kErrors +
        "XMLHandler/VersionGreaterThan=Cannot read PropList data; version greater than expected.\n";
    EXPECT_EQ(error + error, mErrors.TakeLines());
    mErrors.onError = [] { throw 7; };
    EXPECT_THROW(Reread("<prop.map version='5'/>"), int);
}

TEST_F(ReadDocuments, FromFilesAndSetsCorruptOnesAside) {
    PropList list;
    auto const load = [&](std::string const& inContent, bool inRenameCorrupt) {
        Fill("x", inContent);
        list.SetValue("a"_utf8, true);
        utils::LoadPropList(At("x"), list, inRenameCorrupt);
        EXPECT_EQ(inContent[1] == 'c', list.IsEmpty());
        return mErrors.TakeLines();
    };
    auto const throws = [] { throw 7; };
    EXPECT_EQ("", load("<prop.list><key>b</key><true/></prop.list>", true));
    EXPECT_TRUE(list.RemoveValue("a"_utf8) && list.RemoveValue("b"_utf8));

    std::string const start = "1 104 22 " + kErrors + "Utils/ParsingPropertiesList";
    std::string const reason = "Error parsing properties list from file \"^1\".";
    for (std::string const content : {"<cut first>", "<cut second>"}) {
        EXPECT_EQ(start + "CorruptRename=" + reason +
                      " It has been renamed to \"^2\". Proceeding.\n",
                  load(content, true));
        EXPECT_EQ(At("x.old"), mErrors.values[1].GetText());
        EXPECT_EQ(content, ContentOf("x.old"));
        utils::LoadPropList(At("x"), list, true);
        EXPECT_EQ(start + "Load=" + reason + '\n', mErrors.TakeLines()) << "it is gone";
    }
    mErrors.onError = throws;
    EXPECT_EQ("", load("<cut>", true)) << "and what the host threw is dropped";
    std::filesystem::remove(Native("x.old"));
    std::filesystem::create_directories(Native("x.old/in the way"));
    for (bool const isToRename : {false, true}) {
        EXPECT_EQ(start + "Load=" + reason + '\n', load("<cut>", isToRename));
        EXPECT_EQ(At("x"), mErrors.values[0].GetText());
        EXPECT_EQ("<cut>", ContentOf("x"));
        mErrors.onError = throws;
        EXPECT_THROW(load("<cut>", isToRename), int);
    }

    xml::ResetParserFactory();
    Reread("");
    utils::LoadPropList(At("x"), list, true);
    std::string const missing = "1 104 21 " + kErrors + "Utils/MissingParserFactory";
    std::string const factory = "=Missing XML Parser Factory in ";
    EXPECT_EQ(missing + "Read" + factory + "ReadPropList.\n" + missing + "Load" + factory +
                  "LoadPropList.\n",
              mErrors.TakeLines());
}

} // namespace

} // namespace brindle::proplist
