#include "arrange/src/search/LineFronts.h"

#include <tuple>

namespace brindle::arrange::impl {

LineFronts::LineFronts(LineProblem const& inProblem)
    : mChildren(inProblem.children), mSpacing(inProblem.spacing.main) {
    for (std::uint32_t child = 0; child < Count(); ++child) {
        std::vector<LineExtent>& front = mChildren[child];
        std::sort(front.begin(), front.end(), [](LineExtent const& a, LineExtent const& b) {
            return std::tie(a.cross, a.main) < std::tie(b.cross, b.main);
        });
        auto const isNoShorter = [](LineExtent const& a, LineExtent const& b) {
            return b.main >= a.main;
        };
        front.erase(std::unique(front.begin(), front.end(), isNoShorter), front.end());
        for (std::size_t i = 1; i < front.size(); ++i) {
            mSteps.push_back({front[i].cross, front[i - 1].main - front[i].main, child});
        }
    }
    std::sort(mSteps.begin(), mSteps.end(),
              [](Step const& a, Step const& b) { return a.cross < b.cross; });
}

Line LineFronts::Lowest(std::uint32_t inFirst, std::uint32_t inEnd) const noexcept {
    LineExtent sum = mChildren[inFirst].front();
    for (std::uint32_t child = inFirst + 1; child < inEnd; ++child) {
        sum = Appended(sum, mChildren[child].front());
    }
    return Settled(sum, inFirst, inEnd);
}

std::vector<Line> LineFronts::LowestFrom(std::uint32_t inFirst) const {
    std::vector<Line> lines;
    lines.reserve(Count() - inFirst);
    LineExtent sum = mChildren[inFirst].front();
    lines.push_back(Settled(sum, inFirst, inFirst + 1));
    for (std::uint32_t child = inFirst + 1; child < Count(); ++child) {
        sum = Appended(sum, mChildren[child].front());
        lines.push_back(Settled(sum, inFirst, child + 1));
    }
    return lines;
}

/// The sum of the children's lowest alternatives is not yet a line: the highest of them decides the
/// line's height, and other children may have shorter alternatives at that height.
Line LineFronts::Settled(LineExtent inSum, std::uint32_t inFirst,
                         std::uint32_t inEnd) const noexcept {
    Line line{inSum.main, inSum.cross, 0};
    for (; line.nextStep < mSteps.size() && mSteps[line.nextStep].cross <= line.cross;
         ++line.nextStep) {
        Step const& step = mSteps[line.nextStep];
        if (step.child >= inFirst && step.child < inEnd) {
            line.main -= step.gain;
        }
    }
    return line;
}

bool LineFronts::Grow(Line& ioLine, std::uint32_t inFirst, std::uint32_t inEnd,
                      std::int64_t inBound) const noexcept {
    for (; ioLine.main > inBound && ioLine.nextStep < mSteps.size(); ++ioLine.nextStep) {
        Step const& step = mSteps[ioLine.nextStep];
        if (step.child >= inFirst && step.child < inEnd) {
            ioLine.main -= step.gain;
            ioLine.cross = step.cross;
        }
    }
    return ioLine.main <= inBound;
}

} // namespace brindle::arrange::impl
