#include "host/Calc.h"

#include <brindle/utility/Calculator.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/Unicode.h>

#include <charconv>

namespace brindle::host {

void Calc(Arguments const& inArguments, Diagnostics&) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("calc needs one EXPRESSION");
    }
    char const* const expression = inArguments.Operands()[0].c_str();
    double const value = utility::Calculate(utility::AsciiToUTF16(expression));
    char text[32];
    char* const end = std::to_chars(text, text + sizeof text, value).ptr;
    utility::streams::Out.write(text, end - text) << '\n';
}

} // namespace brindle::host
