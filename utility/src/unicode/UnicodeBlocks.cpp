#include "utility/src/unicode/UnicodeBlocks.h"

namespace brindle::utility::impl {

UnicodeProgress FinishDecoding(std::uint8_t const* inText, std::size_t inCount,
                               UnicodeProgress inDone, std::uint16_t* outUnits) noexcept {
    auto [done, units] = inDone;
    // A sequence that the end of a block cuts is decoded again from its start.
    if (done >= 3) {
        if (inText[done - 1] >= 0xC0) {
            done -= 1;
        } else if (inText[done - 2] >= 0xE0) {
            done -= 2;
        } else if (inText[done - 3] >= 0xF0) {
            done -= 3;
            units -= 1;
        }
    }
    if (done == inCount) {
        return {done, units};
    }
    UnicodeProgress const rest =
        kPortableUnicodeKernels.DecodeUTF8(inText + done, inCount - done, outUnits + units);
    return {done + rest.consumed, units + rest.produced};
}

} // namespace brindle::utility::impl
