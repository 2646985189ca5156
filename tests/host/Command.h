#pragma once

#include "tests/support/InTemporaryDirectory.h"

#include <cstdlib>
#include <sys/wait.h>

namespace brindle::tests {

/// A test that runs the command, as built, in a fresh directory.
class Command : public InTemporaryDirectory {
protected:
    struct Outcome {
        int status;
        std::string output;
        std::string errors;
    };

    /// Both are shell text; what comes before holds for the command.
    Outcome Run(std::string const& inWords, std::string const& inBefore = "") const {
        std::string const command = inBefore + "cd '" + mTemporary.Native() + "' && exec >'" +
                                    mResults.Native("out") + "' 2>'" + mResults.Native("err") +
                                    "' " BRINDLE_COMMAND " " + inWords;
        int const status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << inWords;
        return {WEXITSTATUS(status), ContentOf(mResults.Native("out")),
                ContentOf(mResults.Native("err"))};
    }

    /// What is wrong usage says so, prints no result and exits with 2.
    void ExpectWrongUsage(std::string const& inWords) const {
        Outcome const outcome = Run(inWords);
        EXPECT_EQ(2, outcome.status) << inWords;
        EXPECT_EQ("", outcome.output) << inWords;
        EXPECT_EQ(0u, outcome.errors.find("brindle: ")) << inWords;
    }

private:
    TemporaryDirectory mResults;
};

} // namespace brindle::tests
