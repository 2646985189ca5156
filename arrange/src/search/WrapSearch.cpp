#include "arrange/src/search/FrontSearch.h"

#include <tuple>

namespace brindle::arrange::impl {

namespace {

constexpr std::int64_t kNever = std::int64_t{1} << 62; // no sum comes near

/// The best stack of lines of the children from one to the last.
struct Suffix {
    std::int64_t total = kNever; ///< the sum of the heights, with a gap behind each line
    std::int64_t widest = 0;     ///< the longest line; the least among the stacks of this total
};

/// Every run of the children as a line, for bounds on the length that fall from call to call.
class LineTable {
public:
    LineTable(LineFronts const& inFronts, std::int64_t inGap) : mFronts(inFronts), mGap(inGap) {
        std::uint32_t const count = inFronts.Count();
        mRows.reserve(count);
        for (std::uint32_t first = 0; first < count; ++first) {
            mRows.push_back(inFronts.LowestFrom(first));
            mReach.push_back(count);
        }
        if (count > 1) {
            --mReach[0]; // all children on one line are covered by another search
        }
        mSuffixes.resize(std::size_t{count} + 1);
        mSuffixes[count].total = 0;
    }

    /// Fits the lines to the bound, and finds the best stacks of lines no longer than it.
    void Narrow(std::int64_t inBound) {
        for (std::uint32_t first = mFronts.Count(); first-- > 0;) {
            std::vector<Line>& row = mRows[first];
            std::uint32_t& reach = mReach[first];
            while (reach > first && !mFronts.Fit(row[reach - first - 1], first, reach, inBound)) {
                --reach;
            }
            Suffix best;
            for (std::uint32_t end = first + 1; end <= reach; ++end) {
                Line& line = row[end - first - 1];
                Suffix const& rest = mSuffixes[end];
                if (!mFronts.Fit(line, first, end, inBound) || rest.total == kNever) {
                    continue;
                }
                Suffix const stack{line.cross + mGap + rest.total,
                                   std::max(line.main, rest.widest)};
                if (std::tie(stack.total, stack.widest) < std::tie(best.total, best.widest)) {
                    best = stack;
                }
            }
            mSuffixes[first] = best;
        }
    }

    Suffix const& From(std::uint32_t inFirst) const noexcept { return mSuffixes[inFirst]; }

    /// No line that starts with `inFirst` and fits ends behind this.
    std::uint32_t Reach(std::uint32_t inFirst) const noexcept { return mReach[inFirst]; }

    /// The lowest form of the line that fits; longer than the bound if none does. `inEnd` is at
    /// most `Reach(inFirst)`.
    Line const& At(std::uint32_t inFirst, std::uint32_t inEnd) const noexcept {
        return mRows[inFirst][inEnd - inFirst - 1];
    }

private:
    LineFronts const& mFronts;
    std::int64_t mGap;
    std::vector<std::vector<Line>> mRows;
    std::vector<std::uint32_t> mReach;
    std::vector<Suffix> mSuffixes;
};

/// Finds the layout that is tried last among the best stacks for a bound.
class Tracing {
public:
    Tracing(LineProblem const& inProblem, LineFronts const& inFronts)
        : mProblem(inProblem), mFronts(inFronts), mTable(inFronts, inProblem.spacing.cross),
          mHasChoice(std::any_of(inProblem.children.begin(), inProblem.children.end(),
                                 [](auto const& child) { return child.size() > 1; })) {}

    /// Of the layouts whose lines are no longer than `inBound` and whose total height is the least,
    /// the one that is tried last. The bounds fall from call to call.
    LinePick Trace(std::int64_t inBound) {
        mBound = inBound;
        mTable.Narrow(inBound);
        LinePick pick;
        pick.alternatives.resize(mFronts.Count());
        if (mHasChoice) {
            ChooseAlternatives(pick.alternatives);
        }
        pick.lines = Break(pick.alternatives);
        return pick;
    }

private:
    /// A line, started but not ended, of a stack that may still have the least total height.
    struct Run {
        std::uint32_t end;
        std::int64_t before; // the total of the lines in front of it
        std::int64_t limit;  // the greatest height that it may have
        std::int64_t cross;  // the height of the children chosen so far
        std::int64_t slack;  // what is left of the bound if the others are as short as can be
    };

    /// The best stack of lines of the chosen alternatives from one child to the last.
    struct Cut {
        std::int64_t total = kNever;
        std::uint32_t lines = 0;
        std::uint32_t end = 0; // of its first line
    };

    /// The greatest combination of alternatives that has the least total height.
    void ChooseAlternatives(std::vector<std::uint32_t>& outChosen) {
        mRuns.clear();
        std::int64_t before = 0;
        for (std::uint32_t child = 0; child < mFronts.Count(); ++child) {
            if (before != kNever) {
                OpenRuns(child, before);
            }
            auto const& alternatives = mProblem.children[child];
            auto const last = std::find_if(
                alternatives.rbegin(), alternatives.rend(), [&](LineExtent const& extent) {
                    return std::any_of(mRuns.begin(), mRuns.end(),
                                       [&](Run const& run) { return HasRoom(run, child, extent); });
                });
            outChosen[child] = static_cast<std::uint32_t>(alternatives.rend() - last - 1);
            before = Append(child, *last);
        }
    }

    /// Whether the line still fits with the child in this form.
    bool HasRoom(Run const& inRun, std::uint32_t inChild, LineExtent inExtent) const noexcept {
        return inExtent.cross <= inRun.limit &&
               inExtent.main <= inRun.slack + mFronts.LeastMain(inChild, inRun.limit);
    }

    /// Starts the lines that begin with the child, behind lines of the total height `inBefore`.
    void OpenRuns(std::uint32_t inFirst, std::int64_t inBefore) {
        std::int64_t const total = mTable.From(0).total - mProblem.spacing.cross;
        for (std::uint32_t end = inFirst + 1; end <= mTable.Reach(inFirst); ++end) {
            std::int64_t const limit = total - inBefore - mTable.From(end).total;
            Line const& line = mTable.At(inFirst, end);
            if (line.main > mBound || line.cross > limit) {
                continue;
            }
            std::int64_t slack = mBound - (end - inFirst - 1) * mProblem.spacing.main;
            for (std::uint32_t child = inFirst; child < end; ++child) {
                slack -= mFronts.LeastMain(child, limit);
            }
            mRuns.push_back({end, inBefore, limit, end == inFirst + 1 ? -kNever : 0, slack});
        }
    }

    /// Keeps the runs that have room for what was chosen. Returns the least total height of the
    /// stacks with a line that ends with the child.
    std::int64_t Append(std::uint32_t inChild, LineExtent inExtent) {
        std::int64_t least = kNever;
        auto kept = mRuns.begin();
        for (Run& run : mRuns) {
            if (!HasRoom(run, inChild, inExtent)) {
                continue;
            }
            run.slack += mFronts.LeastMain(inChild, run.limit) - inExtent.main;
            run.cross = std::max(run.cross, inExtent.cross);
            if (run.end == inChild + 1) {
                least = std::min(least, run.before + run.cross + mProblem.spacing.cross);
            } else {
                *kept++ = run;
            }
        }
        mRuns.erase(kept, mRuns.end());
        return least;
    }

    /// The line lengths with the least total height; among equals the most lines, then the shorter
    /// earlier lines.
    std::vector<std::uint32_t> Break(std::vector<std::uint32_t> const& inChosen) {
        std::uint32_t const count = mFronts.Count();
        mCuts.resize(std::size_t{count} + 1);
        mCuts[count] = {0, 0, count};
        for (std::uint32_t first = count; first-- > 0;) {
            mCuts[first] = BestCut(first, inChosen);
        }
        std::vector<std::uint32_t> lines;
        lines.reserve(mCuts[0].lines);
        for (std::uint32_t first = 0; first < count; first = mCuts[first].end) {
            lines.push_back(mCuts[first].end - first);
        }
        return lines;
    }

    Cut BestCut(std::uint32_t inFirst, std::vector<std::uint32_t> const& inChosen) const noexcept {
        Cut best{kNever, 0, mFronts.Count()};
        LineExtent sum = mProblem.children[inFirst][inChosen[inFirst]];
        std::uint32_t const reach = mTable.Reach(inFirst);
        for (std::uint32_t end = inFirst + 1; end <= reach; ++end) {
            if (end > inFirst + 1) {
                sum = mFronts.Appended(sum, mProblem.children[end - 1][inChosen[end - 1]]);
            }
            Cut const& rest = mCuts[end];
            if (sum.main > mBound || rest.total == kNever) {
                continue;
            }
            std::int64_t const total = sum.cross + mProblem.spacing.cross + rest.total;
            if (total < best.total || (total == best.total && rest.lines + 1 > best.lines)) {
                best = {total, rest.lines + 1, end};
            }
        }
        return best;
    }

    LineProblem const& mProblem;
    LineFronts const& mFronts;
    LineTable mTable;
    bool mHasChoice;
    std::int64_t mBound = 0;
    std::vector<Run> mRuns;
    std::vector<Cut> mCuts;
};

class BreakSearch : public IFrontSearch {
public:
    BreakSearch(LineProblem const& inProblem, LineFronts const& inFronts)
        : mProblem(inProblem), mFronts(inFronts) {}

    std::vector<LineExtent> Front() const override {
        LineExtent const extra{mProblem.margins.main,
                               mProblem.margins.cross - mProblem.spacing.cross};
        std::vector<LineExtent> front;
        LineTable table(mFronts, mProblem.spacing.cross);
        std::int64_t widest = kNever;
        do {
            table.Narrow(widest - 1);
            Suffix const& best = table.From(0);
            if (best.total == kNever) {
                break;
            }
            widest = best.widest;
            front.push_back(
                {std::max<std::int64_t>(widest, 0) + extra.main, best.total + extra.cross});
        } while (widest > 0);
        return front;
    }

    std::vector<LinePick> Picks(std::vector<LineExtent> const& inSizes) const override {
        std::vector<LinePick> picks;
        picks.reserve(inSizes.size());
        Tracing tracing(mProblem, mFronts);
        for (LineExtent const& size : inSizes) {
            picks.push_back(tracing.Trace(size.main - mProblem.margins.main));
        }
        return picks;
    }

private:
    LineProblem const& mProblem;
    LineFronts const& mFronts;
};

} // namespace

std::unique_ptr<IFrontSearch> SearchBreaks(LineProblem const& inProblem,
                                           LineFronts const& inFronts) {
    return std::make_unique<BreakSearch>(inProblem, inFronts);
}

} // namespace brindle::arrange::impl
