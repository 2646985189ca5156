#pragma once

#include <brindle/arrange/LayoutForm.h>
#include <brindle/geom/Point.h>

#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

/// What a group's layouts are made of: minimum sizes of its children's alternatives, its spacing
/// and the sums of its margins, and the families in the order in which they are tried.
struct LayoutProblem {
    std::vector<std::vector<geom::PointT<float>>> children;
    geom::PointT<float> spacing;
    geom::PointT<float> margins;
    std::vector<LayoutForm> forms;
};

/// A layout: the alternative of each child and, where children are broken into lines, their
/// numbers.
struct FoundLayout {
    std::vector<std::uint32_t> alternatives;
    LayoutForm form;
    std::vector<std::uint32_t> lines;
};

/// The layouts that are left of all of them when each is tried and none is kept that another one
/// beats on minimum size, in the order of trying.
std::vector<FoundLayout> FindLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
