#include "console/src/listen/SocketNames.h"

#include "platform/LocalSocket.h"

#include <brindle/utility/Unicode.h>

#include <charconv>
#include <string_view>

namespace brindle::console {

namespace {

constexpr std::size_t kLongestProcessId = 10;
constexpr std::size_t kLongestName = platform::kLongestSocketName - kLongestProcessId - 1;
constexpr std::string_view kDigits = "0123456789ABCDEF";

std::string EscapedUnit(UTF16String const& inName, std::size_t& ioPlace) {
    std::uint16_t const unit = inName[ioPlace];
    bool const isLeadingDot = unit == u'.' && ioPlace == 0;
    if (unit < u' ' || unit == 0x7F || unit == u'/' || unit == u'%' || isLeadingDot) {
        ++ioPlace;
        return {'%', kDigits[unit >> 4], kDigits[unit & 0xF]};
    }
    bool const isPair = utility::UnicodeSurrogate(unit) == utility::kSurrogate_High &&
                        ioPlace + 1 < inName.size() &&
                        utility::UnicodeSurrogate(inName[ioPlace + 1]) == utility::kSurrogate_Low;
    std::size_t const count = isPair ? 2 : 1;
    auto const bytes = utility::UTF16to8(inName.substr(ioPlace, count));
    ioPlace += count;
    return {bytes.begin(), bytes.end()};
}

/// Undoes the escapes; nothing if the text has others.
std::optional<UTF16String> Unescaped(std::string_view inText) {
    UTF8String bytes;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        if (inText[i] != '%') {
            bytes.push_back(static_cast<std::uint8_t>(inText[i]));
            continue;
        }
        auto const high = kDigits.find(inText.substr(i).size() > 2 ? inText[i + 1] : '%');
        auto const low = kDigits.find(inText.substr(i).size() > 2 ? inText[i + 2] : '%');
        if (high == std::string_view::npos || low == std::string_view::npos) {
            return {};
        }
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        i += 2;
    }
    return utility::UTF8to16(bytes);
}

} // namespace

std::string EscapedProgramName(UTF16String const& inName) {
    std::string escaped;
    for (std::size_t i = 0; i < inName.size();) {
        auto const next = EscapedUnit(inName, i);
        if (escaped.size() + next.size() > kLongestName) {
            break;
        }
        escaped += next;
    }
    return escaped.empty() ? "%00" : escaped;
}

std::string SocketName(UTF16String const& inName, std::uint32_t inProcessId) {
    return EscapedProgramName(inName) + '.' + std::to_string(inProcessId);
}

std::optional<ListeningProgram> ProgramOf(std::string const& inSocketName) {
    std::string_view const whole = inSocketName;
    auto const dot = whole.rfind('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    auto const digits = whole.substr(dot + 1);
    ListeningProgram program;
    auto const read =
        std::from_chars(digits.data(), digits.data() + digits.size(), program.processId);
    auto const name = Unescaped(whole.substr(0, dot));
    if (!name || read.ec != std::errc() || SocketName(*name, program.processId) != inSocketName) {
        return {};
    }
    program.name = *name;
    return program;
}

} // namespace brindle::console
