#include "arrange/src/measure/LayoutForms.h"

#include <brindle/arrange/AxisArrangement.h>

#include "arrange/src/boxes/FramedArrangement.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brindle::arrange::impl {

namespace {

constexpr int kMostLevels = 4;
constexpr std::size_t kMostLength = 200;

/// The alternative without insets, if it is that of a group; null for a leaf's.
GroupArrangement const* AsGroup(IArrangement const& inArrangement) {
    IArrangement const* arrangement = &inArrangement;
    while (auto const* const framed = dynamic_cast<FramedArrangement const*>(arrangement)) {
        arrangement = &framed->Content();
    }
    return dynamic_cast<GroupArrangement const*>(arrangement);
}

/// The line of a wrapping group that the child of a stack is; null if it is a child of the group.
GroupArrangement const* AsLine(GroupArrangement const& inStack, IArrangement const& inChild) {
    auto const* const line = dynamic_cast<GroupArrangement const*>(&inChild);
    bool const isLine =
        line != nullptr && line->Owner() != nullptr && line->Owner() == inStack.Owner();
    return isLine ? line : nullptr;
}

bool IsRow(GroupArrangement const& inGroup) {
    return dynamic_cast<RowArrangement const*>(&inGroup) != nullptr;
}

class Writer {
public:
    std::string Write(IArrangement const& inArrangement) {
        Append(inArrangement, 0);
        if (mText.size() > kMostLength) {
            mText.resize(kMostLength);
            mText += "...";
        }
        return mText;
    }

private:
    void Append(IArrangement const& inArrangement, int inLevel) {
        GroupArrangement const* const group = AsGroup(inArrangement);
        if (group == nullptr) {
            mText += inLevel == 0 ? "leaf" : ".";
            return;
        }
        std::vector<IArrangement const*> children;
        std::vector<std::size_t> lines;
        for (auto const& child : group->Children()) {
            std::size_t const before = children.size();
            if (GroupArrangement const* const line = AsLine(*group, *child)) {
                for (auto const& ofLine : line->Children()) {
                    children.push_back(ofLine.get());
                }
            } else {
                children.push_back(child.get());
            }
            lines.push_back(children.size() - before);
        }
        AppendShape(IsRow(*group), lines, children.size());
        AppendGroupsInside(children, inLevel);
    }

    void AppendShape(bool inIsRow, std::vector<std::size_t> const& inLines, std::size_t inCount) {
        bool const isOneLine = inLines.size() == 1 && inCount > 1;
        if (isOneLine || inLines.size() == inCount) {
            mText += (inIsRow != isOneLine ? "row of " : "column of ") + std::to_string(inCount);
            return;
        }
        mText += inIsRow ? "columns" : "rows";
        char separator = ' ';
        for (std::size_t index = 0; index < inLines.size() && mText.size() < kMostLength; ++index) {
            mText += separator + std::to_string(inLines[index]);
            separator = '+';
        }
    }

    void AppendGroupsInside(std::vector<IArrangement const*> const& inChildren, int inLevel) {
        bool const hasGroups =
            std::any_of(inChildren.begin(), inChildren.end(),
                        [](auto const* inChild) { return AsGroup(*inChild) != nullptr; });
        if (!hasGroups) {
            return;
        }
        if (inLevel == kMostLevels) {
            mText += " [...]";
            return;
        }
        char const* separator = " [";
        for (IArrangement const* const child : inChildren) {
            if (mText.size() > kMostLength) {
                return;
            }
            mText += separator;
            Append(*child, inLevel + 1);
            separator = ", ";
        }
        mText += ']';
    }

    std::string mText;
};

} // namespace

std::string FormOf(IArrangement const& inArrangement) {
    return Writer().Write(inArrangement);
}

} // namespace brindle::arrange::impl
