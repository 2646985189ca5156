#include "arrange/src/boxes/FramedArrangement.h"

#include <utility>

namespace brindle::arrange::impl {

FramedArrangement::FramedArrangement(AbstractBox& inBox,
                                     boost::intrusive_ptr<IArrangement> inContent)
    : mBox(&inBox), mInset(inBox.mInset), mContent(std::move(inContent)) {
    mDepth = mContent->Depth() + 1;
    mCount = mContent->Count() + 1;
}

geom::PointT<float> FramedArrangement::Arrange(geom::RectT<float> const& inRect) {
    if (AbstractBox const* const box = mBox.Get()) {
        if (AbstractBox::PlaceFunction const place = box->mPlace) {
            place(inRect);
        }
    }
    geom::PointT<float> const inner = Inner({inRect.width, inRect.height});
    geom::PointT<float> const taken =
        mContent->Arrange({inRect.x + mInset.left, inRect.y + mInset.top, inner.x, inner.y});
    return {taken.x + Horizontal(), taken.y + Vertical()};
}

float FramedArrangement::ExpandedWidth(float inAvailable) const {
    return mContent->ExpandedWidth(inAvailable - Horizontal()) + Horizontal();
}

float FramedArrangement::ExpandedHeight(float inAvailable) const {
    return mContent->ExpandedHeight(inAvailable - Vertical()) + Vertical();
}

float FramedArrangement::ClippedArea(geom::PointT<float> const& inSize) const {
    return mContent->ClippedArea(Inner(inSize));
}

/// The inset counts as unused. It is the same for all alternatives of the box.
float FramedArrangement::UnusedArea(geom::PointT<float> const& inSize) const {
    return mContent->UnusedArea(Inner(inSize)) + Horizontal() * inSize.y + Vertical() * inSize.x;
}

geom::PointT<float> FramedArrangement::Inner(geom::PointT<float> const& inSize) const {
    return {inSize.x - Horizontal(), inSize.y - Vertical()};
}

} // namespace brindle::arrange::impl
