#pragma once

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

namespace brindle::host {

/// Runs the command, as built, in a temporary directory.
class Command : public testing::Test {
protected:
    struct Outcome {
        int status;
        std::string output;
        std::string errors;
    };

    /// `inWords` is shell text.
    Outcome Run(std::string const& inWords) {
        std::string const command = "cd '" + mTemporary.Native() +
                                    "' && exec " BRINDLE_COMMAND " " + inWords + " >'" +
                                    mResults.Native("out") + "' 2>'" + mResults.Native("err") + "'";
        int const status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << inWords;
        return {WEXITSTATUS(status), ContentOf(mResults.Native("out")),
                ContentOf(mResults.Native("err"))};
    }

    /// What is wrong usage says so, prints nothing and exits with 2.
    void ExpectWrongUsage(std::string const& inWords) {
        Outcome const outcome = Run(inWords);
        EXPECT_EQ(2, outcome.status) << inWords;
        EXPECT_EQ("", outcome.output) << inWords;
        EXPECT_EQ(0u, outcome.errors.find("brindle: ")) << inWords;
    }

    tests::TemporaryDirectory mTemporary, mResults;

private:
    static std::string ContentOf(std::filesystem::path const& inPath) {
        std::ifstream file(inPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

} // namespace brindle::host
