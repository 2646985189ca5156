#pragma once

#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>

#include <cstddef>
#include <optional> // the smallest header that defines std::hash

// Points and rectangles as keys of unordered containers, such as the tiles of a cache:
//
//     std::unordered_map<geom::PointT<std::int32_t>, Tile> tiles;

namespace brindle::geom::impl {

template <typename T, typename... Rest>
std::size_t HashOf(T inFirst, Rest... inRest) noexcept {
    std::size_t hash = std::hash<T>()(inFirst);
    // The step by which hashes are combined commonly: the golden ratio in binary.
    ((hash ^= std::hash<T>()(inRest) + 0x9e3779b97f4a7c15u + (hash << 6) + (hash >> 2)), ...);
    return hash;
}

} // namespace brindle::geom::impl

/// Agrees with `==`.
template <typename T>
struct std::hash<brindle::geom::PointT<T>> {
    /// Equal values have equal hashes.
    std::size_t operator()(brindle::geom::PointT<T> const& inPoint) const noexcept {
        return brindle::geom::impl::HashOf(inPoint.x, inPoint.y);
    }
};

/// Agrees with `==`.
template <typename T>
struct std::hash<brindle::geom::RectT<T>> {
    /// Equal values have equal hashes.
    std::size_t operator()(brindle::geom::RectT<T> const& inRect) const noexcept {
        return brindle::geom::impl::HashOf(inRect.x, inRect.y, inRect.width, inRect.height);
    }
};
