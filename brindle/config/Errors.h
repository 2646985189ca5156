#pragma once

#include <brindle/Export.h>
#include <brindle/config/ReplacementValue.h>

#include <cstdint>

namespace brindle::config {

/// How bad an error is: a fatal one leaves the program unable to go on, a non-fatal one does not.
enum ErrorLevel : std::int32_t {
    kErrorLevel_Fatal = 0,   ///< the program cannot go on
    kErrorLevel_NonFatal = 1 ///< the program goes on without what failed
};

/// Raises a reportable error: hands it to the error manager that the host has installed. The
/// library's own errors are in `config/ErrorCodes.h`; a client raises its own with a module number
/// of its own:
///
///     ThrowError(kErrorLevel_NonFatal, "$$$/viewer/NoCodec=No decoder for ^1.", kMyModule, 1,
///                true, codecName, {}, {}, {});
///
/// `inKey` is a NUL-terminated localisation key with its default text, "$$$/path=text", in which
/// `^1` to `^4` stand for the replacement values. The host decides whether this returns, so the
/// caller must be able to go on with what it has. Throws `std::logic_error` if no manager is
/// installed, and whatever the manager throws.
BRN_API void ThrowError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth);

/// The same with up to three values, an error that may be deferred unless it says otherwise:
///
///     ThrowError(kErrorLevel_NonFatal, "$$$/viewer/NoSpace=There is no space left.", kMyModule,
///     2);
inline void ThrowError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                       std::int32_t inCode, bool inDeferrable = true,
                       ReplacementValue const& inFirst = {}, ReplacementValue const& inSecond = {},
                       ReplacementValue const& inThird = {}) {
    ThrowError(inLevel, inKey, inModule, inCode, inDeferrable, inFirst, inSecond, inThird, {});
}

/// Raises an error for trying out an error manager: `kError_FatalTest`, or `kError_NonFatalTest`
/// with an integer, an unsigned integer and a double.
BRN_API void TestThrowError(bool inFatal);

} // namespace brindle::config
