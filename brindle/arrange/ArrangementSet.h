#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangement.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstddef>
#include <vector>

namespace brindle::arrange::impl {

/// The alternatives of a node, none of which another one beats on minimum size, and the choice
/// among them.
class BRN_API ArrangementSet {
public:
    /// Adds an alternative unless one in the set is at least as small both ways, and drops those
    /// that it is at least as small as. Of two with equal minimum sizes the newer one stays. A null
    /// pointer is ignored.
    void AddArrangement(boost::intrusive_ptr<IArrangement> inArrangement);
    void Clear() noexcept { mArrangements.clear(); }
    /// Prepares every alternative, in order.
    void Prepare();

    bool Empty() const noexcept { return mArrangements.empty(); }
    std::size_t Size() const noexcept { return mArrangements.size(); }
    /// In the order of adding. Null behind the last one.
    boost::intrusive_ptr<IArrangement> operator[](std::size_t inIndex) const;

    /// The minimum size of the alternative whose best size is nearest the golden ratio; (0, 0) if
    /// the set is empty.
    geom::PointT<float> BestSize() const;

    /// Lays out the alternative that suits the rectangle best. What fits beats what does not; of
    /// those that do not fit the least clipped one wins; of those that fit the one that leaves
    /// least unused, then the one of the smallest minimum area, then the one nearest the golden
    /// ratio; and at last the earlier one. Result: the size taken, (0, 0) if the set is empty.
    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) const;

private:
    std::vector<boost::intrusive_ptr<IArrangement>> mArrangements;
};

} // namespace brindle::arrange::impl
