// The first bytes are a number and the way to write it, the rest is a text to read. Both results
// must be those of the C library and the standard streams.

#include <brindle/utility/Locale.h>

#include "tests/utility/NumbersModel.h"
#include "utility/src/numbers/Separators.h"

#include <cstdlib>

using namespace brindle;

namespace {

struct Recipe {
    double value;
    std::uint16_t flags;
    std::uint16_t decimal, thousands;
    std::int8_t integerDigits, decimals;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    Recipe recipe;
    if (inSize < sizeof recipe) {
        return 0;
    }
    std::memcpy(&recipe, inData, sizeof recipe);
    auto const text = utility::UTF8to16(UTF8String(inData + sizeof recipe, inData + inSize));

    utility::SetUserSeparators(
        {recipe.decimal != 0 ? recipe.decimal : std::uint16_t{'.'}, recipe.thousands});
    int const decimals = recipe.decimals % 61;
    auto const isWritten =
        utility::NumberToString(recipe.value, recipe.integerDigits, decimals, recipe.flags) ==
        utility::model::NumberToString(recipe.value, recipe.integerDigits, decimals, recipe.flags);
    auto const isRead = utility::StringToNumber(text, recipe.flags) ==
                        utility::model::StringToNumber(text, recipe.flags);
    if (!isWritten || !isRead) {
        std::abort();
    }
    Locale::GetValueFromDisplayString(text);
    return 0;
}
