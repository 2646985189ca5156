#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/commandline/PlainText.h"
#include "host/setup/HostErrorManager.h"
#include "host/setup/StartAndStop.h"
#include "host/verbs/Verbs.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/console/Terminal.h>
#include <brindle/proplist/TableLocalizer.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <iomanip>

namespace brindle::host {

namespace {

constexpr int kStatus_Done = 0;
constexpr int kStatus_Failed = 1;
constexpr int kStatus_WrongUsage = 2;

Verb const* const kVerbs[] = {&kSumVerb,  &kSealVerb,   &kVerifyVerb, &kPlistVerb,
                              &kPackVerb, &kUnpackVerb, &kTimeVerb,   &kCalcVerb,
                              &kGuidVerb, &kLayoutVerb, &kConsoleVerb};

void PrintHelp() {
    constexpr int kCallWidth = 50; // of the longest call, and two blanks
    auto& out = utility::streams::Out;
    out << "usage: brindle VERB [OPTION...] [OPERAND...]\n\n";
    for (Verb const* const verb : kVerbs) {
        std::string const call = std::string(verb->name) + ' ' + verb->synopsis;
        out << "  " << std::left << std::setw(kCallWidth) << call << verb->summary << '\n';
    }
    out << "\n  " << std::setw(kCallWidth) << "brindle VERB --help"
        << "what a verb does\n"
        << "  " << std::setw(kCallWidth) << "brindle --version"
        << "the version of the library\n"
        << "\n"
           "The value of an option stands behind = or in the next word; what follows -- is no "
           "option.\n"
           "The file - is standard input or output.\n"
           "Exit status: 0 done, 1 done but something failed or differed, 2 wrong usage.\n";
}

Verb const& FindVerb(std::string const& inName) {
    for (Verb const* const verb : kVerbs) {
        if (inName == verb->name) {
            return *verb;
        }
    }
    throw usage_error(inName.empty() ? "no verb" : "unknown verb '" + inName + "'");
}

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

/// `outHelp` becomes the words that explain what was wrong if `usage_error` is thrown.
int Run(std::vector<std::string> const& inWords, std::string& outHelp) {
    std::string const first = inWords.empty() ? "" : inWords[0];
    if (first == "--help") {
        PrintHelp();
        return kStatus_Done;
    }
    if (first == "--version") {
        utility::streams::Out << "brindle " << PlainText(config::GetVersionString()) << '\n';
        return kStatus_Done;
    }
    Verb const& verb = FindVerb(first);
    outHelp = first + " --help";
    return RunVerb(verb, {inWords.begin() + 1, inWords.end()});
}

/// Runs the command, and turns an exception that ends it into a message and an exit status.
int RunAndReport(std::vector<std::string> const& inWords) {
    int status = kStatus_Failed;
    std::string help = "--help";
    try {
        int const result = Run(inWords, help);
        utility::streams::Out.flush();
        RequireOutput();
        status = result;
    } catch (usage_error const& error) {
        WriteDiagnostic(error.what());
        utility::streams::Err << "Try 'brindle " << help << "'.\n";
        return kStatus_WrongUsage;
    } catch (fatal_error const&) {
        // The error manager has reported it.
    } catch (output_error const& error) {
        WriteDiagnostic("standard output: " + error.code().message());
    } catch (std::exception const& error) {
        WriteDiagnostic(config::DescribeInUTF8(error));
    }
    return status;
}

} // namespace

} // namespace brindle::host

int main(int inCount, char** inWords) {
    using namespace brindle;

    console::ReserveStandardStreams();
    // Beyond the limit on the size of files, a write fails and is reported like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    host::HostErrorManager errorManager;
    proplist::TableLocalizer localizer;
    host::StartLibrary(errorManager, localizer);

    int const status = host::RunAndReport({inWords + std::min(inCount, 1), inWords + inCount});

    host::StopLibrary();
    return status;
}
