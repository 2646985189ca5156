#pragma once

#include <brindle/Export.h>

#include <type_traits>

namespace brindle::geom {

/// A 3 by 3 matrix, for `float` and `double`: nine elements, row by row, and nothing else.
///
/// As a transform of the plane it acts on row vectors: the point (x, y) is the row (x, y, 1),
/// multiplied from the left. So the linear part is the upper left 2 by 2 block, the translation is
/// `[2][0]` and `[2][1]`, and the third column is (0, 0, 1).
template <typename T>
class BRN_API MatrixT {
    static_assert(std::is_floating_point_v<T>);

public:
    constexpr MatrixT() noexcept : MatrixT(false) {}

    /// The identity with `true`. With `false` the elements have no particular value, and whoever
    /// makes the matrix sets them; to copy or read them before that is harmless.
    explicit constexpr MatrixT(bool inIdentity) noexcept {
        if (inIdentity) {
            SetIdentity();
        }
    }

    constexpr void SetZero() noexcept {
        for (T& element : mElements) {
            element = 0;
        }
    }

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
    /// A matrix is singular if the determinant of its linear part is at most 1e-9 either way, or no
    /// number. Its nine elements become 0 and the result is false; with `inThrowIfSingular` that is
    /// first reported through `config::ThrowError`.
    bool Invert(bool inThrowIfSingular);

private:
    // Filled even where nobody asks for it: a value that was never set may not be copied, and the
    // compiler drops what is overwritten at once.
    T mElements[9]{};
};

extern template class MatrixT<float>;
extern template class MatrixT<double>;

} // namespace brindle::geom
