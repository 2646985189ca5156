#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangeable.h>

namespace brindle::arrange {

/// A leaf of the tree: the client's own object, which tells its sizes and is told its place.
///
/// Sizes are without margins and are asked for once, when the leaf is measured; `Invalidate` has
/// them asked for anew. What it would take of some space (`ExpandedWidth`, `ExpandedHeight`) is
/// asked for whenever space is shared out.
class BRN_API Single : public virtual IArrangeable {
public:
    explicit Single(IArrangeable* inParent = nullptr);
    ~Single() override;

    virtual float MinWidth() const { return BestWidth(); }
    virtual float MinHeight() const { return BestHeight(); }
    virtual float ExpandedWidth(float inAvailable) const {
        return HorizontallyExpandable() ? inAvailable : BestWidth();
    }
    virtual float ExpandedHeight(float inAvailable) const {
        return VerticallyExpandable() ? inAvailable : BestHeight();
    }
    virtual bool HorizontallyExpandable() const { return false; }
    virtual bool VerticallyExpandable() const { return false; }
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    virtual float BestWidth() const = 0;
    virtual float BestHeight() const = 0;

    /// Places the leaf in the rectangle, which is free of margins. Result: the size that it took,
    /// by which what follows it is placed; a leaf with margins adds them.
    virtual geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) = 0;

private:
    void RebuildSelf() override;
    impl::ArrangementSet& ArrangementsSelf() override { return mArrangements; }

    impl::ArrangementSet mArrangements;
};

} // namespace brindle::arrange
