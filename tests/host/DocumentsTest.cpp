#include "tests/host/Command.h"

#include <regex>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

/// Calls back for each command behind "$ " in the unnamed code blocks of a document, with the lines
/// that it is shown to print.
template <typename Action>
int ForEachSample(std::string const& inDocument, Action inAction) {
    std::regex const blockForm("\n```(.*)\n([^]*?\n)```"), form("\\$ (.*)\n((?:(?!\\$ ).*\n)*)");
    int count = 0;
    std::sregex_iterator const end;
    for (std::sregex_iterator block(inDocument.begin(), inDocument.end(), blockForm); block != end;
         ++block) {
        std::string const text = block->length(1) == 0 ? block->str(2) : "";
        for (std::sregex_iterator sample(text.begin(), text.end(), form); sample != end; ++sample) {
            inAction(sample->str(1), sample->str(2));
            ++count;
        }
    }
    return count;
}

/// Matches these lines and a line end more or less; "..." stands for any number of lines.
std::regex FormOf(std::string const& inLines) {
    std::string const literal =
        std::regex_replace(inLines, std::regex(R"([\^$\\.*+?()\[\]{}|])"), R"(\$&)");
    return std::regex(
        std::regex_replace(literal, std::regex(R"((^|\n)\\\.\\\.\\\.\n)"), "$1(.*\n)*") + "\n?");
}

using Documents = tests::Command;

TEST_F(Documents, SamplesPrintWhatTheyAreShownToPrint) {
    fs::create_directory_symlink(BRINDLE_SOURCES "/examples", Native("examples"));
    fs::create_symlink(BRINDLE_COMMAND, Native("brindle"));
    for (std::string const name : {"command.md", "layout/README.md"}) {
        auto const count = ForEachSample(
            ContentOf(BRINDLE_SOURCES "/docs/" + name),
            [&](std::string const& inCommand, std::string const& inLines) {
                std::system(("{ cd '" + mTemporary.Native() + "' && PATH=.:$PATH && " + inCommand +
                             "; } >'" + Native("output") + "' 2>&1")
                                .c_str());
                EXPECT_TRUE(std::regex_match(ContentOf("output") + '\n', FormOf(inLines)))
                    << name << ": " << inCommand << '\n'
                    << ContentOf("output");
            });
        EXPECT_GT(count, 0) << name;
    }
}

} // namespace

} // namespace brindle::host
