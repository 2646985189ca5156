#pragma once

#include <brindle/arrange/LayoutTree.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace brindle::host::layout {

/// Something to draw, with the place that the layout gave it.
struct Shape {
    enum class Kind { kLeaf, kGroup, kSeparator };

    Kind kind;
    geom::RectT<float> place; ///< of a leaf, without margins; of a group, around all its children
    arrange::Margins margins = {};
    arrange::LeafRole role = arrange::LeafRole::kButton; ///< of a leaf
    std::string label = {};                              ///< of a leaf or a group
    std::uint32_t key = 0; ///< of a leaf or a group, among its siblings
    std::size_t level = 0; ///< of a leaf or a group: how many groups it stands in
    bool isPlaced = true;  ///< false for a node that the layout had to leave out
};

geom::RectT<float> WithMargins(geom::RectT<float> const& inRect, arrange::Margins const& inMargins);

/// The smallest rectangle that contains both.
geom::RectT<float> United(geom::RectT<float> const& inLHS, geom::RectT<float> const& inRHS);

/// A described tree that remembers where its nodes and the separators of its groups were placed.
class PicturedTree {
public:
    explicit PicturedTree(arrange::LayoutDescription inDescription);
    PicturedTree(PicturedTree const&) = delete;
    PicturedTree& operator=(PicturedTree const&) = delete;

    arrange::IArrangeable& Root() noexcept { return mTree.Root(); }
    /// Arranges the tree in a rectangle of this size, whose corner is at (0, 0), and returns the
    /// shapes of all nodes from back to front.
    std::vector<Shape> Arranged(float inWidth, float inHeight);

private:
    using Lines = std::map<std::size_t, geom::RectT<float>>; ///< by the number of the separator

    void WatchSeparators(arrange::LayoutDescription const& inDescription,
                         arrange::IArrangeable& ioNode);
    void AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel,
                      arrange::LayoutDescription const& inDescription,
                      arrange::IArrangeable const& inNode) const;

    arrange::LayoutDescription mDescription;
    std::map<arrange::IArrangeable const*, Lines> mSeparators;
    arrange::LayoutTree mTree;
};

} // namespace brindle::host::layout
