#pragma once

#include <brindle/Export.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/utility/RefCountedObject.h>

#include <cstdint>

namespace brindle::arrange::impl {

/// One alternative layout of a node, held by `boost::intrusive_ptr` and shared by all alternatives
/// that are built from it. Sizes and coordinates are in the client's unit of length; a `PointT`
/// that stands for a size holds a width and a height.
class BRN_API IArrangement : public utility::RefCountedObject {
public:
    ~IArrangement() override;

    /// Lays the alternative out in the rectangle and returns the size that it took.
    virtual geom::PointT<float> Arrange(geom::RectT<float> const& inRect) = 0;

    virtual bool HorizontallyExpandable() const = 0;
    virtual bool VerticallyExpandable() const = 0;
    virtual float MinWidth() const = 0;
    virtual float MinHeight() const = 0;
    virtual float BestWidth() const = 0;
    virtual float BestHeight() const = 0;

    /// The width that the alternative takes when it is offered `inAvailable`.
    virtual float ExpandedWidth(float inAvailable) const = 0;
    virtual float ExpandedHeight(float inAvailable) const = 0;

    /// How much of the content at minimum size would be cut off in a rectangle of this size.
    virtual float ClippedArea(geom::PointT<float> const& inSize) const;
    /// How much of a rectangle of this size would stay empty; negative if the alternative takes
    /// more.
    virtual float UnusedArea(geom::PointT<float> const& inSize) const;

    /// Finishes the measuring that could not be done when the alternative was constructed.
    virtual void Prepare() = 0;
    /// Whether the alternative stands for its whole node: margins apply to it, and the node hears
    /// of its position and size.
    virtual bool IsOuter() const = 0;

    /// How many alternatives are nested here, one inside the other: 1 for a leaf's.
    std::uint32_t Depth() const noexcept { return mDepth; }
    /// How many alternatives this one is made of, itself included: 1 for a leaf's.
    std::uint64_t Count() const noexcept { return mCount; }

protected:
    IArrangement() = default;

    std::uint32_t mDepth = 1;
    std::uint64_t mCount = 1;
};

} // namespace brindle::arrange::impl
