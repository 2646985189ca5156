#pragma once

#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/proplist/Values.h>

/// Rectangles and points as values of a property list:
///
///     list.Set("frame", geom::RectT<float>{0, 0, 640, 480});
///     auto const frame = list.Get<geom::RectT<float>>("frame");
///
/// They are the arrays that `utils::WriteRectF32` and its siblings write, of x, y, width and
/// height, or x and y. The first elements of a longer array are read; a shorter one is no value.
namespace brindle::proplist {

/// A rectangle as an array of four numbers.
template <typename T>
struct PropertyValue<geom::RectT<T>> {
    /// What is stored: x, y, width and height.
    using Stored = std::vector<T>;
    /// The four numbers.
    static Stored ToStored(geom::RectT<T> const& inRect) {
        return {inRect.x, inRect.y, inRect.width, inRect.height};
    }
    /// Returns false, and leaves the rectangle alone, for fewer than four numbers.
    static bool FromStored(Stored const& inStored, geom::RectT<T>& outRect) {
        if (inStored.size() < 4) {
            return false;
        }
        outRect = {inStored[0], inStored[1], inStored[2], inStored[3]};
        return true;
    }
};

/// A point as an array of two numbers.
template <typename T>
struct PropertyValue<geom::PointT<T>> {
    /// What is stored: x and y.
    using Stored = std::vector<T>;
    /// The two numbers.
    static Stored ToStored(geom::PointT<T> const& inPoint) { return {inPoint.x, inPoint.y}; }
    /// Returns false, and leaves the point alone, for fewer than two numbers.
    static bool FromStored(Stored const& inStored, geom::PointT<T>& outPoint) {
        if (inStored.size() < 2) {
            return false;
        }
        outPoint = {inStored[0], inStored[1]};
        return true;
    }
};

} // namespace brindle::proplist
