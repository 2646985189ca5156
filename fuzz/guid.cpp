#include <brindle/utility/Guid.h>

#include "tests/ReportedErrors.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>

/// A text is accepted if it has the form and reported if not; an accepted one comes back in lower
/// case.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    using brindle::utility::Guid;

    static std::regex const kForm("[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}");
    brindle::tests::ReportedErrors errors;
    std::string text(inData, inData + inSize);
    bool const hasForm = inSize < 100 && std::regex_match(text, kForm);
    Guid const guid(text);
    Guid const wide(brindle::UTF16String(text.begin(), text.end()));
    Guid const terminated(text.c_str());
    bool const isAccepted = errors.Take().empty();
    bool isRight = hasForm == isAccepted;
    if (isAccepted) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char inByte) {
            return static_cast<char>(std::tolower(inByte));
        });
        isRight = isRight && guid == wide && guid == terminated &&
                  guid.AsString() == brindle::UTF16String(text.begin(), text.end());
    }
    if (!isRight) {
        std::abort();
    }
    return 0;
}
