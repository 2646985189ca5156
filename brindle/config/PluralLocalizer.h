#pragma once

#include <brindle/Export.h>
#include <brindle/config/Localizer.h>
#include <brindle/config/Plurals.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::config {

/// A text, and the rule of the language that it is in.
struct LocalizedText {
    UTF16String text; ///< not yet expanded
    PluralRule rule;  ///< how its language counts
};

/// A localiser that also tells `Text` how the language of each text counts. It may return texts of
/// different languages, as one does that falls back on English for what is not translated yet.
/// `proplist::TableLocalizer` is one.
class BRN_API PluralLocalizer : public Localizer {
public:
    ~PluralLocalizer() override;

    /// The text for the whole literal, "=" and default text included. `rule` is not null.
    virtual LocalizedText Localize(char const* inLiteral) = 0;

    /// The text alone, in which the choices between plural forms are still to be made.
    UTF16String LocalizeString(char const* inLiteral) override;

protected:
    PluralLocalizer();
};

} // namespace brindle::config
