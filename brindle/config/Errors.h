#pragma once

#include <brindle/Export.h>
#include <brindle/config/ReplacementValue.h>

#include <cstdint>

namespace brindle::config {

enum ErrorLevel : std::int32_t { kErrorLevel_Fatal = 0, kErrorLevel_NonFatal = 1 };

// Who raises an error: the `module` of `ThrowError`.
constexpr std::uint32_t kErrorModule_Config = 100;
constexpr std::uint32_t kErrorModule_PropList = 104;
constexpr std::uint32_t kErrorModule_Utility = 105;
constexpr std::uint32_t kErrorModule_Threads = 106;
constexpr std::uint32_t kErrorModule_Geom = 107;
constexpr std::uint32_t kErrorModule_None = 110; ///< what a reporter holds before its first error

/// Raises a reportable error: hands it to the error manager that the host installed.
///
/// `inKey` is a NUL-terminated localisation key with its default text, "$$$/path=text", in which
/// `^1` to `^4` stand for the replacement values. Whether this returns is the host's choice, and a
/// caller goes on with what it has if it does. Throws `std::logic_error` if no manager is
/// installed, and whatever the manager throws.
BRN_API void ThrowError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth);

/// Raises one of two errors made for trying out an error manager: a fatal one without values, or a
/// non-fatal one with an integer, an unsigned integer and a double.
BRN_API void TestThrowError(bool inFatal);

} // namespace brindle::config
