#pragma once

#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <streambuf>

namespace brindle::host {

/// What commands print, on its way to standard output: UTF-8, with the system's line ends. A
/// terminal gets no control characters but line feeds and tabs.
class CommandOutput : public std::basic_streambuf<std::uint16_t> {
public:
    CommandOutput() = default;
    CommandOutput(CommandOutput const&) = delete;
    CommandOutput& operator=(CommandOutput const&) = delete;

protected:
    int_type overflow(int_type inUnit) override;
    std::streamsize xsputn(std::uint16_t const* inUnits, std::streamsize inCount) override;
    /// Writes what has been collected.
    int sync() override;

private:
    UTF16String mText;
};

} // namespace brindle::host
