#pragma once

#include "Exhibits.h"

#include <ostream>

namespace layout_gallery {

/// Arranges every tree in each of its rectangles, and writes all of it as one SVG page.
void WriteGallery(std::ostream& ioStream, std::vector<Exhibit> const& inExhibits);

} // namespace layout_gallery
