#pragma once

#include <brindle/Export.h>
#include <brindle/geom/Matrix.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>

namespace brindle::geom {

// Transforms of the plane. Matrices act on rows, so a product reads from left to right in the order
// in which its transforms are carried out:
//
//     auto const toWindow = Scaling(zoom, zoom) * Translation(origin.x, origin.y);
//     PointT<float> const corner = PointT<float>{clip.x, clip.y} * toWindow;
//
// There are instances for `float` and `double`. Every operation rounds by itself, so that all
// machines give the same results. None fails; what overflows is infinite.

/// The transform that moves points by a distance.
template <typename T>
[[nodiscard]] constexpr MatrixT<T> Translation(T inX, T inY) noexcept {
    MatrixT<T> matrix(true);
    matrix[2][0] = inX;
    matrix[2][1] = inY;
    return matrix;
}

/// The transform that multiplies the coordinates of points.
template <typename T>
[[nodiscard]] constexpr MatrixT<T> Scaling(T inX, T inY) noexcept {
    MatrixT<T> matrix(true);
    matrix[0][0] = inX;
    matrix[1][1] = inY;
    return matrix;
}

/// The rotation around the origin that takes the x axis toward the y axis: clockwise where y grows
/// downward. The angle is in radians.
template <typename T>
[[nodiscard]] BRN_API MatrixT<T> Rotation(T inRadians) noexcept;

/// The product of all nine elements: as a transform, the left matrix and then the right one.
template <typename T>
[[nodiscard]] BRN_API MatrixT<T> operator*(MatrixT<T> const& inLHS,
                                           MatrixT<T> const& inRHS) noexcept;

/// Multiplies from the right.
template <typename T>
MatrixT<T>& operator*=(MatrixT<T>& ioLHS, MatrixT<T> const& inRHS) noexcept {
    return ioLHS = ioLHS * inRHS;
}

/// Where the transform takes the point. Reads the first two columns, as `MatrixT::Invert` does.
template <typename T>
[[nodiscard]] BRN_API PointT<T> operator*(PointT<T> const& inPoint,
                                          MatrixT<T> const& inMatrix) noexcept;

/// The same for a distance or a size, which a translation does not change.
template <typename T>
[[nodiscard]] BRN_API PointT<T> TransformedSize(PointT<T> const& inSize,
                                                MatrixT<T> const& inMatrix) noexcept;

/// The smallest upright rectangle that holds the four transformed corners. Its width and height are
/// not negative.
template <typename T>
[[nodiscard]] BRN_API RectT<T> TransformedBounds(RectT<T> const& inRect,
                                                 MatrixT<T> const& inMatrix) noexcept;

extern template MatrixT<float> Rotation(float) noexcept;
extern template MatrixT<double> Rotation(double) noexcept;
extern template MatrixT<float> operator*(MatrixT<float> const&, MatrixT<float> const&) noexcept;
extern template MatrixT<double> operator*(MatrixT<double> const&, MatrixT<double> const&) noexcept;
extern template PointT<float> operator*(PointT<float> const&, MatrixT<float> const&) noexcept;
extern template PointT<double> operator*(PointT<double> const&, MatrixT<double> const&) noexcept;
extern template PointT<float> TransformedSize(PointT<float> const&, MatrixT<float> const&) noexcept;
extern template PointT<double> TransformedSize(PointT<double> const&,
                                               MatrixT<double> const&) noexcept;
extern template RectT<float> TransformedBounds(RectT<float> const&, MatrixT<float> const&) noexcept;
extern template RectT<double> TransformedBounds(RectT<double> const&,
                                                MatrixT<double> const&) noexcept;

} // namespace brindle::geom
