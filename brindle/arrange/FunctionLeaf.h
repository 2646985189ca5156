#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/Margins.h>
#include <brindle/arrange/Single.h>

#include <functional>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

namespace brindle::arrange {

/// What a leaf asks for along one axis: a number of any type is a size that it always has.
struct Extent {
    constexpr Extent() noexcept = default;
    /// A size that never changes.
    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    constexpr Extent(Number inSize) noexcept
        : minimum(static_cast<float>(inSize)), best(static_cast<float>(inSize)) {}
    /// All fields in their order; `Growing` and `Flexible` say it more clearly.
    constexpr Extent(float inMinimum, float inBest, float inMaximum, bool inIsExpandable) noexcept
        : minimum(inMinimum), best(inBest), maximum(inMaximum), isExpandable(inIsExpandable) {}

    float minimum = 0; ///< the least size at which the leaf is usable
    float best = 0;    ///< the size without space to give out
    float maximum = std::numeric_limits<float>::infinity(); ///< of an expandable leaf
    bool isExpandable = false; ///< whether the leaf takes more than the best size if there is space
};

/// Compares all fields.
constexpr bool operator==(Extent const& inLHS, Extent const& inRHS) noexcept {
    return inLHS.minimum == inRHS.minimum && inLHS.best == inRHS.best &&
           inLHS.maximum == inRHS.maximum && inLHS.isExpandable == inRHS.isExpandable;
}

constexpr bool operator!=(Extent const& inLHS, Extent const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// An extent that takes the space that is left, up to a maximum. Expandable neighbours share the
/// space in proportion to their best sizes, so one with a best size of 0 gets nothing.
template <typename Number>
constexpr Extent Growing(Number inBest,
                         float inMaximum = std::numeric_limits<float>::infinity()) noexcept {
    return {static_cast<float>(inBest), static_cast<float>(inBest), inMaximum, true};
}

/// An extent that shrinks to a minimum as well as growing, across the line in which the leaf
/// stands: the width of a text in a column. Along a line a group gives out the space above the
/// minimum on top of the best size, so there the two should be equal, as they are in `Growing`.
constexpr Extent Flexible(float inMinimum, float inBest,
                          float inMaximum = std::numeric_limits<float>::infinity()) noexcept {
    return {inMinimum, inBest, inMaximum, true};
}

/// What a leaf asks for. The margins do not count.
struct LeafSizes {
    Extent width;  ///< along x
    Extent height; ///< along y
};

/// Compares all fields.
constexpr bool operator==(LeafSizes const& inLHS, LeafSizes const& inRHS) noexcept {
    return inLHS.width == inRHS.width && inLHS.height == inRHS.height;
}

constexpr bool operator!=(LeafSizes const& inLHS, LeafSizes const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// A leaf made of numbers and functions, so that a program need not derive a class for each kind of
/// widget.
///
///     FunctionLeaf name({Growing(60), 24}, [&](auto const& inRect) { field.Move(inRect); });
///     FunctionLeaf ok([&] { return LeafSizes{button.Width(), button.Height()}; }, placeButton);
///
/// Exceptions of the functions pass through the operation of the tree that called them. A function
/// may change other nodes of the tree, but must not destroy the leaf.
class BRN_API FunctionLeaf final : public Single {
public:
    /// Called with the place of the leaf, whose margins have been taken off. The width and the
    /// height are never negative.
    using PlaceFunction = std::function<void(geom::RectT<float> const&)>;
    /// Called when the leaf is measured: before it is first arranged, and after `Invalidate`.
    using SizeFunction = std::function<LeafSizes()>;
    /// Returns the height that the leaf needs at a width, as for a text that is broken into lines.
    using HeightFunction = std::function<float(float inWidth)>;

    /// Any function may be empty.
    explicit FunctionLeaf(LeafSizes const& inSizes = {}, PlaceFunction inPlace = {},
                          Margins const& inMargins = {});
    explicit FunctionLeaf(SizeFunction inSizes, PlaceFunction inPlace = {},
                          Margins const& inMargins = {});
    ~FunctionLeaf() override;

    /// These invalidate the leaf.
    void SetSizes(LeafSizes const& inSizes);
    void SetSizes(SizeFunction inSizes);
    void SetMargins(Margins const& inMargins);
    /// Replaces the minimum and the best height by what the function returns for the width at which
    /// the leaf was last placed, at first for its best width. When it is placed at a width that
    /// needs another height, the tree is arranged once more.
    void SetHeightForWidth(HeightFunction inHeight);

    /// Takes effect when the leaf is placed next.
    void SetPlace(PlaceFunction inPlace) { mPlace = std::move(inPlace); }

    /// Where the leaf was placed last, without its margins; empty before that.
    std::optional<geom::RectT<float>> const& Place() const noexcept { return mLastPlace; }
    /// Those given to the constructor or to `SetMargins`.
    Margins const& LeafMargins() const noexcept { return mMargins; }

    float MinWidth() const override { return mSizes.width.minimum; }
    float MinHeight() const override { return mSizes.height.minimum; }
    float BestWidth() const override { return mSizes.width.best; }
    float BestHeight() const override { return mSizes.height.best; }
    float ExpandedWidth(float inAvailable) const override;
    float ExpandedHeight(float inAvailable) const override;
    bool HorizontallyExpandable() const override { return mSizes.width.isExpandable; }
    bool VerticallyExpandable() const override { return mSizes.height.isExpandable; }
    float LeftMargin() const override { return mMargins.left; }
    float RightMargin() const override { return mMargins.right; }
    float TopMargin() const override { return mMargins.top; }
    float BottomMargin() const override { return mMargins.bottom; }
    geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override;

private:
    void RebuildSelf() override;

    LeafSizes mSizes; ///< as measured last, if there are functions
    SizeFunction mMeasure;
    HeightFunction mHeightForWidth;
    PlaceFunction mPlace;
    Margins mMargins;
    std::optional<geom::RectT<float>> mLastPlace;
};

/// An empty leaf that takes the space that is left, in each direction in which its size is above 0.
/// Several share it in proportion to their sizes.
///
///     row.Emplace<Spacer>(1.0F, 0.0F); // pushes what follows to the end of the row
class BRN_API Spacer final : public Single {
public:
    /// The best sizes in both directions; a direction with 0 does not expand.
    Spacer(float inWidth, float inHeight) noexcept : mWidth(inWidth), mHeight(inHeight) {}
    ~Spacer() override;

    float BestWidth() const override { return mWidth; }
    float BestHeight() const override { return mHeight; }
    bool HorizontallyExpandable() const override { return mWidth > 0; }
    bool VerticallyExpandable() const override { return mHeight > 0; }
    geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override;

private:
    float mWidth;
    float mHeight;
};

} // namespace brindle::arrange
