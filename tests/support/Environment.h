#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace brindle::tests {

/// Sets variables of the environment, or removes those without a value, as long as it lives.
class Environment {
public:
    using Values = std::map<std::string, std::optional<std::string>>;

    explicit Environment(Values const& inValues) {
        for (auto const& [name, value] : inValues) {
            char const* const old = std::getenv(name.c_str());
            mOld[name] = old != nullptr ? std::optional<std::string>(old) : std::nullopt;
        }
        Apply(inValues);
    }
    Environment(Environment const&) = delete;
    Environment& operator=(Environment const&) = delete;
    ~Environment() { Apply(mOld); }

private:
    static void Apply(Values const& inValues) {
        for (auto const& [name, value] : inValues) {
            if (value) {
                ::setenv(name.c_str(), value->c_str(), 1);
            } else {
                ::unsetenv(name.c_str());
            }
        }
    }

    Values mOld;
};

} // namespace brindle::tests
