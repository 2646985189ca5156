#include "arrange/src/search/FrontMerge.h"

#include "arrange/src/search/FrontSearch.h"

#include <algorithm>
#include <tuple>

namespace brindle::arrange::impl {

namespace {

/// The size of the whole group, in the same directions for every form.
struct WholeSize {
    std::int64_t width;
    std::int64_t height;
};

bool IsBefore(WholeSize const& inLHS, WholeSize const& inRHS) noexcept {
    return std::tie(inLHS.width, inLHS.height) < std::tie(inRHS.width, inRHS.height);
}

/// The layouts of one form that one search covers.
struct Family {
    LayoutForm form;
    std::unique_ptr<IFrontSearch> search;
    std::vector<LineExtent> front;
};

WholeSize SizeIn(Family const& inFamily, LineExtent inExtent) noexcept {
    return HasRows(inFamily.form) ? WholeSize{inExtent.main, inExtent.cross}
                                  : WholeSize{inExtent.cross, inExtent.main};
}

/// The sizes that no other one beats, by rising width and falling height.
std::vector<WholeSize> Unbeaten(std::vector<Family> const& inFamilies) {
    std::vector<WholeSize> sizes;
    for (Family const& family : inFamilies) {
        for (LineExtent const& extent : family.front) {
            sizes.push_back(SizeIn(family, extent));
        }
    }
    std::sort(sizes.begin(), sizes.end(), IsBefore);
    auto const isNoLower = [](WholeSize const& a, WholeSize const& b) {
        return b.height >= a.height;
    };
    sizes.erase(std::unique(sizes.begin(), sizes.end(), isNoLower), sizes.end());
    return sizes;
}

/// For each of `inSizes` that the family has, stores its layout at the same index of `ioLayouts`,
/// unless the layout there has a greater combination of alternatives.
void Place(Family const& inFamily, std::vector<WholeSize> const& inSizes,
           std::vector<FoundLayout>& ioLayouts) {
    std::vector<LineExtent> kept;
    std::vector<std::size_t> places;
    for (LineExtent const& extent : inFamily.front) {
        WholeSize const size = SizeIn(inFamily, extent);
        auto const at = std::lower_bound(inSizes.begin(), inSizes.end(), size, IsBefore);
        if (at != inSizes.end() && !IsBefore(size, *at)) {
            kept.push_back(extent);
            places.push_back(static_cast<std::size_t>(at - inSizes.begin()));
        }
    }
    std::vector<LinePick> picks = inFamily.search->Picks(kept);
    for (std::size_t i = 0; i < picks.size(); ++i) {
        FoundLayout& layout = ioLayouts[places[i]];
        if (picks[i].alternatives >= layout.alternatives) {
            layout.alternatives = std::move(picks[i].alternatives);
            layout.form = inFamily.form;
            layout.lines.clear();
            if (IsWrapping(inFamily.form)) {
                layout.lines = std::move(picks[i].lines);
            }
        }
    }
}

/// Sorts the layouts into the order of trying.
void Sort(std::vector<FoundLayout>& ioLayouts, std::vector<LayoutForm> const& inForms) {
    auto const place = [&inForms](LayoutForm form) {
        return std::find(inForms.begin(), inForms.end(), form) - inForms.begin();
    };
    auto const isBefore = [&place](FoundLayout const& a, FoundLayout const& b) {
        if (a.alternatives != b.alternatives) {
            return a.alternatives < b.alternatives;
        }
        if (a.form != b.form) {
            return place(a.form) < place(b.form);
        }
        return a.lines.size() != b.lines.size() ? a.lines.size() < b.lines.size()
                                                : a.lines > b.lines;
    };
    std::sort(ioLayouts.begin(), ioLayouts.end(), isBefore);
}

} // namespace

std::vector<FoundLayout> MergeFronts(LayoutProblem const& inProblem, SizeGrid const& inGrid) {
    std::vector<LineProblem> problems; // the families hold references to these and to `fronts`
    std::vector<LineFronts> fronts;
    problems.reserve(inProblem.forms.size());
    fronts.reserve(inProblem.forms.size());
    std::vector<Family> families;
    for (LayoutForm const form : inProblem.forms) {
        LineProblem const& problem = problems.emplace_back(inGrid.Lines(inProblem, form));
        LineFronts const& lines = fronts.emplace_back(problem);
        bool const isWrapping = IsWrapping(form);
        if (!isWrapping || inProblem.children.size() > 1) {
            auto const margins = isWrapping ? LineMargins::kInLineAndStack : LineMargins::kOnce;
            families.push_back({form, SearchOneLine(problem, lines, margins), {}});
        }
        if (isWrapping) {
            families.push_back({form, SearchBreaks(problem, lines), {}});
        }
    }
    for (Family& family : families) {
        family.front = family.search->Front();
    }
    std::vector<WholeSize> const sizes = Unbeaten(families);
    std::vector<FoundLayout> layouts(sizes.size());
    for (Family const& family : families) {
        Place(family, sizes, layouts);
    }
    Sort(layouts, inProblem.forms);
    return layouts;
}

} // namespace brindle::arrange::impl
