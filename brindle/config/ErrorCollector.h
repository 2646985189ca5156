#pragma once

#include <brindle/Export.h>
#include <brindle/config/Errors.h>
#include <brindle/utility/TextTypes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brindle::config {

/// An error as it was raised.
struct BRN_API CollectedError {
    ErrorLevel level;                       ///< whether the program could go on
    std::string key;                        ///< with its default text
    std::uint32_t module;                   ///< who raised it
    std::int32_t code;                      ///< tells the errors of a module apart
    bool isDeferrable;                      ///< whether it may be shown later
    std::array<ReplacementValue, 4> values; ///< of `^1` to `^4`

    /// The text of the key with the values, in the host's language.
    [[nodiscard]] UTF16String Sentence() const;
    /// Raises the error again, on the thread that calls, as `ThrowError` does.
    void Raise() const;
};

/// Collects the errors that its thread raises while it lives, instead of their being shown. Of
/// several on one thread the newest collects.
///
///     auto const convert = [&](File const& file) { // a task of a pool
///         ErrorCollector collector;
///         Convert(file);
///         results.Add(file, collector.TakeErrors());
///     };
///
/// Which error is shown is the error manager's decision, so the installed one has to take part:
/// `PrintingErrorManager` does, `CollectingErrorManager` does for any other manager, and a manager
/// of the host does if it calls `Collect`. A fatal error is collected like any other, and the
/// function that raised it goes on. An error that a `DeferredErrorReporter` records is collected
/// when it is replayed, on the thread that calls `Finish`.
///
/// A local variable: it is destroyed by the thread that made it.
class BRN_API ErrorCollector {
public:
    ErrorCollector() noexcept;
    ~ErrorCollector();
    ErrorCollector(ErrorCollector const&) = delete;
    ErrorCollector& operator=(ErrorCollector const&) = delete;
    static void* operator new(std::size_t) = delete;

    /// In the order in which they were raised.
    std::vector<CollectedError> const& Errors() const noexcept { return mErrors; }
    /// Returns the errors, and leaves none.
    [[nodiscard]] std::vector<CollectedError> TakeErrors() noexcept;

    /// For error managers: gives an error to the newest collector of the calling thread. Returns
    /// false if there is none. Throws only `std::bad_alloc`.
    static bool Collect(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth);

private:
    static thread_local ErrorCollector* S_newestP;

    std::vector<CollectedError> mErrors;
    ErrorCollector* mOuter;
};

} // namespace brindle::config
