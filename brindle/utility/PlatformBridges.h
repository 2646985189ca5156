#pragma once

#include <brindle/Export.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/utility/PlatformTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

namespace brindle::filesupport {
class File;
}

namespace brindle::utility {

BRN_API tagPOINT BRNtoWIN(geom::PointT<std::int32_t> const& inPoint) noexcept;
BRN_API geom::PointT<std::int32_t> WINtoBRN(tagPOINT const& inPoint) noexcept;

/// From origin and extent to two corners, and back. An edge or an extent beyond 32 bits wraps, so
/// every rectangle comes back as it was.
BRN_API tagRECT BRNtoWIN(geom::RectT<std::int32_t> const& inRect) noexcept;
BRN_API geom::RectT<std::int32_t> WINtoBRN(tagRECT const& inRect) noexcept;

/// Finds the program with which the user's desktop opens files of an extension (".txt", with its
/// dot), and that is installed. Where there is none, `outApplication` stays as it was; nothing is
/// reported. Reads the desktop's own files at every call; any thread may call.
BRN_API void FindAppFromExtension(UTF16String const& inExtension,
                                  filesupport::File& outApplication);

} // namespace brindle::utility
