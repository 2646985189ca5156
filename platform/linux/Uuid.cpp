#include "platform/Uuid.h"

#include "platform/linux/FileDescriptor.h"

#include <sys/random.h>

namespace brindle::platform {

Result<std::array<std::uint8_t, 16>> CreateUuid() {
    std::array<std::uint8_t, 16> bytes{};
    auto const count = Uninterrupted([&] { return ::getrandom(bytes.data(), bytes.size(), 0); });
    // So few bytes come all at once or not at all.
    if (count != static_cast<ssize_t>(bytes.size())) {
        return {{}, kError_GeneralFailure};
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80); // the standard's own variant
    return {bytes, kError_None};
}

} // namespace brindle::platform
