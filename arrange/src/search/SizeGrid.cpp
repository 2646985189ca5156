#include "arrange/src/search/SizeGrid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brindle::arrange::impl {

namespace {

using Size = geom::PointT<float>;

constexpr double kLargestFloat = std::numeric_limits<float>::max();
constexpr int kFloatBits = std::numeric_limits<float>::digits;
constexpr int kWholeBits = 60;

/// An upper bound of all sums of extents on this axis, in any layout. NaN if one of them is NaN.
double LargestSum(LayoutProblem const& inProblem, float Size::*inAxis) noexcept {
    auto const magnitude = [inAxis](Size const& s) {
        return std::abs(static_cast<double>(s.*inAxis));
    };
    auto const count = static_cast<double>(inProblem.children.size());
    double sum = count * magnitude(inProblem.spacing) + 4 * magnitude(inProblem.margins);
    for (auto const& alternatives : inProblem.children) {
        double largest = 0;
        for (Size const& size : alternatives) {
            largest = magnitude(size) <= largest ? largest : magnitude(size);
            if (std::isnan(largest)) {
                return largest;
            }
        }
        sum += largest;
    }
    return sum;
}

} // namespace

SizeGrid::SizeGrid(LayoutProblem const& inProblem) {
    double const width = LargestSum(inProblem, &Size::x);
    double const height = LargestSum(inProblem, &Size::y);
    mIsBounded = width <= kLargestFloat && height <= kLargestFloat;
    if (mIsBounded) {
        std::frexp(std::max(width, height), &mTop);
        mIsExact = IsExact(inProblem);
    }
}

bool SizeGrid::IsExact(LayoutProblem const& inProblem) const noexcept {
    auto const isMultiple = [this](float extent) {
        double const units = std::ldexp(static_cast<double>(extent), kFloatBits - mTop);
        return units == std::trunc(units);
    };
    auto const areMultiples = [&](Size const& s) { return isMultiple(s.x) && isMultiple(s.y); };
    return areMultiples(inProblem.spacing) && areMultiples(inProblem.margins) &&
           std::all_of(
               inProblem.children.begin(), inProblem.children.end(), [&](auto const& alternatives) {
                   return std::all_of(alternatives.begin(), alternatives.end(), areMultiples);
               });
}

LineExtent SizeGrid::Whole(LineSize inSize) const noexcept {
    auto const whole = [this](float extent) -> std::int64_t {
        return std::llround(std::ldexp(static_cast<double>(extent), kWholeBits - mTop));
    };
    return {whole(inSize.main), whole(inSize.cross)};
}

LineProblem SizeGrid::Lines(LayoutProblem const& inProblem, LayoutForm inForm) const {
    LineProblem lines;
    lines.spacing = Whole(Along(inForm, inProblem.spacing));
    lines.margins = Whole(Along(inForm, inProblem.margins));
    lines.children.reserve(inProblem.children.size());
    for (auto const& alternatives : inProblem.children) {
        std::vector<LineExtent>& extents = lines.children.emplace_back();
        extents.reserve(alternatives.size());
        for (Size const& size : alternatives) {
            extents.push_back(Whole(Along(inForm, size)));
        }
    }
    return lines;
}

} // namespace brindle::arrange::impl
