#include <brindle/proplist/TableLocalizer.h>

#include "platform/Locale.h"
#include "utility/src/base/Mutex.h"

#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/TextConversions.h>

#include <list>
#include <map>
#include <unordered_map>
#include <utility>

namespace brindle::proplist {

namespace {

constexpr std::string_view kEnglish = "en";
constexpr std::string_view kPrefix = "$$$/";

/// In lower case, with "-" between its parts.
std::string TagOf(std::string_view inLanguage) {
    std::string tag(inLanguage.substr(0, inLanguage.find_first_of(".@")));
    for (char& character : tag) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        } else if (character == '_') {
            character = '-';
        }
    }
    return tag;
}

/// The next more general language; empty if there is none.
std::string_view ParentOf(std::string_view inTag) {
    auto const end = inTag.rfind('-');
    return inTag.substr(0, end == inTag.npos ? 0 : end);
}

/// The path of a literal, or of a key that is written as one.
std::string_view PathOf(std::string_view inLiteral) {
    if (inLiteral.substr(0, kPrefix.size()) == kPrefix) {
        inLiteral.remove_prefix(kPrefix.size());
    }
    return inLiteral.substr(0, inLiteral.find('='));
}

using Texts = std::unordered_map<std::string, UTF16String>;

/// All texts of a table and of the lists in it, which may be nested to any depth.
Texts TextsOf(PropList const& inTable) {
    Texts texts;
    std::vector<std::pair<PropList const*, std::string>> lists{{&inTable, ""}};
    while (!lists.empty()) {
        auto const [list, folder] = std::move(lists.back());
        lists.pop_back();
        std::list<UTF8String> names;
        list->GetPropertyNames(names);
        for (auto const& name : names) {
            auto const path = folder + utility::ToStd(name);
            UTF16String text;
            UTF8String bytes;
            if (auto const* const nested = list->GetSubList(name); nested != nullptr) {
                lists.emplace_back(nested, path + '/');
            } else if (list->GetValue(name, bytes)) {
                text = utility::Utf16(bytes);
            } else {
                list->GetValue(name, text);
            }
            if (!text.empty()) {
                texts[std::string(PathOf(path))] = std::move(text);
            }
        }
    }
    return texts;
}

} // namespace

struct TableLocalizer::Tables {
    struct Language {
        Texts texts;
        config::PluralRule rule = nullptr; ///< null for that of `PluralRuleFor`
    };

    config::PluralRule RuleOf(std::string_view inTag) const BRN_REQUIRES(mutex) {
        for (auto tag = inTag; !tag.empty(); tag = ParentOf(tag)) {
            auto const found = languages.find(tag);
            if (found != languages.end() && found->second.rule != nullptr) {
                return found->second.rule;
            }
        }
        return config::PluralRuleFor(inTag);
    }

    utility::Mutex mutex;
    std::map<std::string, Language, std::less<>> languages BRN_GUARDED_BY(mutex);
    std::vector<std::string> preferred BRN_GUARDED_BY(mutex); ///< tags
};

TableLocalizer::TableLocalizer() : mTables(std::make_unique<Tables>()) {
    SetLanguages(platform::UserLanguages());
}

TableLocalizer::~TableLocalizer() = default;

void TableLocalizer::AddTable(std::string_view inLanguage, PropList const& inTable) {
    auto added = TextsOf(inTable);
    utility::MutexLock const lock(mTables->mutex);
    auto& texts = mTables->languages[TagOf(inLanguage)].texts;
    added.merge(texts); // the former texts that have not been replaced
    texts = std::move(added);
}

PropListLoadResult TableLocalizer::LoadTable(std::string_view inLanguage,
                                             filesupport::File const& inFile) {
    PropList table;
    auto result = utils::LoadPropList(inFile, table, utils::MissingFile::kIsFailure,
                                      utils::DamagedFile::kStays);
    if (result.status == kPropListLoad_Done) {
        AddTable(inLanguage, table);
    }
    return result;
}

void TableLocalizer::SetLanguages(std::vector<std::string> const& inLanguages) {
    std::vector<std::string> tags;
    for (auto const& language : inLanguages) {
        tags.push_back(TagOf(language));
    }
    utility::MutexLock const lock(mTables->mutex);
    mTables->preferred = std::move(tags);
}

void TableLocalizer::SetPluralRule(std::string_view inLanguage, config::PluralRule inRule) {
    utility::MutexLock const lock(mTables->mutex);
    mTables->languages[TagOf(inLanguage)].rule = inRule;
}

config::LocalizedText TableLocalizer::Localize(char const* inLiteral) {
    std::string_view const literal(inLiteral);
    std::string const path(PathOf(literal));
    utility::MutexLock const lock(mTables->mutex);
    bool isEnglish = false;
    for (auto const& preferred : mTables->preferred) {
        for (std::string_view tag = preferred; !tag.empty() && !isEnglish; tag = ParentOf(tag)) {
            auto const language = mTables->languages.find(tag);
            if (language != mTables->languages.end()) {
                auto const& texts = language->second.texts;
                if (auto const found = texts.find(path); found != texts.end()) {
                    return {found->second, mTables->RuleOf(tag)};
                }
            }
            isEnglish = tag == kEnglish;
        }
    }
    auto const equals = literal.find('=');
    return {utility::Utf16(equals == literal.npos ? literal : literal.substr(equals + 1)),
            mTables->RuleOf(kEnglish)};
}

} // namespace brindle::proplist
