// Takes any text as an expression. A short one must have the value that the model gets by cutting
// it in two again and again; one of 65,536 units or more must only end within the time limit.

#include <brindle/utility/Calculator.h>

#include "tests/utility/NumbersModel.h"
#include "utility/src/numbers/Separators.h"

#include <cstdlib>
#include <iterator>
#include <string>

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    bool const isSwapped = inSize != 0 && inData[0] == '!';
    utility::SetUserSeparators(isSwapped ? platform::NumberSeparators{u',', u'.'}
                                         : platform::NumberSeparators{u'.', u','});
    UTF16String text(inData, inData + inSize);
    std::string expression;
    std::copy_if(inData, inData + inSize, std::back_inserter(expression), [](char inUnit) {
        return inUnit != '\0' && std::strchr("0123456789()+-*/.,^eE", inUnit) != nullptr;
    });
    if (expression.size() > 400) {
        while (text.size() < 65'536) {
            text += text;
        }
        static_cast<void>(utility::Calculate(text)); // the run has a limit of time
        return 0;
    }
    double const expected = utility::model::Calculate(expression);
    double const value = utility::Calculate(text);
    if (expected != value && !(std::isnan(expected) && std::isnan(value))) {
        std::abort();
    }
    return 0;
}
