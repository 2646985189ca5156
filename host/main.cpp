#include "host/Arguments.h"
#include "host/Calc.h"
#include "host/Diagnostics.h"
#include "host/HostErrorManager.h"
#include "host/HostLocalizer.h"
#include "host/Sum.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <exception>

namespace brindle::host {

namespace {

constexpr int kStatus_Done = 0;
constexpr int kStatus_Failed = 1;
constexpr int kStatus_WrongUsage = 2;

struct Verb {
    char const* name;
    char const* synopsis;
    char const* description;
    std::vector<std::string> options;
    void (*run)(Arguments const&, Diagnostics&);
};

Verb const* FindVerb(std::string const& inName) {
    static Verb const kVerbs[] = {
        {"sum",
         "[--jobs=N] PATH...",
         "Writes a line for every file below each PATH, sorted by path: its CRC-32 as 8 hex "
         "digits,\n"
         "two blanks, its size in bytes, two blanks, its path. A path that holds a backslash, a\n"
         "newline or a carriage return has them written as \\\\, \\n and \\r, and its line begins\n"
         "with a backslash. Links to files are followed, links to directories are not entered.\n"
         "FIFOs, sockets and devices are reported and skipped.\n"
         "\n"
         "  --jobs=N  how many files may be summed at once, 1 to 1024; one is, for any N\n",
         {"help", "jobs"},
         Sum},
        {"calc",
         "EXPRESSION",
         "Writes the value of an expression of numbers, parentheses and these operators, from the\n"
         "loosest to the tightest, each from left to right: e (times ten to the power of), + and "
         "-,\n"
         "* (times), / (by 0: the dividend), ^ (to the power of). Numbers are written as in the\n"
         "user's locale; other characters do not count, and what cannot be read is 0. The result\n"
         "is in the shortest form that reads back as the same number, with a decimal point.\n"
         "An expression that begins with two dashes stands behind --.\n",
         {"help"},
         Calc},
    };
    auto const found = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                    [&](Verb const& inVerb) { return inName == inVerb.name; });
    return found != std::end(kVerbs) ? found : nullptr;
}

constexpr char kHelp[] =
    "usage: brindle VERB [OPTION...] [OPERAND...]\n"
    "\n"
    "  sum [--jobs=N] PATH...   CRC-32, size and path of every file below each PATH\n"
    "  calc EXPRESSION          the value of an arithmetic expression\n"
    "\n"
    "  brindle VERB --help      what a verb does\n"
    "  brindle --version        the version of the library\n"
    "\n"
    "What follows -- is no option. Exit status: 0 done, 1 done but something failed, 2 wrong "
    "usage.\n";

int RunVerb(Verb const& inVerb, std::vector<std::string> const& inWords) {
    Arguments const arguments(inWords, inVerb.options);
    if (arguments.Has("help")) {
        utility::streams::Out << "usage: brindle " << inVerb.name << ' ' << inVerb.synopsis
                              << "\n\n"
                              << inVerb.description;
        return kStatus_Done;
    }
    Diagnostics diagnostics;
    inVerb.run(arguments, diagnostics);
    return diagnostics.HasFailures() ? kStatus_Failed : kStatus_Done;
}

int Run(std::vector<std::string> const& inWords) {
    std::string const first = inWords.empty() ? "" : inWords[0];
    if (first == "--help") {
        utility::streams::Out << kHelp;
        return kStatus_Done;
    }
    if (first == "--version") {
        UTF8String const version = utility::UTF16to8(config::GetVersionString());
        utility::streams::Out << "brindle " << std::string(version.begin(), version.end()) << '\n';
        return kStatus_Done;
    }
    Verb const* const verb = FindVerb(first);
    if (verb == nullptr) {
        throw usage_error(first.empty() ? "no verb" : "unknown verb '" + first + "'");
    }
    return RunVerb(*verb, {inWords.begin() + 1, inWords.end()});
}

/// Runs the command and turns what ends it early into a message and an exit status.
int RunAndReport(std::vector<std::string> const& inWords) {
    int status = kStatus_Failed;
    try {
        status = Run(inWords);
    } catch (usage_error const& error) {
        utility::streams::Err << "brindle: " << error.what() << "\nTry 'brindle --help'.\n";
        return kStatus_WrongUsage;
    } catch (fatal_error const&) {
        // The error manager has told it.
    } catch (std::exception const& error) {
        utility::streams::Err << "brindle: " << error.what() << '\n';
    }
    if (!utility::streams::Out.flush()) {
        utility::streams::Err << "brindle: standard output: cannot be written\n";
        status = kStatus_Failed;
    }
    return status;
}

} // namespace

} // namespace brindle::host

int main(int inCount, char** inWords) {
    using namespace brindle;

    config::SetClientName(u"brindle"_utf16);
    config::SetClientVersion(config::GetVersionString());
    host::HostErrorManager errorManager;
    host::HostLocalizer localizer;
    config::ErrorManager::Set(&errorManager);
    config::Localizer::Set(&localizer);

    int const status = host::RunAndReport({inWords + std::min(inCount, 1), inWords + inCount});

    config::Localizer::Set(nullptr);
    config::ErrorManager::Set(nullptr);
    return status;
}
