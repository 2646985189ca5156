#include <brindle/geom/Matrix.h>

#include "tests/support/RecordingErrorManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace brindle::geom {

namespace {

template <typename T>
class Matrices : public testing::Test {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Matrices, Elements, );

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
double const kSmall = std::ldexp(1, -13);

/// A linear part, and whether it has an inverse in float and in double.
struct {
    double a, b, c, d;
    bool isRegular[2];
} const kBlocks[] = {
    {2, 3, -1, 4, {true, true}},
    {0, 1e-4, 1e-4, 0, {true, true}},
    {1e-5, 0, 0, 1e-5, {false, false}},
    {1, 0, 0, 1e-9, {false, false}},
    {1, 2, 2, 4, {false, false}},
    {1, kNan, 1, 1, {false, false}},
    // In float the product of the diagonal rounds to 1, so that the determinant is 0; a fused
    // multiply-add would give another one.
    {1 + kSmall, 1, 1, 1 - kSmall, {false, true}},
};

TYPED_TEST(Matrices, InvertUndoesTheTransformOrReportsAndLeavesZero) {
    using T = TypeParam;
    static_assert(sizeof(MatrixT<T>) == 9 * sizeof(T));
    tests::RecordingErrorManager errors;
    std::string const report = "1 107 0 $$$/brn/geom/matrix/UI=Matrix cannot be inverted.\n";
    for (auto const& block : kBlocks) {
        for (bool const throws : {false, true}) {
            MatrixT<T> m;
            double const elements[] = {block.a, block.b, 7, block.c, block.d, 8, 3, -5, 9};
            std::transform(elements, elements + 9, m[0],
                           [](double d) { return static_cast<T>(d); });
            MatrixT<T> inverse(m);
            bool const isRegular = block.isRegular[std::is_same_v<T, double>];
            ASSERT_EQ(inverse.Invert(throws), isRegular) << block.a << ' ' << block.b;
            EXPECT_EQ(errors.TakeLines(), isRegular || !throws ? "" : report);
            T const x = 2 * m[0][0] - m[1][0] + m[2][0]; // where the point (2, -1) goes
            T const y = 2 * m[0][1] - m[1][1] + m[2][1];
            for (int i = 0; i < 3; ++i) {
                T const back = isRegular ? x * inverse[0][i] + y * inverse[1][i] + inverse[2][i]
                                         : inverse[0][i] + inverse[1][i] + inverse[2][i];
                double const expected[] = {2, -1, x * 7 + y * 8 + 9};
                EXPECT_NEAR(back, isRegular ? expected[i] : 0, 0.01);
            }
        }
    }
}

} // namespace

} // namespace brindle::geom
