#include <brindle/geom/Matrix.h>

#include <brindle/config/ErrorCodes.h>

#include <cmath>

namespace brindle::geom {

namespace {

constexpr double kLargestSingular = 1e-9;

} // namespace

// Every operation rounds to T by itself, so that all machines give the same elements: this file is
// compiled without contraction into fused multiply-add.
template <typename T>
bool MatrixT<T>::Invert(bool inThrowIfSingular) {
    MatrixT const m = *this;
    MatrixT& result = *this;

    T const d = m[1][0] * m[0][1] - m[1][1] * m[0][0];
    bool const isRegular = static_cast<double>(std::abs(d)) > kLargestSingular; // false for NaN
    if (!isRegular) {
        SetZero();
        if (inThrowIfSingular) {
            config::ThrowError(config::kError_SingularMatrix);
        }
        return false;
    }
    T const r = 1 / d;
    result[0][0] = -m[1][1] * r;
    result[0][1] = m[0][1] * r;
    result[1][0] = m[1][0] * r;
    result[1][1] = -m[0][0] * r;
    result[2][0] = -(result[0][0] * m[2][0] + result[1][0] * m[2][1]);
    result[2][1] = -(result[0][1] * m[2][0] + result[1][1] * m[2][1]);
    return true;
}

template class MatrixT<float>;
template class MatrixT<double>;

} // namespace brindle::geom
