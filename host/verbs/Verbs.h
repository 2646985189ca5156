#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"

#include <string>
#include <vector>

namespace brindle::host {

/// A subcommand. It writes its results to standard output, one fact a line, and reports failures to
/// the diagnostics; it throws `usage_error` for arguments that it cannot use.
struct Verb {
    char const* name;
    char const* synopsis;             ///< its options and operands
    char const* summary;              ///< one line for the list of verbs
    char const* description;          ///< the text of `--help`
    std::vector<std::string> options; ///< as `Arguments` takes them
    void (*run)(Arguments const& inArguments, Diagnostics& ioDiagnostics);
};

// Each is defined in the source file of its name.
extern Verb const kCalcVerb;
extern Verb const kConsoleVerb;
extern Verb const kGuidVerb;
extern Verb const kLayoutVerb;
extern Verb const kPackVerb;
extern Verb const kPlistVerb;
extern Verb const kSealVerb;
extern Verb const kSumVerb;
extern Verb const kTimeVerb;
extern Verb const kUnpackVerb;
extern Verb const kVerifyVerb;

} // namespace brindle::host
