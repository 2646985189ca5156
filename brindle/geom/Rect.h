#pragma once

namespace brindle::geom {

/// A rectangle: its origin and its extent, not two corners. Used with `float` and `std::int32_t`.
///
/// Beside the standard library: an aggregate, compared, hashed and inserted into streams as
/// `PointT` is.
template <typename T>
struct RectT {
    T x{};      ///< left edge
    T y{};      ///< top edge
    T width{};  ///< extent to the right of `x`
    T height{}; ///< extent downward from `y`
};

/// Compares all four numbers; a NaN equals nothing.
template <typename T>
constexpr bool operator==(RectT<T> const& inLHS, RectT<T> const& inRHS) noexcept {
    return inLHS.x == inRHS.x && inLHS.y == inRHS.y && inLHS.width == inRHS.width &&
           inLHS.height == inRHS.height;
}

template <typename T>
constexpr bool operator!=(RectT<T> const& inLHS, RectT<T> const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

} // namespace brindle::geom
