#include "platform/Paths.h"
#include "platform/TextEncoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void Require(bool inHolds) {
    if (!inHolds) {
        std::abort();
    }
}

bool BeginsLikeADrive(std::string const& inBytes) {
    return inBytes.size() >= 2 && inBytes[1] == ':' && (inBytes[0] | 0x20) >= 'a' &&
           (inBytes[0] | 0x20) <= 'z';
}

} // namespace

/// Every byte string comes back from text, and any text at all is taken.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    using namespace brindle;

    std::string const bytes(inData, inData + inSize);
    Require(platform::ToCodePage(platform::FromCodePage(bytes)) == bytes);

    auto const native = platform::NativePath(platform::PathFromNative(bytes));
    if (bytes.find('\0') != std::string::npos) {
        Require(native.error == platform::kError_InvalidName);
    } else {
        Require(native && native.value == (BeginsLikeADrive(bytes) ? "./" + bytes : bytes));
    }

    UTF16String text(inSize / sizeof(std::uint16_t), 0);
    if (!text.empty()) {
        std::memcpy(text.data(), inData, text.size() * sizeof(std::uint16_t));
    }
    auto const path = platform::NativePath(text);
    if (path) {
        Require(path.value.find('\0') == std::string::npos);
        platform::PathFromNative(path.value);
    }
    return 0;
}
