#include <brindle/config/ReplacementValue.h>

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/Text.h>

namespace brindle::config {

ReplacementValue::ReplacementValue(bool inValue)
    : ReplacementValue(Text(inValue ? kKey_Yes : kKey_No)) {}

} // namespace brindle::config
