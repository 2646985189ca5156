#include <brindle/arrange/Single.h>

#include <cmath>

namespace brindle::arrange {

namespace {

/// The one alternative of a leaf. Where a group still holds it after the leaf has been destroyed,
/// it is an empty place of the same size.
///
/// NaN, which arises where space is distributed in proportion to a best size of 0, is not offered
/// to the leaf: it counts as answering what a leaf answers by default.
class SingleArrangement final : public impl::IArrangement {
public:
    explicit SingleArrangement(Single& ioLeaf)
        : mLeaf(&ioLeaf), mHorizontallyExpandable(ioLeaf.HorizontallyExpandable()),
          mVerticallyExpandable(ioLeaf.VerticallyExpandable()), mLeftMargin(ioLeaf.LeftMargin()),
          mTopMargin(ioLeaf.TopMargin()), mHorizontalMargins(mLeftMargin + ioLeaf.RightMargin()),
          mVerticalMargins(mTopMargin + ioLeaf.BottomMargin()),
          mMinWidth(ioLeaf.MinWidth() + mHorizontalMargins),
          mMinHeight(ioLeaf.MinHeight() + mVerticalMargins),
          mBestWidth(ioLeaf.BestWidth() + mHorizontalMargins),
          mBestHeight(ioLeaf.BestHeight() + mVerticalMargins) {}

    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) override {
        Single* const leaf = mLeaf.Get();
        if (leaf == nullptr) {
            return {inRect.width, inRect.height};
        }
        return leaf->ArrangeContent({inRect.x + mLeftMargin, inRect.y + mTopMargin,
                                     inRect.width - mHorizontalMargins,
                                     inRect.height - mVerticalMargins});
    }

    bool HorizontallyExpandable() const override { return mHorizontallyExpandable; }
    bool VerticallyExpandable() const override { return mVerticallyExpandable; }
    float MinWidth() const override { return mMinWidth; }
    float MinHeight() const override { return mMinHeight; }
    float BestWidth() const override { return mBestWidth; }
    float BestHeight() const override { return mBestHeight; }

    float ExpandedWidth(float inAvailable) const override {
        Single const* const leaf = mLeaf.Get();
        if (leaf == nullptr) {
            return mBestWidth;
        }
        float const offered = inAvailable - mHorizontalMargins;
        if (std::isnan(offered)) {
            return mHorizontallyExpandable ? offered : mBestWidth;
        }
        return leaf->ExpandedWidth(offered) + mHorizontalMargins;
    }

    float ExpandedHeight(float inAvailable) const override {
        Single const* const leaf = mLeaf.Get();
        if (leaf == nullptr) {
            return mBestHeight;
        }
        float const offered = inAvailable - mVerticalMargins;
        if (std::isnan(offered)) {
            return mVerticallyExpandable ? offered : mBestHeight;
        }
        return leaf->ExpandedHeight(offered) + mVerticalMargins;
    }

    void Prepare() override {}
    bool IsOuter() const override { return true; }

private:
    impl::NodePointer<Single> mLeaf;
    bool mHorizontallyExpandable;
    bool mVerticallyExpandable;
    float mLeftMargin;
    float mTopMargin;
    float mHorizontalMargins;
    float mVerticalMargins;
    float mMinWidth;
    float mMinHeight;
    float mBestWidth;
    float mBestHeight;
};

} // namespace

// The client's most derived class constructs the virtual base and need not pass the parent on.
Single::Single(IArrangeable* inParent) : IArrangeable(inParent) {
    if (inParent != nullptr) {
        SetParent(inParent);
    }
}

Single::~Single() = default;

void Single::RebuildSelf() {
    mArrangements.Clear();
    mArrangements.AddArrangement(new SingleArrangement(*this));
}

} // namespace brindle::arrange
