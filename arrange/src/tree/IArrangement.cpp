#include <brindle/arrange/IArrangement.h>

#include <algorithm>

namespace brindle::arrange::impl {

IArrangement::~IArrangement() = default;

float IArrangement::ClippedArea(geom::PointT<float> const& inSize) const {
    return MinHeight() * std::max(0.0F, MinWidth() - inSize.x) +
           MinWidth() * std::max(0.0F, MinHeight() - inSize.y);
}

float IArrangement::UnusedArea(geom::PointT<float> const& inSize) const {
    return inSize.x * inSize.y - ExpandedWidth(inSize.x) * ExpandedHeight(inSize.y);
}

} // namespace brindle::arrange::impl
