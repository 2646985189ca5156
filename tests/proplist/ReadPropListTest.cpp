#include "proplist/src/document/NumberText.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/RecordingErrorManager.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <boost/property_tree/xml_parser.hpp>

#include <functional>
#include <random>
#include <regex>

namespace brindle::proplist {

namespace {

/// A client's factory, which does not take the handler. Its parsers never say why they failed.
struct ClientFactory : xml::DocParserFactory {
    ClientFactory() {
        S_hasParser = true;
        S_meanwhile = [] {};
    }

    struct Parser : xml::AbstractDocParser {
        explicit Parser(std::unique_ptr<xml::AbstractParseHandler>&& inNone,
                        xml::AbstractParseHandler& ioHandler)
            : AbstractDocParser(inNone), handler(ioHandler) {}
        xml::XMLParseStatus ParseDocument(UTF16String const& inPath) override {
            std::unique_ptr<xml::AbstractParseHandler> none;
            auto const status = xml::ExpatParser(none).ParseDocument(inPath);
            S_meanwhile();
            handler.EndElement(u"prop.list"_utf16);
            return status;
        }
        xml::XMLParseStatus ParseBuffer(UTF8String const&) override {
            return xml::XMLParseStatus(7);
        }

        xml::AbstractParseHandler& handler;
    };
    std::unique_ptr<xml::AbstractDocParser>
    GetParser(std::unique_ptr<xml::AbstractParseHandler>& ioHandler) override {
        return S_hasParser ? std::make_unique<Parser>(nullptr, *ioHandler) : nullptr;
    }

    inline static bool S_hasParser = true;
    inline static std::function<void()> S_meanwhile; ///< after a file was read
};

class ReadDocuments : public tests::InTemporaryDirectory {
protected:
    ReadDocuments() { Install<xml::ExpatParserFactory>(); }
    ~ReadDocuments() override { xml::ResetParserFactory(); }

    template <typename Factory>
    static void Install() {
        std::unique_ptr<xml::DocParserFactory> factory = std::make_unique<Factory>();
        xml::SetParserFactory(factory);
    }

    /// Reads into a new list, and returns the document of that list.
    static std::string Reread(std::string const& inDocument) {
        PropList list;
        utils::ReadPropList(tests::AsUTF8(inDocument), list);
        UTF8String text = "replaced"_utf8;
        utils::WritePropList(text, list);
        return tests::Narrow(text);
    }

    std::string const mUtils = "$$$/brn/proplist/Error/PropListUtils/";
    std::string const mParsing = "1 104 22 " + mUtils + "ParsingPropertiesList";
    tests::RecordingErrorManager mErrors;
    std::mt19937 mRandom{1};
};

TEST_F(ReadDocuments, AsTheyWereWrittenAndByWayOfAnotherReader) {
    std::vector<std::string> values{"", // a nested list
                                    "<true/>\n", "<false/>\n",
                                    "<array>\n<array.type><bool/></array.type>\n</array>\n"};
    for (std::string const scalar :
         {"<int type='unsigned' size='16'>65535", "<int type='unsigned' size='32'>4294967295",
          "<int type='signed' size='32'>-2147483648", "<int type='signed' size='64'>-5000000000",
          "<int type='unsigned' size='64'>18446744073709551615", "<float>3.40282e+38",
          "<double>4.94066e-324", "<string>", "<string>  &lt;&amp;\n\u00E9&gt; .",
          "<ustring>&apos;\U0001F600&quot;"}) {
        auto const tag = scalar.substr(0, scalar.find('>'));
        auto const element = scalar + "</" + tag.substr(1, tag.find(' ') - 1) + ">\n";
        auto const array = "<array>\n<array.type>" + tag + "/></array.type>\n";
        auto const end = "</array>\n";
        values.insert(values.end(), {element, array + end, array + element + element + end});
    }
    std::string document;
    for (int round = 0; round < 300; ++round) {
        std::string list = "<prop.list>\n";
        for (char key = 'A'; round > 0 && key < '['; ++key) {
            list += std::string("<prop.pair>\n<key>&lt;") + key + "</key>\n" +
                    values[mRandom() % values.size()] + "</prop.pair>\n";
        }
        values[0] = list + "</prop.list>\n";
        document = "<?xml version='1.0'?>\n<prop.map version='4'>\n" + values[0] + "</prop.map>\n";
        std::stringstream stream(document);
        boost::property_tree::ptree tree;
        read_xml(stream, tree);
        write_xml(stream = std::stringstream(), tree);
        EXPECT_EQ(Reread(document), document);
        EXPECT_EQ(Reread(stream.str()), document);
    }
    EXPECT_EQ(Reread(document.substr(0, document.size() - 2)), document) << "what was read stays";
    EXPECT_EQ(mErrors.TakeLines(), mParsing + "Read=Error parsing properties list from memory.\n");
}

TEST_F(ReadDocuments, NumbersAsAStreamOfTheClassicLocaleDoes) {
    struct Comma : std::numpunct<wchar_t> {
        wchar_t do_decimal_point() const override { return L','; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    char const* const starts[]{"", "-", "1e", "inf", "6553", "-429496729", "1844674407370955161"};
    for (int count = 0; count < 30'000; ++count) {
        std::string text = starts[mRandom() % std::size(starts)];
        for (auto length = mRandom() % 36; length > 0; --length) {
            text += "012345678901234567890123456789+-.eExXinfa, \t"[mRandom() % 44];
        }
        auto const expect = [&](auto inNumber) {
            std::istringstream stream(text);
            stream.imbue(std::locale::classic());
            auto const read = impl::ExtractNumber<decltype(inNumber)>({text.begin(), text.end()});
            stream >> inNumber;
            EXPECT_EQ(read, inNumber) << text;
        };
        [&](auto... inZeros) { (expect(inZeros), ...); }(std::uint16_t(), std::uint32_t(),
                                                         std::int32_t(), std::int64_t(),
                                                         std::uint64_t(), 0.0F, 0.0);
    }
    std::locale::global(before);
    auto const extract = [] {
        EXPECT_EQ(impl::ExtractNumber<double>(UTF16String(40, u'0') + u"5\u0135"_utf16), 5);
    };
    EXPECT_GT(tests::RefuseEachAllocation(extract, [] {}), 0);
}

TEST_F(ReadDocuments, ThatNoWriterMakes) {
    std::string const cases[][2]{
        {"3'><key>b</key><true/><prop.list><key>a<b/>c</key>no<string>&#x20;<b>&gt;</b>no</string>",
         "3'><key>ac</key><string> &gt;</string>"},
        {"65537'><prop.list><key>a</key><int type='' size='16'>5</int><int type='t' size='8'/>"
         "<int type='x' size='16'>70000</int>",
         "65535'><key>a</key><int type='unsigned' size='16'>4464</int>"},
        {"5'><prop.list><array><array.type><float/><c/></array.type></array><key>a</key><array/>"
         "<key>b</key><array><string>true</string><float/><bool/></array><key>c</key><array>"
         "<array.type><bool/></array.type><true/><string>7</string><float> .5 x</float></array>",
         "5'><key></key><array><array.type><float/></array.type></array>"
         "<key>b</key><array><array.type><bool/></array.type><true/><false/><true/></array>"
         "<key>c</key><array><array.type><float/></array.type><float>0</float><float>7</float>"
         "<float>0.5</float></array>"}};
    std::regex const left("\n|</?prop.(pair|list)>|</prop.map>|<.xml version='1.0'.>");
    for (auto const& [document, expected] : cases) {
        auto const read = Reread("<prop.map version='" + document + "</prop.list></prop.map>");
        EXPECT_EQ(std::regex_replace(read, left, ""), "<prop.map version='" + expected);
    }
    std::string const error = "1 104 20 $$$/brn/proplist/Error/PropListXMLHandler/VersionGreater"
                              "Than=Cannot read PropList data; version greater than expected.\n";
    EXPECT_EQ(mErrors.TakeLines(), error + error);
}

TEST_F(ReadDocuments, FromFilesAndSetsCorruptOnesAside) {
    auto const load = [&](char const* inContent, bool inRenameCorrupt = true) {
        Fill("x", inContent);
        PropList list;
        list.SetValue("a"_utf8, true);
        utils::LoadPropList(At("x"), list, inRenameCorrupt);
        EXPECT_EQ(list.IsEmpty(), std::string("<a/>") != inContent);
        return mErrors.TakeLines() + (std::filesystem::exists(Native("x")) ? "here" : "gone");
    };
    std::string const reason = "=Error parsing properties list from file \"^1\".";
    std::string const failed = mParsing + "Load" + reason + "\nhere";
    EXPECT_EQ(load("<a/>"), "here");
    EXPECT_EQ(load("<cut>", false), failed);
    EXPECT_EQ(load("<cut>"), mParsing + "CorruptRename" + reason +
                                 " It has been renamed to \"^2\". Proceeding.\ngone");
    EXPECT_EQ(mErrors.values[1].GetText(), At("x.old"));
    mErrors.onError = [] { throw 7; };
    EXPECT_EQ(load("<later>"), "gone") << "what the report throws is dropped";
    EXPECT_EQ(ContentOf("x.old"), "<later>");
    std::filesystem::remove(Native("x.old"));
    std::filesystem::create_directories(Native("x.old/in the way"));
    EXPECT_EQ(load("<cut>"), failed);
    EXPECT_EQ(mErrors.values[0].GetText(), At("x"));

    xml::ResetParserFactory();
    Reread("");
    std::string const missing = "1 104 21 " + mUtils + "MissingParserFactory";
    EXPECT_EQ(load("<a/>"), missing + "Read=Missing XML Parser Factory in ReadPropList.\n" +
                                missing + "Load=Missing XML Parser Factory in LoadPropList.\nhere");
}

TEST_F(ReadDocuments, AndTellWhatIsDamagedFromWhatCouldNotBeRead) {
    using utility::SystemError;
    std::filesystem::create_directory(Native("directory"));
    Fill("whole", "<prop.list/>");
    Fill("cut", "<prop.list>\n <key>");
    Fill("busy", "<prop.list/>");
    filesupport::OPlatformByteStream const writer{filesupport::File(At("busy"))};
    struct {
        char const* name;
        PropListLoadStatus status;
        SystemError error;
    } const files[] = {{"whole", kPropListLoad_Done, SystemError::kNone},
                       {"missing", kPropListLoad_Missing, SystemError::kFileNotFound},
                       {"missing/file", kPropListLoad_Missing, SystemError::kPathNotFound},
                       {"directory", kPropListLoad_Unreadable, SystemError::kAccessDenied},
                       {"busy", kPropListLoad_Unreadable, SystemError::kSharingViolation},
                       {"cut", kPropListLoad_Damaged, SystemError::kNone}};
    for (bool const isSilent : {false, true}) {
        isSilent ? Install<ClientFactory>() : Install<xml::ExpatParserFactory>();
        for (auto const& file : files) {
            SCOPED_TRACE(file.name);
            PropList list;
            auto const result = utils::TryLoadPropList(At(file.name), list, isSilent);
            EXPECT_EQ(result.status, file.status);
            EXPECT_EQ(result.fault.error, file.error);
            bool const isDamaged = file.status == kPropListLoad_Damaged;
            EXPECT_EQ(result.fault.line, isDamaged && !isSilent ? 2 : 0);
            EXPECT_EQ(result.renamedTo, isDamaged && isSilent ? At("cut.old") : UTF16String());
        }
    }
    PropList list;
    ClientFactory::S_hasParser = false;
    EXPECT_EQ(utils::TryReadPropList({}, list).status, kPropListLoad_NoParser);
    EXPECT_EQ(mErrors.TakeLines(), "");
}

TEST_F(ReadDocuments, AndNeverReplaceAFileThatCouldNotBeRead) {
    PropList list;
    auto const expectRefusal = [&](char const* inName, char const* inReason) {
        EXPECT_THROW(utils::SavePropList(At(inName), list), filesupport::file_exception)
            << inReason;
    };
    std::string const content = "<prop.map version='5'><prop.list/></prop.map>";
    Fill("x", content);
    {
        filesupport::OPlatformByteStream const writer{filesupport::File(At("x"))};
        utils::LoadPropList(At("x"), list, true);
    }
    expectRefusal("x", "it was being written when it was to be read");
    std::filesystem::create_symlink("x", Native("link"));
    expectRefusal("link", "so is where it leads");
    mErrors.onError = [] { throw 7; };
    EXPECT_THROW(utils::LoadPropList(At("x"), list, true), int);
    expectRefusal("x", "it is of a later version");
    xml::ResetParserFactory();
    utils::LoadPropList(At("x"), list, true);
    expectRefusal("x", "no parser was installed");
    EXPECT_EQ(ContentOf("x"), content);
    utils::SavePropList(At("other"), list);

    Install<xml::ExpatParserFactory>();
    utils::LoadPropList(At("x"), list, true);
    utils::SavePropList(At("x"), list); // it has been read
    Fill("x", "<cut>");
    utils::LoadPropList(At("x"), list, false);
    utils::SavePropList(At("x"), list); // it was damaged

    Install<ClientFactory>();
    Fill("x", "<cut>");
    ClientFactory::S_meanwhile = [this] { utils::SavePropList(At("x"), PropList()); };
    EXPECT_EQ(utils::TryLoadPropList(At("x"), list, true).renamedTo, UTF16String());
    expectRefusal("x", "it was replaced while it was read");
}

TEST_F(ReadDocuments, LeaveTheFileAloneWhereverMemoryRunsOut) {
    std::string const content = "<!DOCTYPE a [<!ENTITY e 'x'>]><prop.list><key>long enough for the "
                                "heap</key><array><float>&e;</float></array></prop.list>";
    Fill("x", content);
    PropList list;
    auto const load = [&] {
        if (utils::TryLoadPropList(At("x"), list, true).status != kPropListLoad_Done) {
            throw std::bad_alloc(); // what the parser allocates counts with what the reader does
        }
    };
    auto const save = [&] { utils::SavePropList(At("x"), list); };
    auto const isIntact = [&] { ASSERT_EQ(ContentOf("x"), content); };
    EXPECT_GT(tests::RefuseEachAllocation(load, isIntact), 30);
    EXPECT_GT(tests::RefuseEachAllocation(save, isIntact), 10);
    EXPECT_EQ(EntryCount(), 1) << "a failed save leaves nothing behind";
}

} // namespace

} // namespace brindle::proplist
