#include "platform/TextEncoding.h"

#include "platform/portable/ByteEscapes.h"

namespace brindle::platform {

UTF16String FromCodePage(std::string const& inText) {
    UTF16String text;
    AppendText(text, inText.data(), inText.size(), ByteForm::kText);
    return text;
}

std::string ToCodePage(UTF16String const& inText) {
    std::string bytes;
    AppendBytes(bytes, inText.data(), inText.size(), ByteForm::kText);
    return bytes;
}

} // namespace brindle::platform
