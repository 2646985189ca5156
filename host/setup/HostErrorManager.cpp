#include "host/setup/HostErrorManager.h"

#include "host/commandline/Diagnostics.h"
#include "host/commandline/PlainText.h"

#include <brindle/config/Localizer.h>

#include <string>

namespace brindle::host {

namespace {

std::string TextOf(config::ReplacementValue const& inValue) {
    using config::ReplacementValue;
    switch (inValue.GetKind()) {
    case ReplacementValue::kKind_None:
        break;
    case ReplacementValue::kKind_Signed:
        return NumberText(inValue.GetSigned());
    case ReplacementValue::kKind_Unsigned:
        return NumberText(inValue.GetUnsigned());
    case ReplacementValue::kKind_Double:
        return NumberText(inValue.GetDouble());
    case ReplacementValue::kKind_Text:
        return PlainText(inValue.GetText());
    }
    return {};
}

/// Replaces the placeholders `^1` to `^4` by the values.
std::string Expanded(std::string const& inText,
                     config::ReplacementValue const* const (&inValues)[4]) {
    std::string expanded;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        bool const isPlaceholder = inText[i] == '^' && i + 1 < inText.size() &&
                                   inText[i + 1] >= '1' && inText[i + 1] <= '4';
        if (isPlaceholder) {
            ++i;
            expanded += TextOf(*inValues[inText[i] - '1']);
        } else {
            expanded += inText[i];
        }
    }
    return expanded;
}

} // namespace

void HostErrorManager::ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t,
                                      std::int32_t, bool, config::ReplacementValue const& inFirst,
                                      config::ReplacementValue const& inSecond,
                                      config::ReplacementValue const& inThird,
                                      config::ReplacementValue const& inFourth) {
    std::string const text = PlainText(config::Localizer::Get()->LocalizeString(inKey));
    config::ReplacementValue const* const values[] = {&inFirst, &inSecond, &inThird, &inFourth};
    WriteDiagnostic(Expanded(text, values));
    if (inLevel == config::kErrorLevel_Fatal) {
        throw fatal_error();
    }
}

} // namespace brindle::host
