#include <brindle/arrange/FunctionLeaf.h>

#include <algorithm>
#include <utility>

namespace brindle::arrange {

namespace {

float Expanded(Extent const& inExtent, float inAvailable) {
    if (!inExtent.isExpandable) {
        return inExtent.best;
    }
    return std::max(inExtent.minimum, std::min(inAvailable, inExtent.maximum));
}

} // namespace

FunctionLeaf::FunctionLeaf(LeafSizes const& inSizes, PlaceFunction inPlace,
                           Margins const& inMargins)
    : mSizes(inSizes), mPlace(std::move(inPlace)), mMargins(inMargins) {}

FunctionLeaf::FunctionLeaf(SizeFunction inSizes, PlaceFunction inPlace, Margins const& inMargins)
    : mMeasure(std::move(inSizes)), mPlace(std::move(inPlace)), mMargins(inMargins) {}

FunctionLeaf::~FunctionLeaf() = default;

void FunctionLeaf::SetSizes(LeafSizes const& inSizes) {
    mMeasure = nullptr;
    mSizes = inSizes;
    NoteChange();
}

void FunctionLeaf::SetSizes(SizeFunction inSizes) {
    mMeasure = std::move(inSizes);
    NoteChange();
}

void FunctionLeaf::SetMargins(Margins const& inMargins) {
    mMargins = inMargins;
    NoteChange();
}

void FunctionLeaf::SetHeightForWidth(HeightFunction inHeight) {
    mHeightForWidth = std::move(inHeight);
    NoteChange();
}

float FunctionLeaf::ExpandedWidth(float inAvailable) const {
    return Expanded(mSizes.width, inAvailable);
}

float FunctionLeaf::ExpandedHeight(float inAvailable) const {
    return Expanded(mSizes.height, inAvailable);
}

void FunctionLeaf::RebuildSelf() {
    // The functions are copied, because they may replace themselves.
    if (SizeFunction const measure = mMeasure) {
        mSizes = measure();
    }
    if (HeightFunction const heightForWidth = mHeightForWidth) {
        float const height = heightForWidth(mLastPlace ? mLastPlace->width : mSizes.width.best);
        mSizes.height.minimum = height;
        mSizes.height.best = height;
    }
    Single::RebuildSelf();
}

geom::PointT<float> FunctionLeaf::ArrangeContent(geom::RectT<float> const& inRect) {
    // The margins may be larger than the rectangle.
    geom::RectT<float> const place{inRect.x, inRect.y, std::max(0.0F, inRect.width),
                                   std::max(0.0F, inRect.height)};
    Margins const margins = mMargins;
    mLastPlace = place;
    if (HeightFunction const heightForWidth = mHeightForWidth;
        heightForWidth && heightForWidth(place.width) != mSizes.height.best) {
        MarkInvalid();
    }
    if (PlaceFunction const function = mPlace) {
        function(place);
    }
    // What follows is placed by this size, so it includes the margins.
    return {margins.left + place.width + margins.right,
            margins.top + place.height + margins.bottom};
}

Spacer::~Spacer() = default;

geom::PointT<float> Spacer::ArrangeContent(geom::RectT<float> const& inRect) {
    return {inRect.width, inRect.height};
}

} // namespace brindle::arrange
