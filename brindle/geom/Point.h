#pragma once

namespace brindle::geom {

/// A point of the plane, or a size with the width in `x` and the height in `y`. Used with `float`
/// and `std::int32_t`.
///
/// Beside the standard library: an aggregate, which structured bindings take apart; compared but
/// not ordered, since the plane has no order. brindle/geom/GeometryHash.h has its `std::hash`, and
/// brindle/geom/GeometryStreams.h inserts it into streams.
template <typename T>
struct PointT {
    T x{}; ///< to the right, or the width
    T y{}; ///< downward, or the height
};

/// Compares both numbers; a NaN equals nothing.
template <typename T>
constexpr bool operator==(PointT<T> const& inLHS, PointT<T> const& inRHS) noexcept {
    return inLHS.x == inRHS.x && inLHS.y == inRHS.y;
}

template <typename T>
constexpr bool operator!=(PointT<T> const& inLHS, PointT<T> const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

} // namespace brindle::geom
