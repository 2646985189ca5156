#pragma once

#include <brindle/config/Localizer.h>

namespace brindle::host {

/// Speaks English: every text is the default text of its literal.
class HostLocalizer : public config::Localizer {
public:
    UTF16String LocalizeString(char const* inLiteral) override;
};

} // namespace brindle::host
