#include "tests/host/Command.h"

#include <sstream>
#include <vector>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

/// A command of a sample, and the lines that it is shown to print.
struct Sample {
    std::string command;
    std::vector<std::string> output;
};

/// The lines that begin with "$ " in the code blocks of a document, and what follows each.
std::vector<Sample> SamplesOf(std::istream& inDocument) {
    std::vector<Sample> samples;
    bool isInBlock = false;
    bool isInSample = false;
    for (std::string line; std::getline(inDocument, line);) {
        if (line.rfind("```", 0) == 0) {
            isInBlock = !isInBlock && line == "```";
            isInSample = false;
        } else if (isInBlock && line.rfind("$ ", 0) == 0) {
            samples.push_back({line.substr(2), {}});
            isInSample = true;
        } else if (isInSample) {
            samples.back().output.push_back(line);
        }
    }
    return samples;
}

/// True if the text consists of the lines; a line "..." stands for any number of lines.
bool Matches(std::string const& inText, std::vector<std::string> const& inLines) {
    std::istringstream text(inText);
    bool mayDiffer = false;
    std::string actual;
    for (std::string const& line : inLines) {
        if (line == "...") {
            mayDiffer = true;
            continue;
        }
        do {
            if (!std::getline(text, actual)) {
                return false;
            }
        } while (mayDiffer && actual != line);
        if (actual != line) {
            return false;
        }
        mayDiffer = false;
    }
    return mayDiffer || !std::getline(text, actual);
}

using Documents = tests::Command;

TEST_F(Documents, SamplesPrintWhatTheyAreShownToPrint) {
    fs::create_directory_symlink(BRINDLE_SOURCES "/examples", Native("examples"));
    fs::create_symlink(BRINDLE_COMMAND, Native("brindle"));
    for (std::string const name : {"command.md", "layout/README.md"}) {
        std::ifstream document(BRINDLE_SOURCES "/docs/" + name);
        std::vector<Sample> const samples = SamplesOf(document);
        EXPECT_FALSE(samples.empty()) << name;
        for (Sample const& sample : samples) {
            SCOPED_TRACE(name + ": " + sample.command);
            std::string const in = "cd '" + mTemporary.Native() + "' && PATH=.:$PATH && ";
            std::system(
                ("{ " + in + sample.command + "; } >'" + Native("output") + "' 2>&1").c_str());
            std::string const output = ContentOf("output");
            EXPECT_TRUE(Matches(output, sample.output)) << output;
        }
    }
}

} // namespace

} // namespace brindle::host
