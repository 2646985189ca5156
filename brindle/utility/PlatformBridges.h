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

/// The same point in the platform's structure, and back; nothing is lost.
BRN_API tagPOINT BRNtoWIN(geom::PointT<std::int32_t> const& inPoint) noexcept;
BRN_API geom::PointT<std::int32_t> WINtoBRN(tagPOINT const& inPoint) noexcept;

/// Converts between origin and extent and two corners. An edge or an extent beyond 32 bits wraps,
/// so that every rectangle survives the way there and back.
BRN_API tagRECT BRNtoWIN(geom::RectT<std::int32_t> const& inRect) noexcept;
BRN_API geom::RectT<std::int32_t> WINtoBRN(tagRECT const& inRect) noexcept;

/// Finds the installed program with which the user's desktop opens files with an extension (".txt",
/// with its dot). If there is none, `outApplication` is left alone, and nothing is reported. Reads
/// the desktop's own files at every call; any thread may call.
BRN_API void FindAppFromExtension(UTF16String const& inExtension,
                                  filesupport::File& outApplication);

} // namespace brindle::utility
