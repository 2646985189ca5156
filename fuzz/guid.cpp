#include <brindle/utility/Guid.h>

#include "tests/support/RecordingErrorManager.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <regex>

/// A well-formed text is formatted again as its lower case, and any other text is reported.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    using brindle::UTF16String;
    using brindle::utility::Guid;

    static std::regex const kForm("[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}");
    brindle::tests::RecordingErrorManager errors;
    std::string text(inData, inData + inSize);
    Guid const guid(text);
    bool isRight = errors.TakeLines().empty() == (inSize == 36 && std::regex_match(text, kForm));
    UTF16String const wide(text.begin(), text.end());
    bool const isSame = Guid(text.c_str()) == Guid(wide);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char inByte) { return static_cast<char>(std::tolower(inByte)); });
    isRight &= guid == Guid() || guid.AsString() == UTF16String(text.begin(), text.end());
    if (!isRight || !isSame) {
        std::abort();
    }
    return 0;
}
