#include <brindle/geom/Matrix.h>

#include "tests/ReportedErrors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>

namespace brindle::geom {

namespace {

template <typename T>
MatrixT<T> Matrix(std::initializer_list<double> inElements) {
    MatrixT<T> matrix;
    for (int i = 0; i < 9; ++i) {
        matrix[i / 3][i % 3] = static_cast<T>(inElements.begin()[i]);
    }
    return matrix;
}

template <typename T>
class Matrices : public testing::Test {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Matrices, Elements, );

TYPED_TEST(Matrices, InvertUndoesTheTransformAndKeepsTheThirdColumn) {
    using Matrix = MatrixT<TypeParam>;
    static_assert(sizeof(Matrix) == 9 * sizeof(TypeParam));
    std::mt19937 random;
    std::uniform_real_distribution<double> number(-4, 4);
    for (int round = 0; round < 1000; ++round) {
        double const determinantAtLeast = 0.5;
        Matrix const m =
            geom::Matrix<TypeParam>({number(random), number(random), 7, number(random),
                                     number(random), 8, number(random), number(random), 9});
        if (std::abs(m[0][0] * m[1][1] - m[0][1] * m[1][0]) < determinantAtLeast) {
            continue;
        }
        Matrix inverse(m);
        ASSERT_TRUE(inverse.Invert(true));
        auto const x = static_cast<TypeParam>(number(random));
        auto const y = static_cast<TypeParam>(number(random));
        TypeParam const thereX = x * m[0][0] + y * m[1][0] + m[2][0];
        TypeParam const thereY = x * m[0][1] + y * m[1][1] + m[2][1];
        double const tolerance = 1000 * std::numeric_limits<TypeParam>::epsilon();
        EXPECT_NEAR(x, thereX * inverse[0][0] + thereY * inverse[1][0] + inverse[2][0], tolerance);
        EXPECT_NEAR(y, thereX * inverse[0][1] + thereY * inverse[1][1] + inverse[2][1], tolerance);
        for (int row = 0; row < 3; ++row) {
            EXPECT_EQ(7 + row, inverse[row][2]);
        }
    }
}

TYPED_TEST(Matrices, SingularOnesBecomeZeroAndAreReportedIfThatIsAsked) {
    tests::ReportedErrors errors;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        double a, b, c, d;
        bool isRegular;
    } const blocks[] = {{1e-5, 0, 0, 1e-5, false}, {1e-4, 0, 0, 1e-4, true}, {1, 2, 2, 4, false},
                        {0, 1e-4, 1e-4, 0, true},  {nan, 0, 0, 1, false},    {1, nan, 0, 1, false},
                        {0, 0, 0, 0, false}};
    for (auto const& block : blocks) {
        for (bool const throws : {false, true}) {
            auto m = Matrix<TypeParam>({block.a, block.b, 1, block.c, block.d, 2, 3, 4, 5});
            EXPECT_EQ(block.isRegular, m.Invert(throws)) << block.a << ' ' << block.b;
            EXPECT_EQ(throws && !block.isRegular
                          ? "1 107 0 $$$/brn/geom/matrix/UI=Matrix cannot be inverted.\n"
                          : "",
                      errors.Take());
            for (int i = 0; i < 9 && !block.isRegular; ++i) {
                EXPECT_EQ(0, m[0][i]);
            }
        }
    }
    auto limit = Matrix<double>({1e-9, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_FALSE(limit.Invert(false)) << "the bound itself is singular";
}

TEST(Matrix, FloatsRoundAfterEveryOperation) {
    // The product (1+e)(1-e) rounds to 1, and 1 - 1 is 0; fused, 2^-26 would be left, which is over
    // the bound.
    double const e = std::ldexp(1, -13);
    auto m = Matrix<float>({1 + e, 1, 0, 1, 1 - e, 0, 0, 0, 1});
    EXPECT_FALSE(m.Invert(false));
    EXPECT_TRUE(Matrix<double>({1 + e, 1, 0, 1, 1 - e, 0, 0, 0, 1}).Invert(false));
}

} // namespace

} // namespace brindle::geom
