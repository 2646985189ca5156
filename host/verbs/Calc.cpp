#include "host/verbs/Verbs.h"

#include "host/commandline/PlainText.h"

#include <brindle/utility/Calculator.h>
#include <brindle/utility/Streams.h>

namespace brindle::host {

namespace {

void Run(Arguments const& inArguments, Diagnostics&) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("calc needs one EXPRESSION");
    }
    char const* const expression = inArguments.Operands()[0].c_str();
    double const value = utility::Calculate(utility::AsciiToUTF16(expression));
    utility::streams::Out << NumberText(value) << '\n';
}

} // namespace

Verb const kCalcVerb = {
    "calc",
    "EXPRESSION",
    "the value of an arithmetic expression",
    "Writes the value of an expression of numbers, parentheses and these operators, from the\n"
    "loosest to the tightest, each from left to right: e (times ten to the power of), + and "
    "-,\n"
    "* (times), / (by 0: the dividend), ^ (to the power of). Numbers are written as in the\n"
    "user's locale; other characters do not count, and what cannot be read is 0. The result\n"
    "is in the shortest form that reads back as the same number, with a decimal point.\n"
    "An expression that begins with two dashes stands behind --.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
