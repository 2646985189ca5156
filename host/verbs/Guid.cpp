#include "host/verbs/Verbs.h"

#include "host/setup/HostErrorManager.h"

#include <brindle/utility/Guid.h>
#include <brindle/utility/Streams.h>

namespace brindle::host {

namespace {

constexpr std::uint32_t kMostIdentifiers = 1'000'000;

void Run(Arguments const& inArguments, Diagnostics&) {
    auto const& operands = inArguments.Operands();
    if (operands.size() > 1) {
        throw usage_error("guid takes one COUNT");
    }
    std::uint32_t const count =
        operands.empty() ? 1 : WholeNumber("COUNT", operands[0], 1, kMostIdentifiers);
    for (std::uint32_t i = 0; i < count && utility::streams::Out; ++i) {
        utility::Guid const guid = utility::Guid::CreateUnique();
        if (guid == utility::Guid()) {
            throw fatal_error(); // the error manager has reported the reason
        }
        utility::streams::Out << guid << '\n';
    }
}

} // namespace

Verb const kGuidVerb = {
    "guid",
    "[COUNT]",
    "new identifiers, one a line",
    "Writes COUNT new identifiers, 1 to 1000000, one a line; one if no COUNT is given. They\n"
    "are random, of version 4.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
