#include "host/Arguments.h"

#include <algorithm>
#include <charconv>

namespace brindle::host {

namespace {

bool LooksLikeOption(std::string const& inWord) {
    char const second = inWord.size() < 2 || inWord[0] != '-' ? '\0' : inWord[1];
    return second == '-' || (second >= 'a' && second <= 'z') || (second >= 'A' && second <= 'Z');
}

} // namespace

Arguments::Arguments(std::vector<std::string> const& inWords,
                     std::vector<std::string> const& inKnownOptions) {
    bool optionsEnded = false;
    for (std::string const& word : inWords) {
        if (optionsEnded || !LooksLikeOption(word)) {
            mOperands.push_back(word);
        } else if (word == "--") {
            optionsEnded = true;
        } else {
            std::size_t const equals = word.find('=');
            std::string const name = word.substr(0, equals);
            bool const isKnown =
                std::any_of(inKnownOptions.begin(), inKnownOptions.end(),
                            [&name](std::string const& inKnown) { return name == "--" + inKnown; });
            if (!isKnown) {
                throw usage_error("unknown option '" + name + "'");
            }
            mOptions[name.substr(2)] = equals == std::string::npos ? "" : word.substr(equals + 1);
        }
    }
}

std::uint32_t Arguments::Number(std::string const& inOption, std::uint32_t inLeast,
                                std::uint32_t inMost, std::uint32_t inDefault) const {
    auto const found = mOptions.find(inOption);
    if (found == mOptions.end()) {
        return inDefault;
    }
    std::string const& text = found->second;
    std::uint32_t number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < inLeast ||
        number > inMost) {
        throw usage_error("--" + inOption + " takes a whole number from " +
                          std::to_string(inLeast) + " to " + std::to_string(inMost) + ", not '" +
                          text + "'");
    }
    return number;
}

} // namespace brindle::host
