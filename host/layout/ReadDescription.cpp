#include "host/layout/ReadDescription.h"

#include "host/layout/ListReader.h"

#include <utility>

namespace brindle::host::layout {

using namespace arrange;
using proplist::PropList;

namespace {

using Words = std::vector<char const*>;

// The words for the values of an enumeration, in their order.
Words const kKinds{"Row",       "Column", "Flipping", "HorizontalWrapping", "VerticalWrapping",
                   "AutoLayout"};
Words const kHorizontalAlignments{"left", "centre", "right"};
Words const kVerticalAlignments{"top", "centre", "bottom"};
Words const kRoles(kRoleNames.begin(), kRoleNames.end());

constexpr char kNumberOrList[] = "a number or a list";

/// Leaves the value alone if there is no such key.
template <typename Enumeration>
void ReadWord(ListReader& ioReader, char const* inKey, Words const& inWords, Enumeration& ioValue) {
    if (auto const place = ioReader.Word(inKey, inWords)) {
        ioValue = static_cast<Enumeration>(*place);
    }
}

MarginsDescription ReadMargins(ListReader& ioNode) {
    MarginsDescription margins;
    if (!ioNode.HasList("margins")) {
        float const all = ioNode.Number("margins", kNumberOrList).value_or(0);
        return {all, all, all, all};
    }
    ListReader list = *ioNode.List("margins");
    margins.left = list.Number("left").value_or(0);
    margins.top = list.Number("top").value_or(0);
    margins.right = list.Number("right").value_or(0);
    margins.bottom = list.Number("bottom").value_or(0);
    list.RefuseOtherKeys();
    return margins;
}

geom::PointT<float> ReadSpacing(ListReader& ioNode) {
    if (!ioNode.HasList("spacing")) {
        float const both = ioNode.Number("spacing", kNumberOrList).value_or(0);
        return {both, both};
    }
    ListReader list = *ioNode.List("spacing");
    float const horizontal = list.Number("horizontal").value_or(0);
    float const vertical = list.Number("vertical").value_or(0);
    list.RefuseOtherKeys();
    return {horizontal, vertical};
}

float ReadBest(ListReader& ioReader, char const* inKey, char const* inExpected) {
    auto const best = ioReader.Number(inKey, inExpected);
    if (!best) {
        ioReader.FailAsMissing(inKey, inExpected);
    }
    return *best;
}

ExtentDescription ReadExtent(ListReader& ioNode, char const* inKey) {
    ExtentDescription extent;
    if (!ioNode.HasList(inKey)) {
        extent.best = ReadBest(ioNode, inKey, kNumberOrList);
        return extent;
    }
    ListReader list = *ioNode.List(inKey);
    extent.best = ReadBest(list, "best", "a number");
    extent.minimum = list.Number("minimum");
    extent.isExpandable = list.Flag("expandable").value_or(false);
    if (auto const maximum = list.Number("maximum")) {
        extent.maximum = *maximum;
        if (!extent.isExpandable) {
            list.Fail("maximum", "only what is expandable has one");
        }
    }
    list.RefuseOtherKeys();
    return extent;
}

void ReadLeaf(ListReader& ioReader, NodeDescription& outLeaf) {
    ReadWord(ioReader, "role", kRoles, outLeaf.role);
    outLeaf.width = ReadExtent(ioReader, "width");
    outLeaf.height = ReadExtent(ioReader, "height");
}

/// Result: the children, which are to be read into those of `outGroup`.
std::vector<ListReader::NumberedList> ReadGroup(ListReader& ioReader, NodeDescription& outGroup) {
    auto const kind = ioReader.Word("kind", kKinds);
    if (!kind) {
        ioReader.FailAsMissing("kind", "the kind of the group");
    }
    outGroup.kind = static_cast<GroupArrangementType>(*kind);
    outGroup.spacing = ReadSpacing(ioReader);
    if (auto alignment = ioReader.List("alignment")) {
        ReadWord(*alignment, "horizontal", kHorizontalAlignments, outGroup.horizontalAlignment);
        ReadWord(*alignment, "vertical", kVerticalAlignments, outGroup.verticalAlignment);
        alignment->RefuseOtherKeys();
    }
    outGroup.hasSeparators = ioReader.Flag("separators").value_or(false);
    auto list = ioReader.List("children");
    auto children = list ? list->NumberedLists() : std::vector<ListReader::NumberedList>();
    if (children.empty()) {
        ioReader.FailAsMissing("children", "a list with at least one child");
    }
    outGroup.children.resize(children.size());
    return children;
}

class TreeReader {
public:
    NodeDescription Read(PropList const& inList) {
        try {
            NodeDescription root;
            ReadNode(inList, root);
            while (!mOpenGroups.empty()) {
                ReadNext();
            }
            return root;
        } catch (description_error const& error) {
            throw description_error(Path() + error.what());
        }
    }

private:
    struct OpenGroup {
        NodeDescription* description;
        std::vector<ListReader::NumberedList> children;
        std::size_t readCount = 0;
    };

    void ReadNode(PropList const& inList, NodeDescription& outNode) {
        ListReader reader(inList);
        if (auto const label = reader.Text("label")) {
            outNode.label = *label;
        }
        outNode.margins = ReadMargins(reader);
        bool const isGroup = reader.Has("kind") || reader.Has("children");
        if (!isGroup) {
            ReadLeaf(reader, outNode);
            reader.RefuseOtherKeys();
            return;
        }
        auto children = ReadGroup(reader, outNode);
        reader.RefuseOtherKeys();
        mOpenGroups.push_back({&outNode, std::move(children)});
        if (mOpenGroups.size() == kMostLevels) {
            mOpenGroups.clear();
            throw description_error("the tree has more than " + std::to_string(kMostLevels) +
                                    " levels");
        }
    }

    void ReadNext() {
        OpenGroup& group = mOpenGroups.back();
        if (group.readCount == group.children.size()) {
            mOpenGroups.pop_back();
            return;
        }
        ListReader::NumberedList const& child = group.children[group.readCount];
        NodeDescription& description = group.description->children[group.readCount];
        ++group.readCount;
        description.key = child.number;
        ReadNode(*child.list, description);
    }

    /// Of the node that is being read, with a slash behind it; empty for the root.
    std::string Path() const {
        std::string path;
        for (OpenGroup const& group : mOpenGroups) {
            path += "children/" + std::to_string(group.children[group.readCount - 1].number) + '/';
        }
        return path;
    }

    std::vector<OpenGroup> mOpenGroups; ///< those that the node stands in, the root first
};

} // namespace

NodeDescription ReadDescription(PropList const& inList) {
    return TreeReader().Read(inList);
}

} // namespace brindle::host::layout
