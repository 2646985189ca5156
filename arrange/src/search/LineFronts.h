#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

/// The extents along and across a line of children, in whole units. Sums stay below 2^61.
struct LineExtent {
    std::int64_t main = 0;
    std::int64_t cross = 0;
};

/// A group, in the directions of its lines.
struct LineProblem {
    std::vector<std::vector<LineExtent>> children; ///< each child's alternatives, at least one
    LineExtent spacing;                            ///< between neighbours in a line; between lines
    LineExtent margins;
};

/// A run of children, each with the shortest of its alternatives that are no higher than `cross`.
struct Line {
    std::int64_t main = 0; ///< with the gaps
    std::int64_t cross = 0;
    std::uint32_t nextStep = 0; ///< how far the line has walked along its front
};

/// The trade of height against length in every run of the children: a higher line admits more of
/// its children's alternatives, and so can be shorter. The sizes of a line that no other one beats
/// are its front. A line walks along it, from its lowest and longest form on, and never back.
class LineFronts {
public:
    explicit LineFronts(LineProblem const& inProblem);

    /// The lowest line of the children from `inFirst` to before `inEnd`. The line of one child is
    /// that child; a longer line has no negative height.
    Line Lowest(std::uint32_t inFirst, std::uint32_t inEnd) const noexcept;

    /// The lowest lines that start with `inFirst`, by rising number of children from 1 on.
    std::vector<Line> LowestFrom(std::uint32_t inFirst) const;

    /// The extent of a line after `inNext` was appended to it.
    LineExtent Appended(LineExtent inLine, LineExtent inNext) const noexcept {
        return {inLine.main + mSpacing + inNext.main,
                std::max({inLine.cross, inNext.cross, std::int64_t{0}})};
    }

    /// Lets the line of the children from `inFirst` to before `inEnd` grow in height as little as
    /// needed for a length of at most `inBound`. Returns false if no height suffices.
    [[nodiscard]] bool Fit(Line& ioLine, std::uint32_t inFirst, std::uint32_t inEnd,
                           std::int64_t inBound) const noexcept {
        return ioLine.main <= inBound || Grow(ioLine, inFirst, inEnd, inBound);
    }

    /// The shortest of a child's alternatives that are no higher than `inCross`. There must be one.
    std::int64_t LeastMain(std::uint32_t inChild, std::int64_t inCross) const noexcept {
        auto const& front = mChildren[inChild];
        auto const above =
            std::upper_bound(front.begin(), front.end(), inCross,
                             [](std::int64_t c, LineExtent const& e) { return c < e.cross; });
        return (above - 1)->main;
    }

    std::uint32_t Count() const noexcept { return static_cast<std::uint32_t>(mChildren.size()); }

private:
    struct Step {
        std::int64_t cross; // the height that the line must have
        std::int64_t gain;  // by which the line is shorter then
        std::uint32_t child;
    };

    Line Settled(LineExtent inSum, std::uint32_t inFirst, std::uint32_t inEnd) const noexcept;
    [[nodiscard]] bool Grow(Line& ioLine, std::uint32_t inFirst, std::uint32_t inEnd,
                            std::int64_t inBound) const noexcept;

    std::vector<std::vector<LineExtent>> mChildren; // by rising height and falling length
    std::vector<Step> mSteps;                       // by rising height
    std::int64_t mSpacing;
};

} // namespace brindle::arrange::impl
