#include "host/HostErrorManager.h"

#include <brindle/config/Localizer.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/Unicode.h>

#include <sstream>
#include <string>

namespace brindle::host {

namespace {

std::string Narrow(UTF16String const& inText) {
    UTF8String const bytes = utility::UTF16to8(inText);
    return std::string(bytes.begin(), bytes.end());
}

std::string TextOf(config::ReplacementValue const& inValue) {
    using config::ReplacementValue;
    std::ostringstream text;
    switch (inValue.GetKind()) {
    case ReplacementValue::kKind_None:
        break;
    case ReplacementValue::kKind_Signed:
        text << inValue.GetSigned();
        break;
    case ReplacementValue::kKind_Unsigned:
        text << inValue.GetUnsigned();
        break;
    case ReplacementValue::kKind_Double:
        text << inValue.GetDouble();
        break;
    case ReplacementValue::kKind_Text:
        text << Narrow(inValue.GetText());
        break;
    }
    return text.str();
}

/// Puts the values in place of `^1` to `^4`.
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
    std::string const text = Narrow(config::Localizer::Get()->LocalizeString(inKey));
    config::ReplacementValue const* const values[] = {&inFirst, &inSecond, &inThird, &inFourth};
    utility::streams::Err << "brindle: " << Expanded(text, values) << '\n';
    if (inLevel == config::kErrorLevel_Fatal) {
        throw fatal_error();
    }
}

} // namespace brindle::host
