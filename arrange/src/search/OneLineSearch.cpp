#include "arrange/src/search/FrontSearch.h"

#include <limits>

namespace brindle::arrange::impl {

namespace {

class OneLineSearch : public IFrontSearch {
public:
    OneLineSearch(LineProblem const& inProblem, LineFronts const& inFronts, LineMargins inMargins)
        : mProblem(inProblem), mFronts(inFronts), mExtra(inProblem.margins) {
        if (inMargins == LineMargins::kInLineAndStack) {
            mExtra = {2 * mExtra.main, 2 * mExtra.cross};
            mLeast = inProblem.margins.main; // a stack is no narrower than its margins
        }
    }

    std::vector<LineExtent> Front() const override {
        std::vector<LineExtent> front;
        std::uint32_t const count = mFronts.Count();
        Line line = mFronts.Lowest(0, count);
        do {
            std::int64_t const cross = std::max<std::int64_t>(line.cross, 0);
            front.push_back({std::max(line.main + mExtra.main, mLeast), cross + mExtra.cross});
        } while (front.back().main > mLeast && mFronts.Fit(line, 0, count, line.main - 1));
        return front;
    }

    std::vector<LinePick> Picks(std::vector<LineExtent> const& inSizes) const override {
        std::vector<LinePick> picks;
        picks.reserve(inSizes.size());
        for (LineExtent const& size : inSizes) {
            picks.push_back(
                {Choose({size.main - mExtra.main, size.cross - mExtra.cross}), {mFronts.Count()}});
        }
        return picks;
    }

private:
    /// The greatest combination of alternatives whose line is no longer and no higher than
    /// `inLimits`.
    std::vector<std::uint32_t> Choose(LineExtent inLimits) const {
        std::uint32_t const count = mFronts.Count();
        std::int64_t room = inLimits.main - (count - 1) * mProblem.spacing.main;
        for (std::uint32_t child = 0; child < count; ++child) {
            room -= mFronts.LeastMain(child, inLimits.cross);
        }
        std::vector<std::uint32_t> chosen(count);
        for (std::uint32_t child = 0; child < count; ++child) {
            auto const& alternatives = mProblem.children[child];
            room += mFronts.LeastMain(child, inLimits.cross);
            auto const last = std::find_if(
                alternatives.rbegin(), alternatives.rend(), [&](LineExtent const& extent) {
                    return extent.cross <= inLimits.cross && extent.main <= room;
                });
            room -= last->main;
            chosen[child] = static_cast<std::uint32_t>(alternatives.rend() - last - 1);
        }
        return chosen;
    }

    LineProblem const& mProblem;
    LineFronts const& mFronts;
    LineExtent mExtra;
    std::int64_t mLeast = std::numeric_limits<std::int64_t>::min();
};

} // namespace

std::unique_ptr<IFrontSearch> SearchOneLine(LineProblem const& inProblem,
                                            LineFronts const& inFronts, LineMargins inMargins) {
    return std::make_unique<OneLineSearch>(inProblem, inFronts, inMargins);
}

} // namespace brindle::arrange::impl
