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

    /// Runs "brindle WORDS". Both texts are read by a shell; `inBefore` may hold commands that
    /// prepare the process, such as "ulimit -s 256; ", and `inLauncher` a command that starts the
    /// program.
    Outcome Run(std::string const& inWords, std::string const& inBefore = "",
                std::string const& inLauncher = "") const {
        std::string const command = inBefore + "cd '" + mTemporary.Native() + "' && exec >'" +
                                    mResults.Native("out") + "' 2>'" + mResults.Native("err") +
                                    "' " + inLauncher + BRINDLE_COMMAND " " + inWords;
        int const status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << inWords;
        return {WEXITSTATUS(status), ContentOf(mResults.Native("out")),
                ContentOf(mResults.Native("err"))};
    }

    /// Without the capabilities by which root reads and writes everything.
    Outcome RunUnprivileged(std::string const& inWords) const {
        return Run(inWords, "",
                   ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search "
                                    : "");
    }

    void Expect(std::string const& inWords, std::string const& inOutput = "", int inStatus = 0,
                std::string const& inErrors = "") const {
        SCOPED_TRACE("brindle " + inWords);
        Outcome const outcome = Run(inWords);
        EXPECT_EQ(outcome.status, inStatus);
        EXPECT_EQ(outcome.output, inOutput);
        EXPECT_EQ(outcome.errors, inErrors);
    }

    /// The command prints no result, only this diagnostic, and exits with 1.
    void ExpectFailure(std::string const& inWords, std::string const& inDiagnostic) const {
        Expect(inWords, "", 1, "brindle: " + inDiagnostic + "\n");
    }

    /// The command prints no result, says what is wrong and which help to read, and exits with 2.
    void ExpectWrongUsage(std::string const& inWords) const {
        SCOPED_TRACE("brindle " + inWords);
        Outcome const outcome = Run(inWords);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors.find("brindle: "), 0u);
        std::string const help =
            "\nTry 'brindle " + inWords.substr(0, inWords.find(' ')) + " --help'.\n";
        EXPECT_NE(outcome.errors.find(help), std::string::npos) << outcome.errors;
    }

private:
    TemporaryDirectory mResults;
};

} // namespace brindle::tests
