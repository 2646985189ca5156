#pragma once

#include <brindle/arrange/Box.h>

namespace brindle::arrange::impl {

/// An alternative of a box with the inset around it. The box's own alternatives know no margins.
class FramedArrangement final : public IArrangement {
public:
    FramedArrangement(AbstractBox& inBox, boost::intrusive_ptr<IArrangement> inContent);

    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) override;
    bool HorizontallyExpandable() const override { return mContent->HorizontallyExpandable(); }
    bool VerticallyExpandable() const override { return mContent->VerticallyExpandable(); }
    float MinWidth() const override { return mContent->MinWidth() + Horizontal(); }
    float MinHeight() const override { return mContent->MinHeight() + Vertical(); }
    float BestWidth() const override { return mContent->BestWidth() + Horizontal(); }
    float BestHeight() const override { return mContent->BestHeight() + Vertical(); }
    float ExpandedWidth(float inAvailable) const override;
    float ExpandedHeight(float inAvailable) const override;
    float ClippedArea(geom::PointT<float> const& inSize) const override;
    float UnusedArea(geom::PointT<float> const& inSize) const override;
    void Prepare() override { mContent->Prepare(); }
    bool IsOuter() const override { return true; }

    IArrangement const& Content() const noexcept { return *mContent; }

private:
    float Horizontal() const { return mInset.left + mInset.right; }
    float Vertical() const { return mInset.top + mInset.bottom; }
    geom::PointT<float> Inner(geom::PointT<float> const& inSize) const;

    NodePointer<AbstractBox> mBox;
    Margins mInset;
    boost::intrusive_ptr<IArrangement> mContent;
};

} // namespace brindle::arrange::impl
