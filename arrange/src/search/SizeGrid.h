#pragma once

#include "arrange/src/search/LayoutSearch.h"
#include "arrange/src/search/LineFronts.h"

namespace brindle::arrange::impl {

/// The sizes of a problem in whole units: multiples of a power of two, so fine that no bit is lost
/// unless extents differ by more than ten orders of magnitude, and so coarse that no sum overflows.
class SizeGrid {
public:
    explicit SizeGrid(LayoutProblem const& inProblem);

    /// Whether single precision holds every sum of the sizes, be it rounded. False also if any is
    /// not finite. What follows may be used only of a bounded problem.
    bool IsBounded() const noexcept { return mIsBounded; }

    /// Whether single precision holds every sum, in whatever order, without rounding.
    bool IsExact() const noexcept { return mIsExact; }

    /// The problem as the lines of a form see it, in whole units.
    LineProblem Lines(LayoutProblem const& inProblem, LayoutForm inForm) const;

private:
    LineExtent Whole(LineSize inSize) const noexcept;
    bool IsExact(LayoutProblem const& inProblem) const noexcept;

    bool mIsBounded = false;
    bool mIsExact = false;
    int mTop = 0; // every sum is below two to this power
};

} // namespace brindle::arrange::impl
