#pragma once

#include "arrange/src/search/LayoutSearch.h"
#include "arrange/src/search/LineFronts.h"

namespace brindle::arrange::impl {

/// The sizes of a problem in whole units of a power of two. The unit is so fine that no bit is lost
/// unless extents differ by more than ten orders of magnitude, and so coarse that no sum overflows.
class SizeGrid {
public:
    explicit SizeGrid(LayoutProblem const& inProblem);

    /// Whether all sizes are finite and no sum of them overflows single precision. The functions
    /// below may be called only if it is true.
    bool IsBounded() const noexcept { return mIsBounded; }

    /// Whether single precision represents every sum, in any order, without rounding.
    bool IsExact() const noexcept { return mIsExact; }

    /// The problem in the directions of the lines of a form, in whole units.
    LineProblem Lines(LayoutProblem const& inProblem, LayoutForm inForm) const;

private:
    LineExtent Whole(LineSize inSize) const noexcept;
    bool IsExact(LayoutProblem const& inProblem) const noexcept;

    bool mIsBounded = false;
    bool mIsExact = false;
    int mTop = 0; // every sum is below two to this power
};

} // namespace brindle::arrange::impl
