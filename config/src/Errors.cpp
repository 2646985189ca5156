#include <brindle/config/Errors.h>

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/ErrorManager.h>

#include <cstddef>
#include <limits>
#include <string_view>

namespace brindle::config {

namespace {

/// "$$$/path=default text"
constexpr bool IsKey(std::string_view inText) {
    auto const equals = inText.find('=');
    return inText.substr(0, 4) == "$$$/" && equals > 4 && equals < inText.size() - 1;
}

constexpr char const* KeyOf(ErrorCode const& inError) {
    return inError.key;
}
constexpr char const* KeyOf(OperationKey const& inOperation) {
    return inOperation.key;
}
constexpr char const* KeyOf(CauseKey const& inCause) {
    return inCause.key;
}
constexpr char const* KeyOf(char const* inKey) {
    return inKey;
}

/// All keys have the form of keys, and no two are the same.
template <typename Row, std::size_t kCount>
constexpr bool HaveSoundKeys(Row const (&inRows)[kCount]) {
    for (std::size_t i = 0; i < kCount; ++i) {
        std::string_view const key = KeyOf(inRows[i]);
        if (!IsKey(key)) {
            return false;
        }
        for (std::size_t j = 0; j < i; ++j) {
            if (key == KeyOf(inRows[j])) {
                return false;
            }
        }
    }
    return true;
}

static_assert(HaveSoundKeys(kErrorCodes));
static_assert(HaveSoundKeys(kFileKeys));
static_assert(HaveSoundKeys(kOperationKeys));
static_assert(HaveSoundKeys(kCauseKeys));

} // namespace

void ThrowError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule, std::int32_t inCode,
                bool inDeferrable, ReplacementValue const& inFirst,
                ReplacementValue const& inSecond, ReplacementValue const& inThird,
                ReplacementValue const& inFourth) {
    ErrorManager::Get()->ThrowErrorDispatch(inLevel, inKey, inModule, inCode, inDeferrable, inFirst,
                                            inSecond, inThird, inFourth);
}

void TestThrowError(bool inFatal) {
    if (inFatal) {
        ThrowError(kError_FatalTest);
    } else {
        ThrowError(kError_NonFatalTest, std::numeric_limits<std::int32_t>::min(),
                   std::numeric_limits<std::uint32_t>::max(), 29.2334);
    }
}

} // namespace brindle::config
