#include <brindle/arrange/ArrangementSet.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace brindle::arrange::impl {

namespace {

bool IsAtMost(IArrangement const& inLHS, IArrangement const& inRHS) {
    return inLHS.MinWidth() <= inRHS.MinWidth() && inLHS.MinHeight() <= inRHS.MinHeight();
}

float DistanceFromGoldenRatio(IArrangement const& inArrangement) {
    double const aspect = double{inArrangement.BestWidth()} / double{inArrangement.BestHeight()};
    return static_cast<float>(std::fabs(aspect - double{1.618034F}));
}

bool IsNearerGoldenRatio(IArrangement const& inLHS, IArrangement const& inRHS) {
    return DistanceFromGoldenRatio(inLHS) < DistanceFromGoldenRatio(inRHS);
}

/// An alternative, to be compared with others for a given size.
class Candidate {
public:
    Candidate(boost::intrusive_ptr<IArrangement> inArrangement, geom::PointT<float> const& inSize)
        : mArrangement(std::move(inArrangement)), mSize(inSize),
          mFits(inSize.x >= mArrangement->MinWidth() && inSize.y >= mArrangement->MinHeight()) {}

    bool IsBetterThan(Candidate& ioBest) {
        if (mFits != ioBest.mFits) {
            return mFits;
        }
        if (!mFits) {
            return mArrangement->ClippedArea(mSize) < ioBest.mArrangement->ClippedArea(mSize);
        }
        float const bestUnusedArea = ioBest.UnusedArea();
        float const unusedArea = UnusedArea();
        if (unusedArea != bestUnusedArea) {
            return unusedArea < bestUnusedArea;
        }
        float const minimumArea = MinimumArea();
        float const bestMinimumArea = ioBest.MinimumArea();
        if (minimumArea != bestMinimumArea) {
            return minimumArea < bestMinimumArea;
        }
        return IsNearerGoldenRatio(*mArrangement, *ioBest.mArrangement);
    }

    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) {
        return mArrangement->Arrange(inRect);
    }

private:
    // Distributes space throughout the alternative, so it is computed only once.
    float UnusedArea() {
        if (!mUnusedArea) {
            mUnusedArea = mArrangement->UnusedArea(mSize);
        }
        return *mUnusedArea;
    }

    float MinimumArea() const { return mArrangement->MinWidth() * mArrangement->MinHeight(); }

    // A counted pointer, because a client that invalidates from within has the set rebuilt.
    boost::intrusive_ptr<IArrangement> mArrangement;
    geom::PointT<float> mSize;
    bool mFits;
    std::optional<float> mUnusedArea;
};

} // namespace

void ArrangementSet::AddArrangement(boost::intrusive_ptr<IArrangement> inArrangement) {
    if (inArrangement == nullptr) {
        return;
    }
    IArrangement const& added = *inArrangement;
    auto const end = mArrangements.end();
    auto const comparable = std::find_if(mArrangements.begin(), end, [&](auto const& inPresent) {
        return IsAtMost(added, *inPresent) || IsAtMost(*inPresent, added);
    });
    if (comparable != end && !IsAtMost(added, **comparable)) {
        return;
    }
    auto const isBeaten = [&](auto const& inPresent) { return IsAtMost(added, *inPresent); };
    mArrangements.erase(std::remove_if(comparable, end, isBeaten), end);
    mArrangements.push_back(std::move(inArrangement));
}

void ArrangementSet::Prepare() {
    for (auto const& arrangement : mArrangements) {
        arrangement->Prepare();
    }
}

boost::intrusive_ptr<IArrangement> ArrangementSet::operator[](std::size_t inIndex) const {
    return inIndex < mArrangements.size() ? mArrangements[inIndex] : nullptr;
}

geom::PointT<float> ArrangementSet::BestSize() const {
    if (mArrangements.empty()) {
        return {};
    }
    IArrangement const* best = mArrangements.front().get();
    for (auto const& arrangement : mArrangements) {
        if (IsNearerGoldenRatio(*arrangement, *best)) {
            best = arrangement.get();
        }
    }
    return {best->MinWidth(), best->MinHeight()};
}

geom::PointT<float> ArrangementSet::Arrange(geom::RectT<float> const& inRect) const {
    if (mArrangements.empty()) {
        return {};
    }
    geom::PointT<float> const size{inRect.width, inRect.height};
    Candidate best(mArrangements.front(), size);
    for (std::size_t index = 1; index < mArrangements.size(); ++index) {
        Candidate candidate(mArrangements[index], size);
        if (candidate.IsBetterThan(best)) {
            best = std::move(candidate);
        }
    }
    return best.Arrange(inRect);
}

} // namespace brindle::arrange::impl
