#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::host {

/// The command line is wrong; `what()` says why.
class usage_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The words after a verb: options, "--name", "--name=value" or "--name value", and operands.
/// Options may stand anywhere before "--"; every word after it is an operand. A word such as "-5",
/// whose dash is followed by neither a letter nor another dash, is an operand everywhere, and so is
/// "-".
class Arguments {
public:
    /// `inKnownOptions` are names without dashes, with "=" at the end if the option takes a value.
    /// Throws `usage_error` for any other option, and for a value that is missing or superfluous.
    Arguments(std::vector<std::string> const& inWords,
              std::vector<std::string> const& inKnownOptions);

    std::vector<std::string> const& Operands() const noexcept { return mOperands; }
    bool Has(std::string const& inOption) const { return mOptions.count(inOption) != 0; }

    /// The value of an option; `inDefault` if the option is not given.
    std::string Text(std::string const& inOption, std::string const& inDefault) const;

    /// The value of an option as a whole number from `inLeast` to `inMost`; `inDefault` if the
    /// option is not given. Throws `usage_error` for any other value.
    std::uint32_t Number(std::string const& inOption, std::uint32_t inLeast, std::uint32_t inMost,
                         std::uint32_t inDefault) const;

private:
    std::map<std::string, std::string> mOptions;
    std::vector<std::string> mOperands;
};

/// Reads a whole number from `inLeast` to `inMost`. Throws `usage_error` for any other text; its
/// message calls the text by `inName`.
std::uint32_t WholeNumber(std::string const& inName, std::string const& inText,
                          std::uint32_t inLeast, std::uint32_t inMost);

} // namespace brindle::host
