#include <brindle/config/PluralLocalizer.h>

namespace brindle::config {

PluralLocalizer::PluralLocalizer() = default;
PluralLocalizer::~PluralLocalizer() = default;

UTF16String PluralLocalizer::LocalizeString(char const* inLiteral) {
    return Localize(inLiteral).text;
}

} // namespace brindle::config
