#include <brindle/config/Text.h>

#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/PluralLocalizer.h>
#include <brindle/config/Report.h>
#include <brindle/filesupport/NativePath.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

namespace brindle::config {

namespace {

enum Unscoped { kSeven = 7 };

struct Person {
    friend UTF16String ReplacementText(Person const&) { return u"Ann"_utf16; }
};

TEST(ReplacementValue, TakesTextsFilesAndNumbersOfEveryType) {
    using filesupport::DirFromNative;
    using filesupport::FileFromNative;
    char const* const null = nullptr;
    std::string const name = "\xC3\xA4";
    std::pair<ReplacementValue, std::u16string> const texts[] = {
        {"\xC3\xA4", u"\u00E4"},
        {name, u"\u00E4"},
        {std::string_view("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"\xC3\xA4"_utf8, u"\u00E4"},
        {u"\u00E4", u"\u00E4"},
        {std::u16string(u"\u00E4"), u"\u00E4"},
        {u"\u00E4"_utf16, u"\u00E4"},
        {std::filesystem::path("/tmp/a"), u"/tmp/a"},
        {null, u""},
        {"bad \xFF", u"bad \uFFFD"},
        {true, u"yes"},
        {FileFromNative("/tmp/a\xFF"), u"/tmp/a\uFFFD"},
        {DirFromNative("/tmp"), u"/tmp"},
        {Person(), u"Ann"},
    };
    for (auto const& [value, expected] : texts) {
        EXPECT_EQ(value.GetKind(), ReplacementValue::kKind_Text);
        EXPECT_EQ(value.GetText(), std::u16string_view(expected));
    }
    EXPECT_EQ(ReplacementValue(kSeven).GetSigned(), 7);
    EXPECT_EQ(ReplacementValue(std::uint8_t{200}).GetSigned(), 200);
    EXPECT_EQ(ReplacementValue(0.5f).GetDouble(), 0.5);
}

TEST(Text, ExpandsEachPlaceholderOnceInEveryForm) {
    auto const low = std::numeric_limits<std::int64_t>::min();
    struct {
        char const* literal;
        char const* expected;
    } const cases[] = {
        {"$$$/a=^1 and @0, then ^2", "^2@1 and ^2@1, then -9223372036854775808"},
        {"$$$/a=^3 ^4 ^0 @3 ^", "0.1 ^4 ^0 @3 ^"},
        {"$$$/a=^^1 @@0 ^{ ^| ^}", "^1 @0 { | }"},
        {"$$$/a==", "="},
        {"$$$/a=", ""},
        {"$$$/^3", "$$$/0.1"},
        {"$$/a=@2", "$$/a=0.1"},
        {"", ""},
        {"$$$/a=\xFF", "\xEF\xBF\xBD"},
        {"$$$/a=^1{x=y", "^2@1{x=y"},
        {"$$$/a=^3{|x=y}^3{one=1|other=^3 or ^1}", "y0.1 or ^2@1"},
        {"$$$/a=^1{one=1|^|^}=@2}", "0.1"},
        {"$$$/a=^1{}.", "."},
        {"$$$/a=^1{x^", "^2@1{x^"},
    };
    for (auto const& [literal, expected] : cases) {
        EXPECT_EQ(Text(literal, {"^2@1", low, 0.1}), utility::Utf16(expected)) << literal;
    }
    EXPECT_EQ(Text(nullptr), u"");
}

/// Translates nothing, and counts in a language of its own.
class Counting : public PluralLocalizer {
public:
    explicit Counting(char const* inLanguage) : mRule(PluralRuleFor(inLanguage)) { Set(this); }
    ~Counting() override { Set(nullptr); }
    LocalizedText Localize(char const* inLiteral) override {
        return {utility::Utf16(std::strchr(inLiteral, '=') + 1), mRule};
    }

private:
    PluralRule mRule;
};

TEST(Text, ChoosesTheFormOfTheLanguageForANumber) {
    // z zero, 1 one, 2 two, f few, m many, o other; of the numbers below.
    double const numbers[] = {0, 1, 2, 4, 5, 11, 12, 19, 21, 22, 100, 101, 102, 112, 1.5, -1};
    struct {
        char const* language;
        char const* forms;
    } const cases[] = {
        {"en-GB", "o1ooooooooooooo1"}, {"fr", "11oooooooooooo11"},  {"ja", "oooooooooooooooo"},
        {"ru_RU", "m1ffmmmm1fm1fmo1"}, {"hr", "o1ffoooo1fo1foo1"},  {"pl", "m1ffmmmmmfmmfmo1"},
        {"cs", "o1ffoooooooooom1"},    {"sl", "o12fooooooo12of1"},  {"lt", "o1fffooo1fo1fom1"},
        {"lv", "z1ooozzz1oz1ozo1"},    {"ro", "f1ffffffoooffff1"},  {"AR", "z12ffmmmmmooomo1"},
        {"he", "o12oooooooooooo1"},    {"tlh", "o1ooooooooooooo1"},
    };
    for (auto const& [language, forms] : cases) {
        Counting const localizer(language);
        std::string chosen;
        for (double const number : numbers) {
            auto const text = Text("$$$/a=^1{zero=z|one=1|two=2|few=f|many=m|other=o}", {number});
            chosen += static_cast<char>(text.at(0));
        }
        EXPECT_EQ(chosen, forms) << language;
    }
    auto const files = [](ReplacementValue const& inCount) {
        return Text("$$$/a=^1{0=no files|one=a file|other=^1 files}", {inCount});
    };
    EXPECT_EQ(files(0), u"no files");
    EXPECT_EQ(files(std::uint64_t{1}), u"a file");
    EXPECT_EQ(files(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808 files");
    EXPECT_EQ(files(std::numeric_limits<double>::quiet_NaN()), u"nan files");
    EXPECT_EQ(files("many"), u"many files");
}

TEST(Report, FillsInWhatIsAlwaysTheSame) {
    tests::RecordingErrorManager manager;
    Report("$$$/a=^1", "x", 2);
    Report(kError_GuidMalformed);
    Report(kErrorLevel_Fatal, kErrorModule_Host + 1, 3, "$$$/b=", 1, 2, 3, 4.0);
    EXPECT_EQ(manager.TakeLines(), "1 1000 0 $$$/a=^1\n"
                                   "1 105 28 $$$/brn/utility/Error/MalformedGUID="
                                   "Malformed Guid string.\n"
                                   "0 1001 3 $$$/b=\n");
    EXPECT_EQ(manager.values.at(3).GetDouble(), 4.0);
}

} // namespace

} // namespace brindle::config
