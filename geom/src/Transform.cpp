#include <brindle/geom/Transform.h>

#include <algorithm>
#include <cmath>

namespace brindle::geom {

// Compiled without contraction into fused multiply-add, as Matrix.cpp is.

template <typename T>
MatrixT<T> Rotation(T inRadians) noexcept {
    T const cosine = std::cos(inRadians);
    T const sine = std::sin(inRadians);
    MatrixT<T> matrix(true);
    matrix[0][0] = cosine;
    matrix[0][1] = sine;
    matrix[1][0] = -sine;
    matrix[1][1] = cosine;
    return matrix;
}

template <typename T>
MatrixT<T> operator*(MatrixT<T> const& inLHS, MatrixT<T> const& inRHS) noexcept {
    MatrixT<T> product;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            product[row][column] = inLHS[row][0] * inRHS[0][column] +
                                   inLHS[row][1] * inRHS[1][column] +
                                   inLHS[row][2] * inRHS[2][column];
        }
    }
    return product;
}

template <typename T>
PointT<T> operator*(PointT<T> const& inPoint, MatrixT<T> const& inMatrix) noexcept {
    auto const size = TransformedSize(inPoint, inMatrix);
    return {size.x + inMatrix[2][0], size.y + inMatrix[2][1]};
}

template <typename T>
PointT<T> TransformedSize(PointT<T> const& inSize, MatrixT<T> const& inMatrix) noexcept {
    return {inSize.x * inMatrix[0][0] + inSize.y * inMatrix[1][0],
            inSize.x * inMatrix[0][1] + inSize.y * inMatrix[1][1]};
}

template <typename T>
RectT<T> TransformedBounds(RectT<T> const& inRect, MatrixT<T> const& inMatrix) noexcept {
    T const right = inRect.x + inRect.width;
    T const bottom = inRect.y + inRect.height;
    PointT<T> const first = PointT<T>{inRect.x, inRect.y} * inMatrix;
    PointT<T> least = first;
    PointT<T> most = first;
    for (auto const& corner :
         {PointT<T>{right, inRect.y}, PointT<T>{inRect.x, bottom}, PointT<T>{right, bottom}}) {
        auto const point = corner * inMatrix;
        least = {std::min(least.x, point.x), std::min(least.y, point.y)};
        most = {std::max(most.x, point.x), std::max(most.y, point.y)};
    }
    return {least.x, least.y, most.x - least.x, most.y - least.y};
}

#define BRN_INSTANTIATE(T)                                                                         \
    template BRN_API MatrixT<T> Rotation(T) noexcept;                                              \
    template BRN_API MatrixT<T> operator*(MatrixT<T> const&, MatrixT<T> const&) noexcept;          \
    template BRN_API PointT<T> operator*(PointT<T> const&, MatrixT<T> const&) noexcept;            \
    template BRN_API PointT<T> TransformedSize(PointT<T> const&, MatrixT<T> const&) noexcept;      \
    template BRN_API RectT<T> TransformedBounds(RectT<T> const&, MatrixT<T> const&) noexcept

BRN_INSTANTIATE(float);
BRN_INSTANTIATE(double);

#undef BRN_INSTANTIATE

} // namespace brindle::geom
