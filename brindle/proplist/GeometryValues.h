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

template <typename T>
struct PropertyValue<geom::RectT<T>> {
    using Stored = std::vector<T>;
    static Stored ToStored(geom::RectT<T> const& inRect) {
        return {inRect.x, inRect.y, inRect.width, inRect.height};
    }
    static bool FromStored(Stored const& inStored, geom::RectT<T>& outRect) {
        if (inStored.size() < 4) {
            return false;
        }
        outRect = {inStored[0], inStored[1], inStored[2], inStored[3]};
        return true;
    }
};

template <typename T>
struct PropertyValue<geom::PointT<T>> {
    using Stored = std::vector<T>;
    static Stored ToStored(geom::PointT<T> const& inPoint) { return {inPoint.x, inPoint.y}; }
    static bool FromStored(Stored const& inStored, geom::PointT<T>& outPoint) {
        if (inStored.size() < 2) {
            return false;
        }
        outPoint = {inStored[0], inStored[1]};
        return true;
    }
};

} // namespace brindle::proplist
