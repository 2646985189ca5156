#pragma once

#include <brindle/Export.h>

#include <type_traits>

namespace brindle::geom {

/// A 3 by 3 matrix of `float` or `double`: nine elements, row by row, and nothing else.
///
/// As a transform of the plane it acts on row vectors, the point (x, y) being the row (x, y, 1) on
/// its left: the upper left 2 by 2 block is the linear part, `[2][0]` and `[2][1]` are the
/// translation, and the third column is (0, 0, 1). Products are in brindle/geom/Transform.h.
///
/// Beside the standard library: in memory a `std::array` of nine elements, compared and not
/// ordered.
template <typename T>
class BRN_API MatrixT {
    static_assert(std::is_floating_point_v<T>);

public:
    constexpr MatrixT() noexcept : MatrixT(false) {}

    /// The identity with `true`. With `false` the elements are unspecified until they are set;
    /// copying or reading them before that is harmless.
    explicit constexpr MatrixT(bool inIdentity) noexcept {
        if (inIdentity) {
            SetIdentity();
        }
    }

    /// All nine elements become 0.
    constexpr void SetZero() noexcept {
        for (T& element : mElements) {
            element = 0;
        }
    }

    /// 1 on the diagonal, 0 elsewhere: the transform that changes nothing.
    constexpr void SetIdentity() noexcept {
        SetZero();
        mElements[0] = mElements[4] = mElements[8] = 1;
    }

    /// The first of the three elements of a row, 0 to 2. The index is not checked.
    constexpr T* operator[](int inRow) noexcept { return mElements + 3 * inRow; }
    constexpr T const* operator[](int inRow) const noexcept { return mElements + 3 * inRow; }

    /// Replaces the matrix by its inverse as a transform of the plane, and returns true. The third
    /// column is neither read nor written.
    ///
    /// A matrix is singular if the magnitude of the determinant of its linear part is at most 1e-9,
    /// or not a number. Then all nine elements become 0, `config::kError_SingularMatrix` is raised
    /// if `inThrowIfSingular`, and the result is false.
    [[nodiscard]] bool Invert(bool inThrowIfSingular);

private:
    // Initialised in any case, so that copying is defined; the compiler removes stores that are
    // overwritten at once.
    T mElements[9]{};
};

/// Compares the elements as numbers.
template <typename T>
constexpr bool operator==(MatrixT<T> const& inLHS, MatrixT<T> const& inRHS) noexcept {
    bool isEqual = true;
    for (int i = 0; i < 9; ++i) {
        isEqual = isEqual && inLHS[0][i] == inRHS[0][i];
    }
    return isEqual;
}

template <typename T>
constexpr bool operator!=(MatrixT<T> const& inLHS, MatrixT<T> const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

extern template class MatrixT<float>;
extern template class MatrixT<double>;

} // namespace brindle::geom
