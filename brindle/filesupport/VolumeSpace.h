#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>

#include <cstdint>

namespace brindle::filesupport {

/// In bytes. What is available may be taken by others at any moment, so that a copy may still fail.
///
/// Beside the standard library: as `std::filesystem::space_info`.
struct VolumeSpace {
    std::uint64_t available = 0; ///< what this user may still write
    std::uint64_t total = 0;     ///< what the volume holds altogether
};

/// Compares all fields.
constexpr bool operator==(VolumeSpace const& inLHS, VolumeSpace const& inRHS) noexcept {
    return inLHS.available == inRHS.available && inLHS.total == inRHS.total;
}

constexpr bool operator!=(VolumeSpace const& inLHS, VolumeSpace const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// The space of the volume that holds the directory:
///
///     bool const isEnough = SpaceOf(backup).available >= needed;
///
/// Throws `dir_not_found_exception` if there is no such directory, `dir_exception` on any other
/// failure. Any thread may call.
[[nodiscard]] BRN_API VolumeSpace SpaceOf(Dir const& inDir);

} // namespace brindle::filesupport
