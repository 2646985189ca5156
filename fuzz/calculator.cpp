// Any text as an expression: a short one has the value that cutting it up one by one gives, and a
// long one ends in time.

#include <brindle/utility/Calculator.h>

#include "tests/utility/NumbersModel.h"
#include "utility/src/Separators.h"

#include <chrono>
#include <cstdlib>
#include <string>

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    bool const isSwapped = inSize != 0 && inData[0] == '!';
    utility::SetUserSeparators(isSwapped ? platform::NumberSeparators{u',', u'.'}
                                         : platform::NumberSeparators{u'.', u','});
    UTF16String text(inData, inData + inSize);
    std::string expression;
    for (std::uint8_t const byte : text) {
        if (std::string("0123456789()+-*/.,^eE").find(static_cast<char>(byte)) < 21) {
            expression += static_cast<char>(byte);
        }
    }
    if (expression.size() > 200) {
        while (text.size() < 65'536) {
            text += text;
        }
        auto const start = std::chrono::steady_clock::now();
        utility::Calculate(text);
        if (std::chrono::steady_clock::now() - start > std::chrono::seconds(2)) {
            std::abort();
        }
        return 0;
    }
    double const expected = utility::model::Calculate(expression);
    double const value = utility::Calculate(text);
    if (expected != value && !(std::isnan(expected) && std::isnan(value))) {
        std::abort();
    }
    return 0;
}
