#pragma once

#include <cstdint>

namespace brindle::arrange::impl {

/// Nodes that stand deeper in a tree are left out of the layout, so that the stack is not
/// exhausted. At this depth measuring and arranging take 0.9 MiB of stack, and 3.3 MiB under the
/// address sanitizer.
constexpr std::uint32_t kDeepestTree = 2000;
/// Alternatives that are nested deeper than this are left out, too. A wrapping group adds two
/// levels.
constexpr std::uint32_t kDeepestArrangement = 2 * kDeepestTree;
/// Alternatives that are made of more alternatives than this are left out as well: nodes that by
/// mistake show each other twice would double with each measuring.
constexpr std::uint64_t kLargestArrangement = 1 << 20;

} // namespace brindle::arrange::impl
