#include "utility/src/numbers/Separators.h"

#include <atomic>
#include <cstdint>

namespace brindle::utility {

namespace {

/// Both in one number, the decimal separator in the upper half, so that no thread sees one without
/// the other; 0 until they have been read.
std::atomic<std::uint32_t> S_separators{0};

constexpr std::uint16_t kNoBreakSpace = u'\u00A0';

} // namespace

platform::NumberSeparators UserSeparators() {
    auto const both = S_separators.load(std::memory_order_relaxed);
    if (both == 0) {
        // Other threads may do this at the same time, and store the same.
        auto separators = platform::UserNumberSeparators();
        // A decimal comma and the default for groups would be the same.
        if (separators.thousands == separators.decimal) {
            separators.thousands = kNoBreakSpace;
        }
        SetUserSeparators(separators);
        return separators;
    }
    return {static_cast<std::uint16_t>(both >> 16), static_cast<std::uint16_t>(both & 0xFFFF)};
}

void SetUserSeparators(platform::NumberSeparators inSeparators) noexcept {
    S_separators.store(std::uint32_t{inSeparators.decimal} << 16 | inSeparators.thousands,
                       std::memory_order_relaxed);
}

} // namespace brindle::utility
