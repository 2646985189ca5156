#include "arrange/src/LayoutSearch.h"

namespace brindle::arrange::impl {

namespace {

/// Every way of breaking `inCount` children into `inLines` lines, longer earlier lines first.
void Break(std::uint32_t inCount, std::uint32_t inLines, FoundLayout& ioLayout,
           std::vector<FoundLayout>& ioFound) {
    if (inLines == 1) {
        ioLayout.lines.push_back(inCount);
        ioFound.push_back(ioLayout);
        ioLayout.lines.pop_back();
        return;
    }
    for (std::uint32_t length = inCount - inLines + 1; length > 0; --length) {
        ioLayout.lines.push_back(length);
        Break(inCount - length, inLines - 1, ioLayout, ioFound);
        ioLayout.lines.pop_back();
    }
}

} // namespace

std::vector<FoundLayout> FindLayouts(LayoutProblem const& inProblem) {
    std::vector<FoundLayout> found;
    std::vector<std::uint32_t> choice(inProblem.children.size());
    auto const count = static_cast<std::uint32_t>(choice.size());
    std::size_t varying = count;
    do {
        varying = count;
        for (LayoutForm const form : inProblem.forms) {
            FoundLayout layout{choice, form, {}};
            if (form == LayoutForm::kRow || form == LayoutForm::kColumn) {
                found.push_back(layout);
                continue;
            }
            for (std::uint32_t lines = 1; lines <= count; ++lines) {
                Break(count, lines, layout, found);
            }
        }
        while (varying > 0 && ++choice[varying - 1] == inProblem.children[varying - 1].size()) {
            choice[--varying] = 0;
        }
    } while (varying > 0);
    return found;
}

} // namespace brindle::arrange::impl
