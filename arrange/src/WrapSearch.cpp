#include "arrange/src/FrontSearch.h"

#include <tuple>

namespace brindle::arrange::impl {

namespace {

constexpr std::int64_t kNever = std::int64_t{1} << 62; // no sum comes near

/// The best stack of lines from a child to the last.
struct Suffix {
    std::int64_t total = kNever; ///< heights, with a gap behind each line
    std::int64_t widest = 0;     ///< least among the stacks of this total
};

/// Every run of the children as a line, for bounds on its length that fall from call to call.
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
            --mReach[0]; // all on one line is another search's
        }
        mSuffixes.resize(std::size_t{count} + 1);
        mSuffixes[count].total = 0;
    }

    /// Finds the best stacks with lines no longer than `inBound`, and fits the lines to it.
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

    /// No line from `inFirst` ends behind this, of those that fit.
    std::uint32_t Reach(std::uint32_t inFirst) const noexcept { return mReach[inFirst]; }

    /// The lowest line that fits; longer than the bound if none does. `inEnd` is within reach.
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

/// From the best stacks of a bound to the layout that is tried last among them.
class Tracing {
public:
    Tracing(LineProblem const& inProblem, LineFronts const& inFronts)
        : mProblem(inProblem), mFronts(inFronts), mTable(inFronts, inProblem.spacing.cross),
          mHasChoice(std::any_of(inProblem.children.begin(), inProblem.children.end(),
                                 [](auto const& child) { return child.size() > 1; })) {}

    /// The last layout with lines no longer than `inBound` and the least total of heights. The
    /// bounds fall from call to call.
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
    /// A line begun with alternatives already chosen.
    struct OpenLine {
        std::uint32_t first;
        std::int64_t before; // the least total of the lines in front of it
        std::int64_t main;   // of its chosen children, with a gap behind each
        std::int64_t cross;
    };

    void ChooseAlternatives(std::vector<std::uint32_t>& outChosen) {
        mOpen.clear();
        std::int64_t before = 0;
        for (std::uint32_t child = 0; child < mFronts.Count(); ++child) {
            if (before != kNever) {
                mOpen.push_back({child, before, 0, mProblem.children[child].front().cross});
            }
            CollectRooms(child);
            auto const& alternatives = mProblem.children[child];
            auto const last = std::find_if(
                alternatives.rbegin(), alternatives.rend(), [this](LineExtent const& extent) {
                    return std::any_of(mRooms.begin(), mRooms.end(), [&](LineExtent const& room) {
                        return extent.main <= room.main && extent.cross <= room.cross;
                    });
                });
            outChosen[child] = static_cast<std::uint32_t>(alternatives.rend() - last - 1);
            before = Append(child, *last);
        }
    }

    /// What each line that may hold the child, on the way to the least total, leaves for it.
    void CollectRooms(std::uint32_t inChild) {
        mRooms.clear();
        std::int64_t const total = mTable.From(0).total;
        std::int64_t const spacing = mProblem.spacing.main;
        for (OpenLine const& open : mOpen) {
            for (std::uint32_t end = inChild + 1; end <= mTable.Reach(open.first); ++end) {
                std::int64_t const rest = mTable.From(end).total;
                Line const& line = mTable.At(open.first, end);
                std::int64_t const cross = total - open.before - mProblem.spacing.cross - rest;
                bool const isChosenTooHigh = open.first < inChild && open.cross > cross;
                if (rest == kNever || line.main > mBound || line.cross > cross || isChosenTooHigh) {
                    continue;
                }
                std::int64_t room = mBound - open.main;
                for (std::uint32_t next = inChild + 1; next < end; ++next) {
                    room -= spacing + mFronts.LeastMain(next, cross);
                }
                mRooms.push_back({room, cross});
            }
        }
    }

    /// Puts the child on every open line; returns the least total of lines that end with it.
    std::int64_t Append(std::uint32_t inChild, LineExtent inExtent) {
        std::int64_t least = kNever;
        for (OpenLine& open : mOpen) {
            bool const isAlone = open.first == inChild;
            open.cross =
                isAlone ? inExtent.cross : std::max({open.cross, inExtent.cross, std::int64_t{0}});
            open.main += inExtent.main;
            if (open.main <= mBound && inChild < mTable.Reach(open.first)) {
                least = std::min(least, open.before + open.cross + mProblem.spacing.cross);
            }
            open.main += mProblem.spacing.main;
        }
        auto const isSpent = [&](OpenLine const& o) {
            return mTable.Reach(o.first) <= inChild + 1;
        };
        mOpen.erase(std::remove_if(mOpen.begin(), mOpen.end(), isSpent), mOpen.end());
        return least;
    }

    /// The line lengths of the least total, of these the most lines, of these the shorter first.
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

    /// The best stack of the chosen alternatives from a child to the last.
    struct Cut {
        std::int64_t total = kNever;
        std::uint32_t lines = 0;
        std::uint32_t end = 0; // of its first line
    };

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
    std::vector<OpenLine> mOpen;
    std::vector<LineExtent> mRooms;
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
