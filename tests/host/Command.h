#pragma once

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>

namespace brindle::tests {

inline std::string ContentOf(std::filesystem::path const& inPath) {
    std::ifstream file(inPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Tests of the command, which runs in a directory of the test's own.
class Command : public testing::Test {
protected:
    struct Outcome {
        int status;
        std::string output;
        std::string errors;
    };

    /// Runs the command in the temporary directory; `inWords` is shell text.
    Outcome Run(std::string const& inWords) {
        std::string const command = "cd '" + mTemporary.Native() +
                                    "' && exec " BRINDLE_COMMAND " " + inWords + " >'" +
                                    mResults.Native("out") + "' 2>'" + mResults.Native("err") + "'";
        int const status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << inWords;
        return {WEXITSTATUS(status), ContentOf(mResults.Native("out")),
                ContentOf(mResults.Native("err"))};
    }

    TemporaryDirectory mTemporary, mResults;
};

} // namespace brindle::tests
