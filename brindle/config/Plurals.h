#pragma once

#include <brindle/Export.h>

#include <cstdint>
#include <string_view>

namespace brindle::config {

/// The forms that a language may have for counted things; English has `kOne` and `kOther`. In texts
/// they are called "zero", "one", "two", "few", "many" and "other".
enum class PluralCategory {
    kZero, ///< "zero"
    kOne,  ///< "one"
    kTwo,  ///< "two"
    kFew,  ///< "few"
    kMany, ///< "many"
    kOther ///< "other", which every language has
};

/// Which form a language uses for a number: `inInteger` is its magnitude without the fraction.
///
///     PluralCategory French(std::uint64_t inInteger, bool) {
///         return inInteger <= 1 ? PluralCategory::kOne : PluralCategory::kOther;
///     }
using PluralRule = PluralCategory (*)(std::uint64_t inInteger, bool inHasFraction);

/// The rule of a language that is given by its code, such as "pl" or "pt-BR"; that of English if
/// the library has none for it. Any thread may call.
[[nodiscard]] BRN_API PluralRule PluralRuleFor(std::string_view inLanguage) noexcept;

} // namespace brindle::config
