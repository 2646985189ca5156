#pragma once

#include <brindle/arrange/AbstractArrangeableGroup.h>
#include <brindle/arrange/AxisArrangement.h>

#include <cstdint>

namespace brindle::arrange::impl {

/// What the interfaces call width and height, or left and top, under one name for both axes.
template <MainAxis kAxis>
struct Axis {
    static constexpr bool kIsHorizontal = kAxis == MainAxis::kHorizontal;

    template <typename Point>
    static auto& Coordinate(Point& ioPoint) {
        return kIsHorizontal ? ioPoint.x : ioPoint.y;
    }
    template <typename Rect>
    static auto& Extent(Rect& ioRect) {
        return kIsHorizontal ? ioRect.width : ioRect.height;
    }

    static float Min(IArrangement const& inChild) {
        return kIsHorizontal ? inChild.MinWidth() : inChild.MinHeight();
    }
    static float Best(IArrangement const& inChild) {
        return kIsHorizontal ? inChild.BestWidth() : inChild.BestHeight();
    }
    static float Expanded(IArrangement const& inChild, float inAvailable) {
        return kIsHorizontal ? inChild.ExpandedWidth(inAvailable)
                             : inChild.ExpandedHeight(inAvailable);
    }
    static bool IsExpandable(IArrangement const& inChild) {
        return kIsHorizontal ? inChild.HorizontallyExpandable() : inChild.VerticallyExpandable();
    }

    static float Spacing(AbstractArrangeableGroup const* inOwner) {
        if (inOwner == nullptr) {
            return 0;
        }
        return kIsHorizontal ? inOwner->HorizontalSpacing() : inOwner->VerticalSpacing();
    }
    static float LeadMargin(AbstractArrangeableGroup const* inOwner) {
        if (inOwner == nullptr) {
            return 0;
        }
        return kIsHorizontal ? inOwner->LeftMargin() : inOwner->TopMargin();
    }
    static float Margins(AbstractArrangeableGroup const* inOwner) {
        if (inOwner == nullptr) {
            return 0;
        }
        return kIsHorizontal ? inOwner->LeftMargin() + inOwner->RightMargin()
                             : inOwner->TopMargin() + inOwner->BottomMargin();
    }
    /// How far the alignment moves content in a space that is larger than it by `inSlack`.
    static float Shift(AbstractArrangeableGroup const* inOwner, float inSlack) {
        if (inOwner == nullptr) {
            return 0;
        }
        std::int32_t const alignment = kIsHorizontal ? std::int32_t{inOwner->HorizontalAlignment()}
                                                     : std::int32_t{inOwner->VerticalAlignment()};
        switch (alignment) {
        case 1:
            return inSlack * 0.5F;
        case 2:
            return inSlack;
        default:
            return 0;
        }
    }
};

} // namespace brindle::arrange::impl
