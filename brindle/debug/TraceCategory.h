#pragma once

#include <brindle/Export.h>
#include <brindle/debug/Trace.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextTypes.h>

#include <atomic>
#include <cstdint>

namespace brindle::debug {

namespace impl {

/// What is known of the answers for one category, which every question about it reads: twice the
/// highest volume that may pass, plus 1 if even for that and below the database has to be asked.
struct TraceAnswers {
    std::atomic<std::int64_t> limit;
};

/// Whether the volume may pass.
inline bool MayPass(std::int64_t inLimit, std::int32_t inVolume) noexcept {
    return std::int64_t{2} * inVolume <= inLimit;
}
inline bool HasToAsk(std::int64_t inLimit) noexcept {
    return (inLimit & 1) != 0;
}

} // namespace impl

/// A name whose volume is asked often, made once and kept:
///
///     debug::TraceCategory const kDecoder("decoder"_utf8);
///     BRN_TRACE(kDecoder, 3, "frame " << frame << " was dropped");
///
/// It answers as `TraceEnabled` does at every moment, for one relaxed load. Copies are handles of
/// the same category. Making one asks nothing and writes nothing. Any thread may use it, before
/// `main` and after it too. Its name is kept until the process ends.
class BRN_API TraceCategory {
public:
    /// The category of this name, which is listed once it has been asked about.
    explicit TraceCategory(UTF8String const& inName);

    /// Whether a message of this volume is wanted; see `TraceEnabled`.
    [[nodiscard]] bool Enabled(std::int32_t inVolume) const {
        std::int64_t const limit = mAnswers->limit.load(std::memory_order_relaxed);
        return impl::MayPass(limit, inVolume) && (!impl::HasToAsk(limit) || Ask(inVolume));
    }

    /// As given to the constructor. It lives until the process ends.
    [[nodiscard]] UTF8String const& Name() const noexcept;

private:
    bool Ask(std::int32_t inVolume) const;

    impl::TraceAnswers const* mAnswers;
};

} // namespace brindle::debug

/// Traces a message of a `TraceCategory`, and evaluates what is behind the volume only if the
/// message is wanted. The pieces stand between "<<" as for an `oUTF8StringStream`; numbers are
/// written in the form of the classic locale.
#define BRN_TRACE(inCategory, inVolume, ...)                                                       \
    do {                                                                                           \
        ::brindle::debug::TraceCategory const& brnCategory = (inCategory);                         \
        std::int32_t const brnVolume = (inVolume);                                                 \
        if (brnCategory.Enabled(brnVolume)) {                                                      \
            ::brindle::oUTF8StringStream brnMessage;                                               \
            brnMessage.imbue(std::locale::classic());                                              \
            brnMessage << __VA_ARGS__;                                                             \
            ::brindle::debug::TraceMessage(brnCategory.Name(), brnVolume, brnMessage.str());       \
        }                                                                                          \
    } while (false)
