#include <brindle/utility/PlatformBridges.h>

#include <brindle/filesupport/File.h>

#include "platform/FileAssociations.h"

namespace brindle::utility {

namespace {

std::int32_t WrappingSum(std::int32_t inLHS, std::int32_t inRHS) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(inLHS) +
                                     static_cast<std::uint32_t>(inRHS));
}

std::int32_t WrappingDifference(std::int32_t inLHS, std::int32_t inRHS) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(inLHS) -
                                     static_cast<std::uint32_t>(inRHS));
}

} // namespace

tagPOINT BRNtoWIN(geom::PointT<std::int32_t> const& inPoint) noexcept {
    return {inPoint.x, inPoint.y};
}

geom::PointT<std::int32_t> WINtoBRN(tagPOINT const& inPoint) noexcept {
    return {inPoint.x, inPoint.y};
}

tagRECT BRNtoWIN(geom::RectT<std::int32_t> const& inRect) noexcept {
    return {inRect.x, inRect.y, WrappingSum(inRect.x, inRect.width),
            WrappingSum(inRect.y, inRect.height)};
}

geom::RectT<std::int32_t> WINtoBRN(tagRECT const& inRect) noexcept {
    return {inRect.left, inRect.top, WrappingDifference(inRect.right, inRect.left),
            WrappingDifference(inRect.bottom, inRect.top)};
}

void FindAppFromExtension(UTF16String const& inExtension, filesupport::File& outApplication) {
    auto const path = platform::FindApplication(inExtension);
    if (path) {
        outApplication = filesupport::File(path.value);
    }
}

} // namespace brindle::utility
