#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::host {

/// The command line cannot be understood; `what()` says why.
class usage_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What follows a verb: options "--name" or "--name=value", and operands. Options may stand
/// anywhere up to "--", behind which everything is an operand. So is a word like "-5" anywhere, in
/// which neither a letter nor another dash follows the dash.
class Arguments {
public:
    /// Throws `usage_error` for an option that is not among `inKnownOptions`, names without dashes.
    Arguments(std::vector<std::string> const& inWords,
              std::vector<std::string> const& inKnownOptions);

    std::vector<std::string> const& Operands() const noexcept { return mOperands; }
    bool Has(std::string const& inOption) const { return mOptions.count(inOption) != 0; }

    /// The value of an option, `inDefault` if the option is not there.
    std::string Text(std::string const& inOption, std::string const& inDefault) const;

    /// The value of an option as a whole number from `inLeast` to `inMost`, `inDefault` if the
    /// option is not there. Throws `usage_error` for any other value.
    std::uint32_t Number(std::string const& inOption, std::uint32_t inLeast, std::uint32_t inMost,
                         std::uint32_t inDefault) const;

private:
    std::map<std::string, std::string> mOptions;
    std::vector<std::string> mOperands;
};

/// A word as a whole number from `inLeast` to `inMost`. Throws `usage_error`, in which `inName`
/// names the word, for any other.
std::uint32_t WholeNumber(std::string const& inName, std::string const& inText,
                          std::uint32_t inLeast, std::uint32_t inMost);

} // namespace brindle::host
