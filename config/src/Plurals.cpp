#include <brindle/config/Plurals.h>

namespace brindle::config {

namespace {

using Category = PluralCategory;

/// How the integer ends in decimal notation.
struct Ending {
    explicit Ending(std::uint64_t inInteger) : one(inInteger % 10), two(inInteger % 100) {}
    bool IsTeen() const noexcept { return two >= 11 && two <= 19; }
    bool IsFew() const noexcept { return one >= 2 && one <= 4 && (two < 12 || two > 14); }

    std::uint64_t one; ///< the last digit
    std::uint64_t two; ///< the last two digits
};

Category English(std::uint64_t inInteger, bool inHasFraction) {
    return inInteger == 1 && !inHasFraction ? Category::kOne : Category::kOther;
}

Category French(std::uint64_t inInteger, bool) {
    return inInteger <= 1 ? Category::kOne : Category::kOther;
}

Category Invariable(std::uint64_t, bool) {
    return Category::kOther;
}

Category Russian(std::uint64_t inInteger, bool inHasFraction) {
    Ending const ending(inInteger);
    if (inHasFraction) {
        return Category::kOther;
    }
    return ending.one == 1 && ending.two != 11 ? Category::kOne
           : ending.IsFew()                    ? Category::kFew
                                               : Category::kMany;
}

Category Croatian(std::uint64_t inInteger, bool inHasFraction) {
    auto const category = Russian(inInteger, inHasFraction);
    return category == Category::kMany ? Category::kOther : category;
}

Category Polish(std::uint64_t inInteger, bool inHasFraction) {
    if (inHasFraction) {
        return Category::kOther;
    }
    return inInteger == 1              ? Category::kOne
           : Ending(inInteger).IsFew() ? Category::kFew
                                       : Category::kMany;
}

Category Czech(std::uint64_t inInteger, bool inHasFraction) {
    if (inHasFraction) {
        return Category::kMany;
    }
    return inInteger == 1                     ? Category::kOne
           : inInteger >= 2 && inInteger <= 4 ? Category::kFew
                                              : Category::kOther;
}

Category Slovenian(std::uint64_t inInteger, bool inHasFraction) {
    auto const end = Ending(inInteger).two;
    if (inHasFraction || end == 3 || end == 4) {
        return Category::kFew;
    }
    return end == 1 ? Category::kOne : end == 2 ? Category::kTwo : Category::kOther;
}

Category Lithuanian(std::uint64_t inInteger, bool inHasFraction) {
    Ending const ending(inInteger);
    if (inHasFraction) {
        return Category::kMany;
    }
    if (ending.IsTeen() || ending.one == 0) {
        return Category::kOther;
    }
    return ending.one == 1 ? Category::kOne : Category::kFew;
}

Category Latvian(std::uint64_t inInteger, bool inHasFraction) {
    Ending const ending(inInteger);
    if (inHasFraction) {
        return Category::kOther;
    }
    return ending.one == 0 || ending.IsTeen() ? Category::kZero
           : ending.one == 1                  ? Category::kOne
                                              : Category::kOther;
}

Category Romanian(std::uint64_t inInteger, bool inHasFraction) {
    auto const end = Ending(inInteger).two;
    if (inHasFraction || inInteger == 0) {
        return Category::kFew;
    }
    return inInteger == 1          ? Category::kOne
           : end >= 1 && end <= 19 ? Category::kFew
                                   : Category::kOther;
}

Category Arabic(std::uint64_t inInteger, bool inHasFraction) {
    constexpr Category kSmall[] = {Category::kZero, Category::kOne, Category::kTwo};
    if (inHasFraction) {
        return Category::kOther;
    }
    if (inInteger <= 2) {
        return kSmall[inInteger];
    }
    auto const end = Ending(inInteger).two;
    return end >= 3 && end <= 10 ? Category::kFew : end >= 11 ? Category::kMany : Category::kOther;
}

Category Hebrew(std::uint64_t inInteger, bool inHasFraction) {
    return inInteger == 2 && !inHasFraction ? Category::kTwo : English(inInteger, inHasFraction);
}

struct {
    std::string_view languages; // two letters each, with a blank before each
    PluralRule rule;
} constexpr kRules[] = {
    {" am as bn fa fr gu hi hy kn pa pt zu", French},
    {" bm bo dz id ig ii ja jv km ko lo ms my sg su th to vi wo yo zh", Invariable},
    {" be ru uk", Russian},
    {" bs hr sr", Croatian},
    {" pl", Polish},
    {" cs sk", Czech},
    {" sl", Slovenian},
    {" lt", Lithuanian},
    {" lv", Latvian},
    {" mo ro", Romanian},
    {" ar", Arabic},
    {" he iw", Hebrew},
};

} // namespace

PluralRule PluralRuleFor(std::string_view inLanguage) noexcept {
    auto const code = inLanguage.substr(0, inLanguage.find_first_of("-_.@"));
    if (code.size() == 2) {
        char const letters[] = {' ', static_cast<char>(code[0] | 0x20),
                                static_cast<char>(code[1] | 0x20)};
        for (auto const& [languages, rule] : kRules) {
            if (languages.find(std::string_view(letters, sizeof letters)) != languages.npos) {
                return rule;
            }
        }
    }
    return English;
}

} // namespace brindle::config
