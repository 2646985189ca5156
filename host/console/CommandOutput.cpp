#include "host/console/CommandOutput.h"

#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"

#include <brindle/console/Terminal.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/StringUtils.h>

#include <string>

namespace brindle::host {

namespace {

/// Control characters but line feeds and tabs become escapes.
std::string WithoutCommands(std::string const& inText) {
    std::string result;
    std::size_t start = 0;
    while (start < inText.size()) {
        auto const end = std::min(inText.find_first_of("\t\n", start), inText.size());
        result += EscapedText(inText.substr(start, end - start), "");
        result += inText.substr(end, 1);
        start = end + 1;
    }
    return result;
}

} // namespace

CommandOutput::int_type CommandOutput::overflow(int_type inUnit) {
    if (!traits_type::eq_int_type(inUnit, traits_type::eof())) {
        mText += traits_type::to_char_type(inUnit);
    }
    return traits_type::not_eof(inUnit);
}

std::streamsize CommandOutput::xsputn(std::uint16_t const* inUnits, std::streamsize inCount) {
    mText.append(inUnits, static_cast<std::size_t>(inCount));
    return inCount;
}

int CommandOutput::sync() {
    utility::ConvertLineEndings(utility::kLineEnding_LF, mText);
    auto const text = PlainText(mText);
    mText.clear();
    auto& out = utility::streams::Out;
    out << (console::OutputIsTerminal() ? WithoutCommands(text) : text) << std::flush;
    return out ? 0 : -1;
}

} // namespace brindle::host
