#pragma once

#include "arrange/src/search/LineFronts.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brindle::arrange::impl {

/// A layout of a group, the alternatives and line lengths by child.
struct LinePick {
    std::vector<std::uint32_t> alternatives;
    std::vector<std::uint32_t> lines;
};

/// All layouts of one family, without building them: first the sizes that no other layout of the
/// family beats, then for some of these the layouts that have them.
class IFrontSearch {
public:
    IFrontSearch() = default;
    IFrontSearch(IFrontSearch const&) = delete;
    IFrontSearch& operator=(IFrontSearch const&) = delete;
    virtual ~IFrontSearch() = default;

    /// At least the unbeaten sizes of the whole group, margins and all; main is along the lines,
    /// and falls from each size to the next.
    virtual std::vector<LineExtent> Front() const = 0;

    /// For each of `inSizes`, a selection from the unbeaten ones of `Front` in its order: of the
    /// layouts that have it the one with the greatest combination of alternatives, the first child
    /// counting most, then with the most lines, then with the shorter earlier lines.
    virtual std::vector<LinePick> Picks(std::vector<LineExtent> const& inSizes) const = 0;
};

/// How often the group's margins count around a single line.
enum class LineMargins { kOnce, kInLineAndStack };

/// All children on one line. The search keeps references to both.
std::unique_ptr<IFrontSearch> SearchOneLine(LineProblem const& inProblem,
                                            LineFronts const& inFronts, LineMargins inMargins);

/// The children on two lines or more; a single child on a line of its own. The search keeps
/// references to both.
std::unique_ptr<IFrontSearch> SearchBreaks(LineProblem const& inProblem,
                                           LineFronts const& inFronts);

} // namespace brindle::arrange::impl
