#include <brindle/arrange/TreeSizes.h>

#include "arrange/src/tree/Pass.h"

#include <algorithm>

namespace brindle::arrange {

geom::PointT<float> MinimumSize(IArrangeable& ioTree) {
    impl::Pass const pass;
    impl::ArrangementSet const& set = ioTree.Arrangements();
    if (set.Empty()) {
        return {};
    }
    geom::PointT<float> least{set[0]->MinWidth(), set[0]->MinHeight()};
    for (std::size_t index = 1; index < set.Size(); ++index) {
        least.x = std::min(least.x, set[index]->MinWidth());
        least.y = std::min(least.y, set[index]->MinHeight());
    }
    return least;
}

geom::PointT<float> SizeForWidth(IArrangeable& ioTree, float inWidth) {
    impl::Pass const pass;
    impl::ArrangementSet const& set = ioTree.Arrangements();
    geom::PointT<float> found;
    for (std::size_t index = 0; index < set.Size(); ++index) {
        geom::PointT<float> const size{set[index]->MinWidth(), set[index]->MinHeight()};
        bool const fits = size.x <= inWidth;
        bool const foundFits = found.x <= inWidth;
        bool const isBetter = fits && foundFits ? size.y < found.y : size.x < found.x;
        if (index == 0 || isBetter) {
            found = size;
        }
    }
    return found;
}

} // namespace brindle::arrange
