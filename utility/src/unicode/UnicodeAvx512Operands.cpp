#include "utility/src/unicode/UnicodeAvx512Operands.h"

#if defined(__x86_64__)

namespace brindle::utility::impl::avx512 {
namespace {

constexpr EncodeOperands MakeEncodeOperands() {
    EncodeOperands operands;
    for (unsigned i = 0; i < 64; ++i) {
        operands.lowBytes[i] = static_cast<std::uint8_t>(2 * i);
    }
    for (unsigned i = 0; i < 32; ++i) {
        operands.threeBytes[3 * i] = static_cast<std::uint8_t>(2 * i);
        operands.threeBytes[3 * i + 1] = static_cast<std::uint8_t>(2 * i + 1);
        operands.threeBytes[3 * i + 2] = static_cast<std::uint8_t>(64 + 2 * i);
    }
    return operands;
}

} // namespace

constexpr DecodeOperands kDecode;
constexpr EncodeOperands kEncode = MakeEncodeOperands();

} // namespace brindle::utility::impl::avx512

#endif
