#pragma once

#include <brindle/Export.h>
#include <brindle/debug/Contract.h>

#include <atomic>
#include <cstdint>
#include <string>

/// @file
/// Checks for developers. A failed check is silent until a developer sets the key "assert.enabled"
/// of the debug database to "true"; from then on it asks what to do:
///
///     BRN_ASSERT(count <= capacity);
///     BRN_ASSERT_MESSAGE(frame != nullptr, "frame " + std::to_string(number) + " is missing");

namespace brindle::debug {

/// What `DisplayAssert` returns.
inline constexpr std::int32_t kAssert_Break = 0;
inline constexpr std::int32_t kAssert_IgnoreOnce = 3; ///< go on, and ask again at the next failure
/// Go on, and do not ask again about this place.
inline constexpr std::int32_t kAssert_IgnoreAlways = 4;
inline constexpr std::int32_t kAssert_Failed = -1; ///< the dialog failed, or the process is ending

/// Reports a failed check by `DisplayAssert`, with the expression, the process's command line and
/// the place. Returns true if the caller is to call `BRN_DebugBreak`, and sets `ioIgnoreAlways` if
/// it is not to report this check again. A message that is null or empty is left out. Throws
/// nothing but `std::bad_alloc`. Any thread may call.
[[nodiscard]] BRN_API bool BreakAfterAssertDialog(bool& ioIgnoreAlways, char const* inExpression,
                                                  char const* inMessage, char const* inFile,
                                                  std::int32_t inLine, char const* inFunction);

/// Traces heading and body if the category "Assert" lets volume 0 through. If the developer has
/// switched asserts on, then asks what to do and waits for the answer:
///
/// - in a dialog of the program `brindle-dialog`;
/// - without a display or that program, on the controlling terminal, if the process runs in its
///   foreground;
/// - without either, nobody is asked, and the result is `kAssert_IgnoreOnce`, as it is when asserts
///   are switched off.
///
/// "Disable Asserts" makes this and all later calls return `kAssert_IgnoreAlways`. "Kill Process"
/// ends the process with status 255, without any clean-up. If the dialog cannot be shown, or gives
/// an unknown answer, calls `BRN_DebugBreak` and returns `kAssert_Break` or `kAssert_Failed`.
/// Throws nothing. Any thread may call; two threads may show two dialogs. Null counts as an empty
/// text.
BRN_API std::int32_t DisplayAssert(char const* inHeading, char const* inBody) noexcept;

/// Chooses whether failed checks are printed to standard output, and no dialog opens; initially
/// they are not. Any thread may call.
BRN_API void SetAssertWriteToStdOut(bool inWrite) noexcept;

/// Names the program that shows the dialogs, in the system's form, for a host that brings its own
/// copy of `brindle-dialog`. An empty path stands for the program that is installed with the
/// library. Any thread may call.
BRN_API void SetDialogProgram(std::string const& inNativePath);

namespace impl {

/// For the macros. Returns false at once if the flag is set; otherwise reports the failure by
/// `BreakAfterAssertDialog`, and sets the flag if the developer chose to ignore it always.
[[nodiscard, gnu::cold]] BRN_API bool FailAssert(std::atomic<bool>& ioIgnoreAlways,
                                                 char const* inExpression, char const* inMessage,
                                                 char const* inFile, std::int32_t inLine,
                                                 char const* inFunction);
[[nodiscard, gnu::cold]] inline bool FailAssert(std::atomic<bool>& ioIgnoreAlways,
                                                char const* inExpression,
                                                std::string const& inMessage, char const* inFile,
                                                std::int32_t inLine, char const* inFunction) {
    return FailAssert(ioIgnoreAlways, inExpression, inMessage.c_str(), inFile, inLine, inFunction);
}

} // namespace impl

} // namespace brindle::debug

/// Checks a condition that only a mistake of the program can make false. The check costs one
/// branch; "Ignore Always" is remembered for each place of use. It is an expression of type `void`.
/// The message, a `char const*` or `std::string`, is evaluated only if the check fails.
///
/// With `BRN_DISABLE_ASSERTS` defined, which a client chooses for each source, neither the
/// condition nor the message is evaluated, and nothing of them is left in the program.
#ifdef BRN_DISABLE_ASSERTS
#define BRN_ASSERT(...) static_cast<void>(false && static_cast<bool>(__VA_ARGS__))
#define BRN_ASSERT_MESSAGE(inExpression, inMessage)                                                \
    static_cast<void>(false && ((inExpression) ? true : (static_cast<void>(inMessage), true)))
#else
#define BRN_ASSERT(...) BRN_ASSERT_AS(static_cast<bool>(__VA_ARGS__), #__VA_ARGS__, "")
/// `BRN_ASSERT` with a message, which is evaluated only if the check fails.
#define BRN_ASSERT_MESSAGE(inExpression, inMessage)                                                \
    BRN_ASSERT_AS(static_cast<bool>(inExpression), #inExpression, inMessage)
#endif

/// The lambda returns the flag of the place, which is constant-initialised.
#define BRN_ASSERT_AS(inHolds, inText, inMessage)                                                  \
    (__builtin_expect(inHolds, true) ? static_cast<void>(0)                                        \
     : ::brindle::debug::impl::FailAssert(                                                         \
           []() noexcept -> ::std::atomic<bool>& {                                                 \
               static ::std::atomic<bool> ignoreAlways{false};                                     \
               return ignoreAlways;                                                                \
           }(),                                                                                    \
           inText, inMessage, __FILE__, __LINE__, __func__)                                        \
         ? ::brindle::debug::BRN_DebugBreak()                                                      \
         : static_cast<void>(0))
