#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/Values.h>
#include <brindle/time/FrameRate.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/Guid.h>

#include <cstdint>

/// Times, frame rates and identifiers as values of a property list:
///
///     list.Set("in", clip.In());
///     auto const in = list.Get("in", time::TickTime());
namespace brindle::proplist {

/// The number of ticks, a 64-bit integer.
template <>
struct PropertyValue<time::TickTime> {
    using Stored = std::int64_t; ///< the number of ticks
    /// Exact.
    static Stored ToStored(time::TickTime const& inTime) noexcept { return inTime.GetTicks(); }
    /// Always succeeds.
    static bool FromStored(Stored inStored, time::TickTime& outTime) noexcept {
        outTime = time::TickTime::TicksToTickTime(inStored);
        return true;
    }
};

/// The number of ticks in a frame, a 64-bit integer.
template <>
struct PropertyValue<time::FrameRate> {
    using Stored = std::int64_t; ///< the number of ticks in a frame
    /// Exact.
    static Stored ToStored(time::FrameRate const& inRate) noexcept {
        return inRate.GetTicksPerFrame();
    }
    /// Always succeeds.
    static bool FromStored(Stored inStored, time::FrameRate& outRate) noexcept {
        outRate = time::FrameRate::Create(inStored);
        return true;
    }
};

/// The text form. Any other text is no value, and is not reported.
template <>
struct PropertyValue<utility::Guid> {
    using Stored = UTF8String; ///< the text form
    /// As `Guid::AsString` writes it.
    BRN_API static Stored ToStored(utility::Guid const& inGuid);
    /// Returns false, and leaves the identifier alone, for any other text.
    BRN_API static bool FromStored(Stored const& inStored, utility::Guid& outGuid);
};

} // namespace brindle::proplist
