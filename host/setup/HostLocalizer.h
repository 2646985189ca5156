#pragma once

#include <brindle/config/Localizer.h>

namespace brindle::host {

/// English only: gives the default text that each key literal carries behind its "=".
class HostLocalizer : public config::Localizer {
public:
    UTF16String LocalizeString(char const* inLiteral) override;
};

} // namespace brindle::host
