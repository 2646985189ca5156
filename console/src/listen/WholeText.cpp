#include "console/src/listen/WholeText.h"

#include <brindle/utility/UTF8Sequence.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>

namespace brindle::console {

std::string ToBytes(UTF16String const& inText) {
    std::string bytes;
    // The conversion ends at a NUL.
    for (std::size_t start = 0;;) {
        auto const end = inText.find(u'\0', start);
        auto const piece = utility::UTF16to8(inText.substr(start, end - start));
        bytes.append(piece.begin(), piece.end());
        if (end == UTF16String::npos) {
            return bytes;
        }
        bytes.push_back('\0');
        start = end + 1;
    }
}

std::optional<UTF16String> FromBytes(std::string const& inBytes) {
    for (std::size_t i = 0; i < inBytes.size();) {
        auto const sequence = utility::DecodeUTF8Sequence(inBytes.data() + i, inBytes.size() - i);
        if (sequence.length == 0) {
            return {};
        }
        i += sequence.length;
    }
    return utility::UTF8to16({inBytes.begin(), inBytes.end()});
}

} // namespace brindle::console
