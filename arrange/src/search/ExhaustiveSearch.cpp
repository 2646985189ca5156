#include "arrange/src/search/ExhaustiveSearch.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace brindle::arrange::impl {

namespace {

/// A layout, identified by its position in the order of trying. The highest bit of `breaks` stands
/// for a break in the gap behind the first child, so that among layouts with equally many lines
/// those with shorter first lines come later.
struct Candidate {
    geom::PointT<float> size;
    std::uint32_t combination = 0;
    std::uint32_t form = 0;
    std::uint32_t lines = 0;
    std::uint32_t breaks = 0;
};

bool IsEarlier(Candidate const& inLHS, Candidate const& inRHS) noexcept {
    return std::tie(inLHS.combination, inLHS.form, inLHS.lines, inLHS.breaks) <
           std::tie(inRHS.combination, inRHS.form, inRHS.lines, inRHS.breaks);
}

/// Keeps the candidates that no other one beats; of equal sizes the one that is tried last.
class CandidateSet {
public:
    void Add(Candidate const& inCandidate) {
        geom::PointT<float> const size = inCandidate.size;
        if (std::isnan(size.x) || std::isnan(size.y)) { // neither beats nor is beaten
            mIncomparable.push_back(inCandidate);
            return;
        }
        auto at = std::lower_bound(mFront.begin(), mFront.end(), size.x,
                                   [](Candidate const& c, float x) { return c.size.x < x; });
        if (at != mFront.begin() && (at - 1)->size.y <= size.y) {
            return;
        }
        if (at != mFront.end() && at->size == size) {
            if (IsEarlier(*at, inCandidate)) {
                *at = inCandidate;
            }
            return;
        }
        if (at != mFront.end() && at->size.x <= size.x && at->size.y < size.y) {
            return;
        }
        auto const end = std::find_if(at, mFront.end(),
                                      [&size](Candidate const& c) { return c.size.y < size.y; });
        mFront.insert(mFront.erase(at, end), inCandidate);
    }

    /// In the order of trying.
    std::vector<Candidate> Kept() const {
        std::vector<Candidate> kept = mFront;
        kept.insert(kept.end(), mIncomparable.begin(), mIncomparable.end());
        std::sort(kept.begin(), kept.end(), IsEarlier);
        return kept;
    }

private:
    std::vector<Candidate> mFront; // by rising width and falling height
    std::vector<Candidate> mIncomparable;
};

class ExhaustiveSearch {
public:
    explicit ExhaustiveSearch(LayoutProblem const& inProblem)
        : mProblem(inProblem), mCount(static_cast<std::uint32_t>(inProblem.children.size())),
          mChosen(mCount) {}

    std::vector<FoundLayout> Run() {
        Candidate candidate;
        do {
            for (candidate.form = 0; candidate.form < mProblem.forms.size(); ++candidate.form) {
                Try(candidate);
            }
            ++candidate.combination;
        } while (NextCombination());
        std::vector<FoundLayout> layouts;
        for (Candidate const& kept : mSet.Kept()) {
            layouts.push_back(Layout(kept));
        }
        return layouts;
    }

private:
    /// The sum of the lines closed so far, and the child with which the open one starts.
    struct Stack {
        std::uint32_t start = 0;
        std::uint32_t lines = 0;
        float sum = 0;
        float widest = 0;
    };

    bool NextCombination() noexcept {
        for (std::uint32_t child = mCount; child-- > 0;) {
            if (++mChosen[child] < mProblem.children[child].size()) {
                return true;
            }
            mChosen[child] = 0;
        }
        return false;
    }

    void Try(Candidate inCandidate) {
        LayoutForm const form = mProblem.forms[inCandidate.form];
        mSpacing = Along(form, mProblem.spacing);
        mMargins = Along(form, mProblem.margins);
        if (IsWrapping(form)) {
            MeasureLines(form);
            TryBreaks(inCandidate);
            return;
        }
        mLines.resize(mCount);
        MeasureLinesFrom(0, form, mLines.data());
        Offer(inCandidate, Outer(mLines.back()));
    }

    void MeasureLines(LayoutForm inForm) {
        mLines.resize(std::size_t{mCount} * mCount);
        for (std::uint32_t first = 0; first < mCount; ++first) {
            LineSize* const line = &Line(first, first + 1);
            MeasureLinesFrom(first, inForm, line);
            *line = Along(inForm,
                          mProblem.children[first][mChosen[first]]); // no line object of its own
        }
    }

    void MeasureLinesFrom(std::uint32_t inFirst, LayoutForm inForm, LineSize* outLines) const {
        LineSize line;
        for (std::uint32_t child = inFirst; child < mCount; ++child) {
            LineSize const extents = Along(inForm, mProblem.children[child][mChosen[child]]);
            line.main += extents.main;
            line.cross = std::max(line.cross, extents.cross);
            float const gaps = static_cast<float>(child - inFirst) * mSpacing.main;
            *outLines++ = {line.main + gaps, line.cross};
        }
    }

    LineSize& Line(std::uint32_t inFirst, std::uint32_t inEnd) noexcept {
        return mLines[std::size_t{inFirst} * mCount + inEnd - 1];
    }

    LineSize Outer(LineSize inLine) const noexcept {
        return {inLine.main + mMargins.main, inLine.cross + mMargins.cross};
    }

    Stack Closed(Stack inStack, std::uint32_t inEnd) noexcept {
        LineSize line = Line(inStack.start, inEnd);
        if (inStack.start == 0 && inEnd == mCount && mCount > 1) {
            line = Outer(line); // the only line includes the margins, and so does its stack
        }
        return {inEnd, inStack.lines + 1, inStack.sum + line.cross,
                std::max(inStack.widest, line.main)};
    }

    void TryBreaks(Candidate inCandidate) {
        mStacks.assign(mCount, {}); // by gap: the state after the decisions in front of it
        std::uint32_t const gaps = mCount - 1;
        std::uint32_t changed = 0;
        std::uint32_t& breaks = inCandidate.breaks;
        do {
            std::uint32_t gap = gaps;
            for (; changed != 0; changed >>= 1) {
                --gap;
            }
            for (; gap < gaps; ++gap) {
                bool const isBreak = ((breaks >> (gaps - 1 - gap)) & 1) != 0;
                mStacks[gap + 1] = isBreak ? Closed(mStacks[gap], gap + 1) : mStacks[gap];
            }
            Stack const stack = Closed(mStacks[gaps], mCount);
            inCandidate.lines = stack.lines;
            float const spaces = static_cast<float>(stack.lines - 1) * mSpacing.cross;
            Offer(inCandidate, {stack.widest + mMargins.main, stack.sum + spaces + mMargins.cross});
            changed = breaks ^ (breaks + 1);
            ++breaks;
        } while (breaks >> gaps == 0);
    }

    void Offer(Candidate inCandidate, LineSize inLineSize) {
        bool const isAcross = !HasRows(mProblem.forms[inCandidate.form]);
        inCandidate.size = isAcross ? geom::PointT<float>{inLineSize.cross, inLineSize.main}
                                    : geom::PointT<float>{inLineSize.main, inLineSize.cross};
        mSet.Add(inCandidate);
    }

    FoundLayout Layout(Candidate const& inCandidate) const {
        FoundLayout layout;
        layout.form = mProblem.forms[inCandidate.form];
        layout.alternatives.resize(mCount);
        std::uint32_t combination = inCandidate.combination;
        for (std::uint32_t child = mCount; child-- > 0;) {
            auto const choices = static_cast<std::uint32_t>(mProblem.children[child].size());
            layout.alternatives[child] = combination % choices;
            combination /= choices;
        }
        if (IsWrapping(layout.form)) {
            layout.lines.push_back(1);
            for (std::uint32_t gap = 0; gap + 1 < mCount; ++gap) {
                if (((inCandidate.breaks >> (mCount - 2 - gap)) & 1) != 0) {
                    layout.lines.push_back(0);
                }
                ++layout.lines.back();
            }
        }
        return layout;
    }

    LayoutProblem const& mProblem;
    std::uint32_t mCount;
    std::vector<std::uint32_t> mChosen;
    LineSize mSpacing;
    LineSize mMargins;
    std::vector<LineSize> mLines; // by first and last child, for the current combination and form
    std::vector<Stack> mStacks;
    CandidateSet mSet;
};

} // namespace

std::vector<FoundLayout> TryAllLayouts(LayoutProblem const& inProblem) {
    return ExhaustiveSearch(inProblem).Run();
}

} // namespace brindle::arrange::impl
