#pragma once

#include "host/console/ConsoleTarget.h"

namespace brindle::host {

/// Executes lines in this process.
class LocalTarget : public ConsoleTarget {
public:
    std::string Prompt() const override { return "brindle> "; }
    void Execute(std::string const& inLine) override;
    void ShowHelp() override;
    LineCompletions Complete(std::string const& inLine, std::size_t inCursor) override;
};

} // namespace brindle::host
