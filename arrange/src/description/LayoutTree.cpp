#include <brindle/arrange/LayoutTree.h>

#include <algorithm>
#include <utility>

namespace brindle::arrange {

namespace {

/// A kind outside the enumeration is the one that a `DynamicGroup` has by default.
std::unique_ptr<AbstractBox> MakeBox(GroupArrangementType inKind) {
    switch (inKind) {
    case kGroupArrangementType_Row:
        return std::make_unique<Box<Row>>();
    case kGroupArrangementType_Column:
        return std::make_unique<Box<Column>>();
    case kGroupArrangementType_Flipping:
        return std::make_unique<Box<Flipping>>();
    case kGroupArrangementType_HorizontalWrapping:
        return std::make_unique<Box<HorizontalWrapping>>();
    case kGroupArrangementType_VerticalWrapping:
        return std::make_unique<Box<VerticalWrapping>>();
    case kGroupArrangementType_AutoLayout:
        break;
    }
    return std::make_unique<Box<AutoLayout>>();
}

template <typename Names>
auto Found(Names const& inNames, std::string_view inName) {
    auto const found = inNames.find(inName);
    return found != inNames.end() ? found->second.Get() : nullptr;
}

template <typename Node>
Node& OrThrow(Node* inNode, char const* inWhat, std::string_view inName) {
    if (inNode == nullptr) {
        throw layout_error(std::string(inWhat) + " is named \"" + std::string(inName) + '"');
    }
    return *inNode;
}

template <typename Names>
std::vector<std::string> KeysOf(Names const& inNames) {
    std::vector<std::string> keys;
    keys.reserve(inNames.size());
    for (auto const& [name, node] : inNames) {
        keys.push_back(name);
    }
    return keys;
}

} // namespace

LayoutTree::LayoutTree(LayoutDescription const& inDescription) : mRoot(MakeNode(inDescription)) {}

LayoutTree::~LayoutTree() = default;

std::unique_ptr<IArrangeable> LayoutTree::MakeNode(LayoutDescription const& inDescription) {
    if (!inDescription.kind) {
        auto leaf = std::make_unique<FunctionLeaf>(
            inDescription.sizes, FunctionLeaf::PlaceFunction(), inDescription.margins);
        if (!inDescription.name.empty()) {
            mLeaves.emplace(inDescription.name, impl::NodePointer<FunctionLeaf>(leaf.get()));
        }
        return leaf;
    }
    std::unique_ptr<AbstractBox> box = MakeBox(*inDescription.kind);
    box->SetSpacing(inDescription.spacing.x, inDescription.spacing.y);
    box->SetAlignment(inDescription.horizontalAlignment, inDescription.verticalAlignment);
    box->SetInset(inDescription.margins);
    for (LayoutDescription const& child : inDescription.children) {
        box->Add(MakeNode(child));
    }
    if (!inDescription.name.empty()) {
        mGroups.emplace(inDescription.name, impl::NodePointer<AbstractBox>(box.get()));
    }
    return box;
}

FunctionLeaf* LayoutTree::FindLeaf(std::string_view inName) const {
    return Found(mLeaves, inName);
}

AbstractBox* LayoutTree::FindGroup(std::string_view inName) const {
    return Found(mGroups, inName);
}

FunctionLeaf& LayoutTree::Leaf(std::string_view inName) const {
    return OrThrow(FindLeaf(inName), "no leaf", inName);
}

AbstractBox& LayoutTree::Group(std::string_view inName) const {
    return OrThrow(FindGroup(inName), "no group", inName);
}

std::vector<std::string> LayoutTree::LeafNames() const {
    return KeysOf(mLeaves);
}

std::vector<std::string> LayoutTree::GroupNames() const {
    return KeysOf(mGroups);
}

void LayoutTree::SetShown(std::string_view inName, bool inIsShown) {
    IArrangeable* node = FindLeaf(inName);
    if (node == nullptr) {
        node = FindGroup(inName);
    }
    IArrangeable const& found = OrThrow(node, "no node", inName);
    if (auto* const group = dynamic_cast<AbstractBox*>(node->Parent())) {
        group->SetShown(found, inIsShown);
    }
}

} // namespace brindle::arrange
