#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangeable.h>

namespace brindle::arrange {

/// A leaf of the tree: a client's object that reports its sizes and is given its place.
///
///     float BestWidth() const override { return 60; }
///     geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override;
///
/// Sizes do not include the margins. They are read once, when the leaf is measured; after
/// `Invalidate` they are read again. `ExpandedWidth` and `ExpandedHeight`, which say how much of
/// some space the leaf would take, are called whenever space is distributed.
class BRN_API Single : public virtual IArrangeable {
public:
    /// Sets the parent, which may be null and is not owned.
    explicit Single(IArrangeable* inParent = nullptr);
    ~Single() override;

    ///@{
    /// The least size at which the leaf is usable; by default the best one.
    virtual float MinWidth() const { return BestWidth(); }
    virtual float MinHeight() const { return BestHeight(); }
    ///@}
    /// The width that the leaf takes when it is offered `inAvailable`, which may be less than the
    /// minimum, negative or infinite, but is never NaN.
    virtual float ExpandedWidth(float inAvailable) const {
        return HorizontallyExpandable() ? inAvailable : BestWidth();
    }
    /// The same for the height.
    virtual float ExpandedHeight(float inAvailable) const {
        return VerticallyExpandable() ? inAvailable : BestHeight();
    }
    ///@{
    /// Whether the leaf takes more than its best size if there is space; by default not.
    virtual bool HorizontallyExpandable() const { return false; }
    virtual bool VerticallyExpandable() const { return false; }
    ///@}
    ///@{
    /// Space that is kept free around the leaf; by default none.
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    ///@}
    ///@{
    /// The size of the leaf where there is no space to give out.
    virtual float BestWidth() const = 0;
    virtual float BestHeight() const = 0;
    ///@}

    /// Places the leaf in the rectangle, from which its margins have been taken off. Returns the
    /// size that it took; what follows is placed by it, so a leaf with margins adds them.
    virtual geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) = 0;

protected:
    /// For the engine: reads the sizes and the margins.
    void RebuildSelf() override;

private:
    impl::ArrangementSet& ArrangementsSelf() override { return mArrangements; }

    impl::ArrangementSet mArrangements;
};

} // namespace brindle::arrange
