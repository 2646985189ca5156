#include <brindle/proplist/TableLocalizer.h>

#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/Parser.h>

namespace brindle::proplist {

namespace {

class Tables : public tests::InTemporaryDirectory {
protected:
    Tables() { config::Localizer::Set(&mLocalizer); }
    ~Tables() override { config::Localizer::Set(nullptr); }

    void Add(char const* inLanguage, char const* inKey, UTF16String const& inText) {
        PropList table;
        table.SetValue(utility::Utf8(inKey), inText);
        mLocalizer.AddTable(inLanguage, table);
    }

    TableLocalizer mLocalizer;
};

TEST_F(Tables, AreSearchedFromTheSpecialToTheGeneralAndThenInTheNextLanguage) {
    Add("de", "a", u"de"_utf16);
    Add("de-AT", "$$$/a=", u"de-AT"_utf16);
    Add("de", "b", u"de"_utf16);
    Add("de-AT", "b", u""_utf16); // not translated
    Add("fr", "b", u"fr"_utf16);
    Add("fr", "c", u"fr"_utf16);
    Add("fr", "c", u"newer"_utf16);
    struct {
        std::vector<std::string> languages;
        char const* expected;
    } const cases[] = {
        {{"de_AT.UTF-8@euro", "fr"}, "de-AT de newer"},
        {{"DE-ch"}, "de de C"},
        {{"fr", "de"}, "de fr newer"},
        {{"en-GB", "de"}, "A B C"},
        {{"nl", "", "-", "fr"}, "A fr newer"},
        {{}, "A B C"},
    };
    for (auto const& [languages, expected] : cases) {
        mLocalizer.SetLanguages(languages);
        auto const text = config::Text("$$$/a=A") + u" "_utf16 + config::Text("$$$/b=B") +
                          u" "_utf16 + config::Text("$$$/c=C");
        EXPECT_EQ(text, utility::Utf16(expected)) << testing::PrintToString(languages);
    }
    EXPECT_EQ(mLocalizer.LocalizeString("$$$/c"), u"$$$/c");
}

TEST_F(Tables, CountInTheLanguageOfEachText) {
    auto const files = [] {
        return config::Text("$$$/n=^1{one=a file|other=^1 files}", {0}) + u", "_utf16 +
               config::Text("$$$/untranslated=^1{one=one|other=others}", {0});
    };
    Add("fr", "n", u"^1 ^1{one=fichier|other=fichiers}"_utf16);
    mLocalizer.SetLanguages({"fr-CA"});
    EXPECT_EQ(files(), u"0 fichier, others");
    mLocalizer.SetPluralRule("fr",
                             [](std::uint64_t, bool) { return config::PluralCategory::kOther; });
    EXPECT_EQ(files(), u"0 fichiers, others");
    mLocalizer.SetLanguages({});
    EXPECT_EQ(files(), u"0 files, others");
}

TEST_F(Tables, ComeFromFilesWithNestedLists) {
    xml::ResetParserFactory(); // tables need none
    PropList table;
    auto* const nested = table.NewSubList("a"_utf8)->NewSubList("b"_utf8);
    nested->SetValue("c"_utf8, "\xC3\xA4"_utf8);
    nested->SetValue("d"_utf8, std::int32_t{5});
    filesupport::File const file(At("table.xml"));
    utils::SavePropList(file, table);
    EXPECT_EQ(mLocalizer.LoadTable("de", file).status, kPropListLoad_Done);
    EXPECT_EQ(mLocalizer.LoadTable("de", filesupport::File(At("none"))).status,
              kPropListLoad_Missing);
    Fill("damaged", "<");
    EXPECT_EQ(mLocalizer.LoadTable("de", filesupport::File(At("damaged"))).status,
              kPropListLoad_Damaged);
    EXPECT_EQ(ContentOf("damaged"), "<"); // it stays where it is
    mLocalizer.SetLanguages({"de"});
    EXPECT_EQ(config::Text("$$$/a/b/c=c"), u"\u00E4");
    EXPECT_EQ(config::Text("$$$/a/b/d=d"), u"d");

    // The list for translators is such a table, and has every text of the library.
    auto const literals = filesupport::FileFromNative(BRINDLE_SOURCES "/docs/literals.xml");
    EXPECT_EQ(mLocalizer.LoadTable("xx", literals).status, kPropListLoad_Done);
    mLocalizer.SetLanguages({"xx"});
    for (auto const& error : config::kErrorCodes) {
        std::string const key(error.key);
        auto const equals = key.find('=');
        EXPECT_EQ(mLocalizer.LocalizeString((key.substr(0, equals) + "=not found").c_str()),
                  utility::Utf16(key.substr(equals + 1)));
    }
    xml::ResetParserFactory();
}

TEST_F(Tables, SpeakTheLanguagesOfTheUser) {
    struct {
        tests::Environment::Values variables;
        char const* expected;
    } const cases[] = {
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, "fr"},
        {{{"LANG", "en_US"}, {"LANGUAGE", "nl::de"}}, "de"},
        {{{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "de"}}, "A"},
        {{{"LC_ALL", "de@euro"}, {"LANG", "fr"}}, "de"},
    };
    for (auto const& [variables, expected] : cases) {
        tests::Environment::Values all{
            {"LC_ALL", {}}, {"LC_MESSAGES", {}}, {"LANG", {}}, {"LANGUAGE", {}}};
        for (auto const& [name, value] : variables) {
            all[name] = value;
        }
        tests::Environment const environment(all);
        TableLocalizer localizer;
        for (auto const language : {"de", "fr"}) {
            PropList table;
            table.SetValue("a"_utf8, utility::Utf16(language));
            localizer.AddTable(language, table);
        }
        EXPECT_EQ(localizer.LocalizeString("$$$/a=A"), utility::Utf16(expected));
    }
}

} // namespace

} // namespace brindle::proplist
