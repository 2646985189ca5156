#include <brindle/geom/GeometryHash.h>
#include <brindle/geom/GeometryStreams.h>
#include <brindle/geom/Transform.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/Unicode.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <unordered_set>

namespace brindle::geom {

namespace {

template <typename T>
class Transforms : public testing::Test {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(Transforms, Elements, );

template <typename T>
void ExpectNear(PointT<T> const& inActual, PointT<T> const& inExpected) {
    EXPECT_NEAR(inActual.x, inExpected.x, 1e-4);
    EXPECT_NEAR(inActual.y, inExpected.y, 1e-4);
}

TYPED_TEST(Transforms, AreCarriedOutFromLeftToRight) {
    using T = TypeParam;
    T const quarter = std::acos(T(0));
    ExpectNear(PointT<T>{3, 1} * Rotation(quarter), {-1, 3});
    ExpectNear(PointT<T>{3, 1} * (Scaling<T>(2, 5) * Translation<T>(10, 20)), {16, 25});
    ExpectNear(PointT<T>{3, 1} * (Translation<T>(10, 20) * Scaling<T>(2, 5)), {26, 105});

    auto matrix = Translation<T>(4, -7);
    matrix *= Rotation(T(0.7)) * Scaling<T>(3, -2);
    MatrixT<T> inverse = matrix;
    ASSERT_TRUE(inverse.Invert(false));
    ExpectNear(PointT<T>{-8, 6} * matrix * inverse, {-8, 6});
    ExpectNear(PointT<T>{-8, 6} * (matrix * inverse), {-8, 6});
    EXPECT_NE(matrix, inverse);
    EXPECT_EQ(matrix * MatrixT<T>(true), matrix);
    // A size is the distance of two points.
    ExpectNear(TransformedSize(PointT<T>{2, 9}, matrix), [&] {
        auto const from = PointT<T>{1, 1} * matrix;
        auto const to = PointT<T>{3, 10} * matrix;
        return PointT<T>{to.x - from.x, to.y - from.y};
    }());
    // The third column belongs to the product of matrices, and not to that of a point.
    MatrixT<T> third(true);
    third[0][2] = 5;
    EXPECT_EQ((third * third)[0][2], 10);
    EXPECT_EQ((PointT<T>{3, 1} * third), (PointT<T>{3, 1}));
}

TYPED_TEST(Transforms, TheBoundsHoldTheCorners) {
    using T = TypeParam;
    EXPECT_EQ(TransformedBounds(RectT<T>{1, 2, 3, 4}, Scaling<T>(-2, 1)), (RectT<T>{-8, 2, 6, 4}));
    auto const bounds = TransformedBounds(RectT<T>{0, 0, 2, 2}, Rotation(std::atan(T(1))));
    ExpectNear(PointT<T>{bounds.x, bounds.y}, {-std::sqrt(T(2)), 0});
    ExpectNear(PointT<T>{bounds.width, bounds.height}, {std::sqrt(T(8)), std::sqrt(T(8))});
}

TEST(Geometry, IsInsertedIntoEveryStreamAndHashedAsItIsCompared) {
    std::ostringstream narrow;
    narrow.width(20);
    narrow << PointT<float>{1.5f, -2} << RectT<std::int32_t>{1, 2, 3, 4} << MatrixT<double>(true);
    EXPECT_EQ(narrow.str(), "(1.5, -2)(1, 2, 3, 4)(1, 0, 0, 0, 1, 0, 0, 0, 1)");
    oUTF16StringStream wide;
    wide << PointT<std::int32_t>{7, 8};
    EXPECT_EQ(wide.str(), u"(7, 8)"_utf16);
    oUTF8StringStream bytes;
    bytes << PointT<std::int32_t>{7, 8};
    EXPECT_EQ(bytes.str(), "(7, 8)"_utf8);

    std::unordered_set<PointT<std::int32_t>> points;
    std::unordered_set<std::size_t> hashes;
    for (std::int32_t x = -20; x < 20; ++x) {
        for (std::int32_t y = -20; y < 20; ++y) {
            points.insert({x, y});
            hashes.insert(std::hash<RectT<std::int32_t>>()({x, y, y, x}));
        }
    }
    EXPECT_EQ(points.size(), 1600u);
    EXPECT_GT(hashes.size(), 1590u);
    EXPECT_EQ(std::hash<PointT<float>>()({0.0f, 1}), std::hash<PointT<float>>()({-0.0f, 1}));
}

} // namespace

} // namespace brindle::geom
