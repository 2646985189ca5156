#pragma once

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/Errors.h>

#include <cstdint>

/// @file
/// `ThrowError` in the form that hosts write most: what is always the same is left out, and the
/// values are of any type that a `ReplacementValue` takes.
///
///     constexpr config::ErrorCode kNoCodec{config::kErrorLevel_NonFatal, kMyModule, 1,
///                                          "$$$/viewer/NoCodec=No decoder for '^1'."};
///     config::Report(kNoCodec, file);
///     config::Report("$$$/viewer/Copied=^1 of ^2 files were copied.", done, count);
///
/// Every form hands a deferrable error to the installed error manager, which decides whether the
/// function returns, and throws `std::logic_error` if none is installed. An error has at most four
/// values.
namespace brindle::config {

/// An error with a level, a module and a code of its own. `inKey` is "$$$/path=default text".
template <typename... Values>
void Report(ErrorLevel inLevel, std::uint32_t inModule, std::int32_t inCode, char const* inKey,
            Values const&... inValues) {
    static_assert(sizeof...(Values) <= 4, "An error has at most four replacement values.");
    ReplacementValue const values[4] = {inValues...};
    ThrowError(inLevel, inKey, inModule, inCode, true, values[0], values[1], values[2], values[3]);
}

/// An error that is written down once, as the library's own are in `config/ErrorCodes.h`.
template <typename... Values>
void Report(ErrorCode const& inError, Values const&... inValues) {
    Report(inError.level, inError.module, inError.code, inError.key, inValues...);
}

/// A non-fatal error that nobody has to tell from others: of the module `kErrorModule_Host`, with
/// the code 0.
template <typename... Values>
void Report(char const* inKey, Values const&... inValues) {
    Report(kErrorLevel_NonFatal, kErrorModule_Host, 0, inKey, inValues...);
}

} // namespace brindle::config
