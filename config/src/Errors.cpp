#include <brindle/config/Errors.h>

#include <brindle/config/ErrorManager.h>

#include <limits>

namespace brindle::config {

namespace {

constexpr char kFatalTestKey[] = "$$$/brn/config/Error/test/fataltest=This is a fatal exception.";
constexpr char kNonFatalTestKey[] = "$$$/brn/config/Error/test/nonfataltest=This is a non-fatal "
                                    "exception. int:^1, uint:^2, double:^3";
constexpr std::int32_t kCode_NonFatalTest = 20;
constexpr std::int32_t kCode_FatalTest = 21;

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
        ThrowError(kErrorLevel_Fatal, kFatalTestKey, kErrorModule_Config, kCode_FatalTest, true, {},
                   {}, {}, {});
    } else {
        ThrowError(kErrorLevel_NonFatal, kNonFatalTestKey, kErrorModule_Config, kCode_NonFatalTest,
                   true, std::numeric_limits<std::int32_t>::min(),
                   std::numeric_limits<std::uint32_t>::max(), 29.2334, {});
    }
}

} // namespace brindle::config
