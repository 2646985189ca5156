#pragma once

#include <brindle/Export.h>
#include <brindle/config/PluralLocalizer.h>
#include <brindle/proplist/PropListLoadResult.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::filesupport {
class File;
}

namespace brindle::proplist {

class PropList;

/// A localiser whose texts come from property lists, one or several for each language:
///
///     TableLocalizer texts; // the languages of the user
///     texts.LoadTable("de", File(folder, u"german.xml"_utf16));
///     config::Localizer::Set(&texts);
///
/// A table has the texts under the paths of their literals: that of "$$$/viewer/NoCodec=No decoder"
/// is the text "viewer/NoCodec", or "NoCodec" in a nested list "viewer". Keys may also be written
/// with the "$$$/" in front. An empty text counts as missing, and what is not a text is left out.
/// `docs/literals.xml` has the texts of the library, to be copied and translated.
///
/// A text is sought in the languages of the user, the preferred one first; in each of them in its
/// own tables, and then in those of the more general language: first "de-AT", then "de". What is
/// found nowhere is the literal's own English text, which is also what "en" ends with, before the
/// next language.
///
/// Languages are compared without regard to case, and "pt_BR.UTF-8" is "pt-BR". Any thread may call
/// at any time, so a program may change the language while it runs.
class BRN_API TableLocalizer : public config::PluralLocalizer {
public:
    TableLocalizer();
    ~TableLocalizer() override;

    /// Adds the texts of a table, in place of those that the language has under the same keys.
    void AddTable(std::string_view inLanguage, PropList const& inTable);
    /// The same from a file; adds nothing unless the status is `kPropListLoad_Done`. The program
    /// need not have installed an XML parser.
    PropListLoadResult LoadTable(std::string_view inLanguage, filesupport::File const& inFile);

    /// In which languages texts are sought, in place of those that the user has chosen in the
    /// system. None means that all texts are the literals' own.
    void SetLanguages(std::vector<std::string> const& inLanguages);

    /// How a language counts, in place of `config::PluralRuleFor`.
    void SetPluralRule(std::string_view inLanguage, config::PluralRule inRule);

    /// The text, and the rule of the language in which it was found. A literal without "=" is taken
    /// whole as its own text if it is found nowhere.
    config::LocalizedText Localize(char const* inLiteral) override;

private:
    struct Tables;

    std::unique_ptr<Tables> mTables;
};

} // namespace brindle::proplist
