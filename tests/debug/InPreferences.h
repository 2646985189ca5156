#pragma once

#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>

#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::tests {

/// A test with a preference directory of its own.
class InPreferences : public InTemporaryDirectory {
protected:
    InPreferences() {
        ::setenv("XDG_CONFIG_HOME", mTemporary.Native().c_str(), 1);
        mDirectory = filesupport::NativePath(filesupport::Dir::PrefDir())
                         .substr(mTemporary.Native().size() + 1);
    }

    /// The name, within the temporary directory, of a file in the preference directory.
    std::string Preference(std::string const& inName) const { return mDirectory + '/' + inName; }

    std::string mDirectory; // the name of the preference directory
};

/// Runs the work in a process of its own, in which no database is loaded yet. Returns its text, or
/// that it threw.
inline std::string InProcess(std::function<std::string()> const& inWork) {
    int ends[2];
    if (::pipe(ends) != 0) {
        return "no pipe";
    }
    pid_t const child = ::fork();
    if (child == 0) {
        std::string text;
        try {
            text = inWork();
        } catch (std::exception const& problem) {
            text = std::string("threw ") + problem.what();
        }
        bool const isWhole =
            ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
        ::_exit(isWhole ? 0 : 1);
    }
    ::close(ends[1]);
    std::string text;
    char piece[4096];
    for (ssize_t count = 0; (count = ::read(ends[0], piece, sizeof piece)) > 0;) {
        text.append(piece, static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return status == 0 ? text : text + "... and ended with status " + std::to_string(status);
}

} // namespace brindle::tests
