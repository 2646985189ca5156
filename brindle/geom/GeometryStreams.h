#pragma once

#include <brindle/geom/Matrix.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>

#include <iosfwd>

namespace brindle::geom {

// Insertion into streams of any unit type, for logs and tests, with numbers as the stream writes
// them. A field width is dropped.
//
//     std::cout << rect; // (0, 0, 1920, 1080)

namespace impl {

/// Inserts the elements between parentheses.
template <typename Stream, typename First, typename... Rest>
Stream& InsertElements(Stream& ioStream, First const& inFirst, Rest const&... inRest) {
    ioStream.width(0);
    ioStream << '(' << inFirst;
    ((ioStream << ',' << ' ' << inRest), ...);
    ioStream << ')';
    return ioStream;
}

} // namespace impl

/// Inserts "(x, y)".
template <typename Unit, typename Traits, typename T>
std::basic_ostream<Unit, Traits>& operator<<(std::basic_ostream<Unit, Traits>& ioStream,
                                             PointT<T> const& inPoint) {
    return impl::InsertElements(ioStream, inPoint.x, inPoint.y);
}

/// Inserts "(x, y, width, height)".
template <typename Unit, typename Traits, typename T>
std::basic_ostream<Unit, Traits>& operator<<(std::basic_ostream<Unit, Traits>& ioStream,
                                             RectT<T> const& inRect) {
    return impl::InsertElements(ioStream, inRect.x, inRect.y, inRect.width, inRect.height);
}

/// Inserts the nine elements, row by row: "(1, 0, 0, 0, 1, 0, 0, 0, 1)".
template <typename Unit, typename Traits, typename T>
std::basic_ostream<Unit, Traits>& operator<<(std::basic_ostream<Unit, Traits>& ioStream,
                                             MatrixT<T> const& inMatrix) {
    T const* const m = inMatrix[0];
    return impl::InsertElements(ioStream, m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]);
}

} // namespace brindle::geom
