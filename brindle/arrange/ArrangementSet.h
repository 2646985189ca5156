#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangement.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstddef>
#include <vector>

namespace brindle::arrange::impl {

/// The alternatives of a node, and the choice among them. No alternative in the set has a minimum
/// size that is at most another one's in both directions.
class BRN_API ArrangementSet {
public:
    /// Adds an alternative unless the set has one that is no larger in either direction, and drops
    /// those that are no smaller than the new one in either direction. Of two with equal minimum
    /// sizes the newer one stays. A null pointer is ignored.
    void AddArrangement(boost::intrusive_ptr<IArrangement> inArrangement);
    void Clear() noexcept { mArrangements.clear(); }
    /// Prepares every alternative, in order.
    void Prepare();

    bool Empty() const noexcept { return mArrangements.empty(); }
    std::size_t Size() const noexcept { return mArrangements.size(); }
    /// The alternatives in the order in which they were added; null past the end.
    boost::intrusive_ptr<IArrangement> operator[](std::size_t inIndex) const;

    /// The minimum size of the alternative whose best size has the aspect nearest the golden ratio;
    /// (0, 0) if the set is empty.
    geom::PointT<float> BestSize() const;

    /// Lays out the alternative that suits the rectangle best, and returns the size that it took;
    /// (0, 0) if the set is empty. An alternative that fits is better than one that does not. If
    /// none fits, the least clipped one wins. Among those that fit, the one that leaves the least
    /// area unused wins, then the one with the smallest minimum area, then the one nearest the
    /// golden ratio, then the earliest.
    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) const;

private:
    std::vector<boost::intrusive_ptr<IArrangement>> mArrangements;
};

} // namespace brindle::arrange::impl
