#pragma once

#include "arrange/src/search/LineFronts.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brindle::arrange::impl {

/// A layout of one form: which alternative of each child, and how many children on each line.
struct LinePick {
    std::vector<std::uint32_t> alternatives;
    std::vector<std::uint32_t> lines;
};

/// Searches all layouts of one family without building them: first for the sizes that no other
/// layout of the family beats, then for the layouts that have some of these sizes.
class IFrontSearch {
public:
    IFrontSearch() = default;
    IFrontSearch(IFrontSearch const&) = delete;
    IFrontSearch& operator=(IFrontSearch const&) = delete;
    virtual ~IFrontSearch() = default;

    /// The unbeaten sizes of the whole group, with margins, and perhaps some that are beaten. The
    /// extent along the lines falls from each size to the next.
    virtual std::vector<LineExtent> Front() const = 0;

    /// For each of `inSizes`, which are unbeaten sizes of `Front` in its order, the layout that is
    /// tried last among those of this size: the one with the greatest combination of alternatives,
    /// the first child counting most, then with the most lines, then with shorter earlier lines.
    virtual std::vector<LinePick> Picks(std::vector<LineExtent> const& inSizes) const = 0;
};

/// How many times a single line includes the group's margins.
enum class LineMargins { kOnce, kInLineAndStack };

/// Covers the layouts with all children on one line. Keeps references to the first two arguments.
std::unique_ptr<IFrontSearch> SearchOneLine(LineProblem const& inProblem,
                                            LineFronts const& inFronts, LineMargins inMargins);

/// Covers the layouts with two or more lines, or with a single child. Keeps references to both
/// arguments.
std::unique_ptr<IFrontSearch> SearchBreaks(LineProblem const& inProblem,
                                           LineFronts const& inFronts);

} // namespace brindle::arrange::impl
