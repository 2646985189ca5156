#include "host/commandline/Arguments.h"

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

std::string Arguments::Text(std::string const& inOption, std::string const& inDefault) const {
    auto const found = mOptions.find(inOption);
    return found != mOptions.end() ? found->second : inDefault;
}

std::uint32_t Arguments::Number(std::string const& inOption, std::uint32_t inLeast,
                                std::uint32_t inMost, std::uint32_t inDefault) const {
    auto const found = mOptions.find(inOption);
    return found != mOptions.end() ? WholeNumber("--" + inOption, found->second, inLeast, inMost)
                                   : inDefault;
}

std::uint32_t WholeNumber(std::string const& inName, std::string const& inText,
                          std::uint32_t inLeast, std::uint32_t inMost) {
    std::uint32_t number = 0;
    auto const textEnd = inText.data() + inText.size();
    auto const [end, error] = std::from_chars(inText.data(), textEnd, number);
    if (error != std::errc() || end != textEnd || number < inLeast || number > inMost) {
        throw usage_error(inName + " takes a whole number from " + std::to_string(inLeast) +
                          " to " + std::to_string(inMost) + ", not '" + inText + "'");
    }
    return number;
}

} // namespace brindle::host
