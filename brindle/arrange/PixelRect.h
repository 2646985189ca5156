#pragma once

#include <brindle/geom/Rect.h>

#include <cmath>
#include <cstdint>

namespace brindle::arrange {

namespace impl {

/// The nearest whole number, far enough from the limits of its type to be added; 0 for NaN.
inline std::int32_t NearestPixel(float inCoordinate) noexcept {
    constexpr float kFarthest = 1e9F;
    float const nearest = std::floor(inCoordinate + 0.5F);
    if (nearest >= kFarthest) {
        return static_cast<std::int32_t>(kFarthest);
    }
    if (nearest <= -kFarthest) {
        return -static_cast<std::int32_t>(kFarthest);
    }
    return std::isnan(nearest) ? 0 : static_cast<std::int32_t>(nearest);
}

} // namespace impl

/// A place in whole pixels, as toolkits take it. The edges are rounded, not the sizes, so what
/// touches still touches, and nothing overlaps that did not overlap.
///
///     leaf.SetPlace([&](auto const& inRect) { button.Move(PixelRect(inRect)); });
inline geom::RectT<std::int32_t> PixelRect(geom::RectT<float> const& inRect) noexcept {
    std::int32_t const left = impl::NearestPixel(inRect.x);
    std::int32_t const top = impl::NearestPixel(inRect.y);
    return {left, top, impl::NearestPixel(inRect.x + inRect.width) - left,
            impl::NearestPixel(inRect.y + inRect.height) - top};
}

} // namespace brindle::arrange
