#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"

#include <string>
#include <vector>

namespace brindle::host {

/// What the command can do. A verb writes its results to standard output, a fact a line, and what
/// fails to the diagnostics; it throws `usage_error` for arguments that it cannot use.
struct Verb {
    char const* name;
    char const* synopsis;    ///< its options and operands
    char const* summary;     ///< a line for the list of verbs
    char const* description; ///< what `--help` tells
    std::vector<std::string> options;
    void (*run)(Arguments const& inArguments, Diagnostics& ioDiagnostics);
};

// Each is told in the source of its name.
extern Verb const kCalcVerb;
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
