#pragma once

namespace brindle::geom {

/// A point of the plane, or a size with the width in `x` and the height in `y`. Used with `float`
/// and `std::int32_t`.
///
/// A plain value like `std::pair`, but not ordered, since the plane has no order; hashed by
/// brindle/geom/GeometryHash.h and inserted into streams by brindle/geom/GeometryStreams.h.
template <typename T>
struct PointT {
    T x{};
    T y{};
};

template <typename T>
constexpr bool operator==(PointT<T> const& inLHS, PointT<T> const& inRHS) noexcept {
    return inLHS.x == inRHS.x && inLHS.y == inRHS.y;
}

template <typename T>
constexpr bool operator!=(PointT<T> const& inLHS, PointT<T> const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

} // namespace brindle::geom
