#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/commandline/PlainText.h"
#include "host/setup/HostErrorManager.h"
#include "host/setup/HostLocalizer.h"
#include "host/verbs/Verbs.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/utility/Streams.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <iomanip>
#include <memory>

namespace brindle::host {

namespace {

constexpr int kStatus_Done = 0;
constexpr int kStatus_Failed = 1;
constexpr int kStatus_WrongUsage = 2;

Verb const* const kVerbs[] = {&kSumVerb,    &kSealVerb, &kVerifyVerb, &kPlistVerb, &kPackVerb,
                              &kUnpackVerb, &kTimeVerb, &kCalcVerb,   &kGuidVerb,  &kLayoutVerb};

void PrintHelp() {
    auto& out = utility::streams::Out;
    out << "usage: brindle VERB [OPTION...] [OPERAND...]\n\n";
    for (Verb const* const verb : kVerbs) {
        std::string const call = std::string(verb->name) + ' ' + verb->synopsis;
        out << "  " << std::left << std::setw(41) << call << verb->summary << '\n';
    }
    out << "\n"
           "  brindle VERB --help                      what a verb does\n"
           "  brindle --version                        the version of the library\n"
           "\n"
           "What follows -- is no option. Exit status: 0 done, 1 done but something failed "
           "or differed,\n"
           "2 wrong usage.\n";
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
        status = Run(inWords, help);
    } catch (usage_error const& error) {
        utility::streams::Err << "brindle: " << error.what() << "\nTry 'brindle " << help << "'.\n";
        return kStatus_WrongUsage;
    } catch (fatal_error const&) {
        // The error manager has reported it.
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

    // Beyond the limit on the size of files, a write fails and is reported like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    config::SetClientName(u"brindle"_utf16);
    config::SetClientVersion(config::GetVersionString());
    host::HostErrorManager errorManager;
    host::HostLocalizer localizer;
    config::ErrorManager::Set(&errorManager);
    config::Localizer::Set(&localizer);
    std::unique_ptr<xml::DocParserFactory> parsers = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(parsers);

    int const status = host::RunAndReport({inWords + std::min(inCount, 1), inWords + inCount});

    xml::ResetParserFactory();
    config::Localizer::Set(nullptr);
    config::ErrorManager::Set(nullptr);
    return status;
}
