#include "host/commandline/Arguments.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace brindle::host {

namespace {

bool LooksLikeOption(std::string const& inWord) {
    char const second = inWord.size() < 2 || inWord[0] != '-' ? '\0' : inWord[1];
    return second == '-' || (second >= 'a' && second <= 'z') || (second >= 'A' && second <= 'Z');
}

bool Contains(std::vector<std::string> const& inTexts, std::string const& inText) {
    return std::find(inTexts.begin(), inTexts.end(), inText) != inTexts.end();
}

} // namespace

Arguments::Arguments(std::vector<std::string> const& inWords,
                     std::vector<std::string> const& inKnownOptions) {
    bool optionsEnded = false;
    for (auto word = inWords.begin(); word != inWords.end(); ++word) {
        if (optionsEnded || !LooksLikeOption(*word)) {
            mOperands.push_back(*word);
            continue;
        }
        if (*word == "--") {
            optionsEnded = true;
            continue;
        }
        std::size_t const equals = word->find('=');
        std::string const dashedName = word->substr(0, equals);
        std::string const name = dashedName.substr(std::min<std::size_t>(dashedName.size(), 2));
        bool const takesValue = Contains(inKnownOptions, name + '=');
        if (dashedName[1] != '-' || !(takesValue || Contains(inKnownOptions, name))) {
            throw usage_error("unknown option '" + dashedName + "'");
        }
        if (!takesValue && equals != std::string::npos) {
            throw usage_error(dashedName + " takes no value");
        }
        if (!takesValue) {
            mOptions[name] = "";
        } else if (equals != std::string::npos) {
            mOptions[name] = word->substr(equals + 1);
        } else if (std::next(word) != inWords.end()) {
            mOptions[name] = *++word;
        } else {
            throw usage_error(dashedName + " needs a value");
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
