#include <brindle/arrange/LayoutDescription.h>

#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropListUtils.h>

#include "arrange/src/description/ListReader.h"

#include <array>
#include <set>
#include <utility>

namespace brindle::arrange {

using impl::ListReader;
using impl::Words;
using proplist::PropList;

namespace {

// The words for the values of an enumeration, in the order of the values.
constexpr std::array kKinds{
    "Row", "Column", "Flipping", "HorizontalWrapping", "VerticalWrapping", "AutoLayout"};
constexpr std::array kHorizontalAlignments{"left", "centre", "right"};
constexpr std::array kVerticalAlignments{"top", "centre", "bottom"};

constexpr std::array kGroupKeys{"kind",       "children", "spacing", "alignment",
                                "separators", "name",     "label",   "margins"};
/// Including the two that would make the node a group.
constexpr std::array kLeafKeys{"width", "height",  "role", "name",
                               "label", "margins", "kind", "children"};
constexpr std::array kSides{"left", "top", "right", "bottom"};
constexpr std::array kDirections{"horizontal", "vertical"};
constexpr std::array kExtentKeys{"best", "minimum", "expandable", "maximum"};

constexpr char kNumberOrList[] = "a number or a list";

/// Leaves the value unchanged if there is no such key.
template <typename Enumeration>
void ReadWord(ListReader const& inReader, char const* inKey, Words inWords, Enumeration& ioValue) {
    if (auto const place = inReader.Word(inKey, inWords)) {
        ioValue = static_cast<Enumeration>(*place);
    }
}

Margins ReadMargins(ListReader const& inNode) {
    Margins margins;
    if (!inNode.HasList("margins")) {
        float const all = inNode.Number("margins", kNumberOrList).value_or(0);
        return {all, all, all, all};
    }
    ListReader const list = *inNode.List("margins");
    list.RefuseOtherKeys(kSides);
    margins.left = list.Number("left").value_or(0);
    margins.top = list.Number("top").value_or(0);
    margins.right = list.Number("right").value_or(0);
    margins.bottom = list.Number("bottom").value_or(0);
    return margins;
}

geom::PointT<float> ReadSpacing(ListReader const& inNode) {
    if (!inNode.HasList("spacing")) {
        float const both = inNode.Number("spacing", kNumberOrList).value_or(0);
        return {both, both};
    }
    ListReader const list = *inNode.List("spacing");
    list.RefuseOtherKeys(kDirections);
    return {list.Number("horizontal").value_or(0), list.Number("vertical").value_or(0)};
}

float ReadBest(ListReader const& inReader, char const* inKey, char const* inExpected) {
    auto const best = inReader.Number(inKey, inExpected);
    if (!best) {
        inReader.FailAsMissing(inKey, inExpected);
    }
    return *best;
}

Extent ReadExtent(ListReader const& inNode, char const* inKey) {
    if (!inNode.HasList(inKey)) {
        return ReadBest(inNode, inKey, kNumberOrList);
    }
    ListReader const list = *inNode.List(inKey);
    list.RefuseOtherKeys(kExtentKeys);
    Extent extent = ReadBest(list, "best", "a number");
    extent.minimum = list.Number("minimum").value_or(extent.best);
    extent.isExpandable = list.Flag("expandable").value_or(false);
    extent.maximum = kLargestSize;
    if (auto const maximum = list.Number("maximum")) {
        extent.maximum = *maximum;
        if (!extent.isExpandable) {
            list.Fail("maximum", "only what is expandable has one");
        }
    }
    return extent;
}

/// The program gives a leaf with a name its size, so the list need not.
void ReadLeaf(ListReader const& inReader, LayoutDescription& outLeaf) {
    ReadWord(inReader, "role", kLeafRoleNames, outLeaf.role);
    bool const isBound = !outLeaf.name.empty();
    if (!isBound || inReader.Has("width")) {
        outLeaf.sizes.width = ReadExtent(inReader, "width");
    }
    if (!isBound || inReader.Has("height")) {
        outLeaf.sizes.height = ReadExtent(inReader, "height");
    }
}

/// Returns the lists of the children, which the caller reads into `outGroup.children`.
std::vector<ListReader::NumberedList> ReadGroup(ListReader const& inReader,
                                                LayoutDescription& outGroup) {
    auto const kind = inReader.Word("kind", kKinds);
    if (!kind) {
        inReader.FailAsMissing("kind", "the kind of the group");
    }
    outGroup.kind = static_cast<GroupArrangementType>(*kind);
    outGroup.spacing = ReadSpacing(inReader);
    if (auto const alignment = inReader.List("alignment")) {
        alignment->RefuseOtherKeys(kDirections);
        ReadWord(*alignment, "horizontal", kHorizontalAlignments, outGroup.horizontalAlignment);
        ReadWord(*alignment, "vertical", kVerticalAlignments, outGroup.verticalAlignment);
    }
    outGroup.hasSeparators = inReader.Flag("separators").value_or(false);
    auto const list = inReader.List("children");
    auto children = list ? list->NumberedLists() : std::vector<ListReader::NumberedList>();
    if (children.empty()) {
        inReader.FailAsMissing("children", "a list with at least one child");
    }
    outGroup.children.resize(children.size());
    return children;
}

class TreeReader {
public:
    LayoutDescription Read(PropList const& inList) {
        try {
            LayoutDescription root;
            ReadNode(inList, root);
            while (!mOpenGroups.empty()) {
                ReadNext();
            }
            return root;
        } catch (layout_error const& error) {
            throw layout_error(Path() + error.what());
        }
    }

private:
    struct OpenGroup {
        LayoutDescription* description;
        std::vector<ListReader::NumberedList> children;
        std::size_t readCount = 0;
    };

    void ReadNode(PropList const& inList, LayoutDescription& outNode) {
        ListReader const reader(inList);
        // Unknown keys are reported before missing ones: a key may seem missing because it is
        // misspelt.
        bool const isGroup = reader.Has("kind") || reader.Has("children");
        reader.RefuseOtherKeys(isGroup ? Words(kGroupKeys) : Words(kLeafKeys));
        outNode.label = reader.Text("label").value_or("");
        outNode.name = reader.Text("name").value_or("");
        if (!outNode.name.empty() && !mNames.insert(outNode.name).second) {
            reader.Fail("name", "another node is named \"" + outNode.name + "\", too");
        }
        outNode.margins = ReadMargins(reader);
        if (!isGroup) {
            ReadLeaf(reader, outNode);
            return;
        }
        auto children = ReadGroup(reader, outNode);
        mOpenGroups.push_back({&outNode, std::move(children)});
        if (mOpenGroups.size() == kMostLevels) {
            mOpenGroups.clear();
            throw layout_error("the tree has more than " + std::to_string(kMostLevels) + " levels");
        }
    }

    void ReadNext() {
        OpenGroup& group = mOpenGroups.back();
        if (group.readCount == group.children.size()) {
            mOpenGroups.pop_back();
            return;
        }
        ListReader::NumberedList const& child = group.children[group.readCount];
        LayoutDescription& description = group.description->children[group.readCount];
        ++group.readCount;
        description.key = child.number;
        ReadNode(*child.list, description);
    }

    /// The path of the node that is being read, with a slash at its end; empty for the root.
    std::string Path() const {
        std::string path;
        for (OpenGroup const& group : mOpenGroups) {
            path += "children/" + std::to_string(group.children[group.readCount - 1].number) + '/';
        }
        return path;
    }

    std::set<std::string> mNames;
    std::vector<OpenGroup> mOpenGroups; ///< the groups around the current node, the root first
};

} // namespace

LayoutDescription ReadLayoutDescription(PropList const& inList) {
    return TreeReader().Read(inList);
}

LayoutDescription LoadLayoutDescription(filesupport::File const& inFile) {
    using namespace proplist::utils;
    PropList list;
    auto const result = LoadPropList(inFile, list, MissingFile::kIsFailure, DamagedFile::kStays);
    if (result.status != proplist::kPropListLoad_Done) {
        throw layout_error(filesupport::NativePath(inFile) +
                           ": this is not a property list that can be read");
    }
    return ReadLayoutDescription(list);
}

} // namespace brindle::arrange
