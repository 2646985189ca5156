#include "config/src/LocalizedText.h"

#include <brindle/utility/TextConversions.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>
#include <cstring>

namespace brindle::config {

bool IsLiteral(char const* inText) noexcept {
    return std::strncmp(inText, "$$$/", 4) == 0 && std::strchr(inText, '=') != nullptr;
}

LocalizedText Localized(char const* inText) {
    PluralRule const english = PluralRuleFor("en");
    if (!IsLiteral(inText)) {
        return {utility::Utf16(inText), english};
    }
    if (!Localizer::Initialized()) {
        return {utility::Utf16(std::strchr(inText, '=') + 1), english};
    }
    Localizer* const localizer = Localizer::Get();
    if (auto* const counting = dynamic_cast<PluralLocalizer*>(localizer)) {
        return counting->Localize(inText);
    }
    return {localizer->LocalizeString(inText), english};
}

UTF16String Printable(UTF16String inText) {
    for (std::size_t i = 0; i < inText.size(); ++i) {
        std::uint16_t const unit = inText[i];
        auto const half = utility::UnicodeSurrogate(unit);
        if (half == utility::kSurrogate_High && i + 1 < inText.size() &&
            utility::UnicodeSurrogate(inText[i + 1]) == utility::kSurrogate_Low) {
            ++i;
        } else if (half != utility::kSurrogate_None || unit < 0x20 ||
                   (unit >= 0x7F && unit < 0xA0)) {
            inText[i] = u'\uFFFD';
        }
    }
    return inText;
}

} // namespace brindle::config
