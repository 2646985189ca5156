#include "tests/arrange/LayoutModel.h"

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace brindle::arrange {
namespace {

using model::Node;
using Point = geom::PointT<float>;

/// The library's side of the tree: the clients by the numbers of their nodes, and their calls.
struct Clients {
    IArrangeable& Of(Node const& inNode) const {
        auto const at = static_cast<std::size_t>(inNode.id);
        return dynamics[at] != nullptr ? *dynamics[at]->Group() : *fixed[at];
    }
    void Log(std::string_view inName, Node const& inNode, int inDetail, Point inAt, Point inSize) {
        log.push_back({inName, inNode.id, inDetail, {{inAt.x, inAt.y}, {inSize.x, inSize.y}}});
    }

    std::vector<std::unique_ptr<IArrangeable>> fixed;
    std::vector<std::unique_ptr<DynamicGroup>> dynamics;
    std::vector<model::Call> log;
};

template <typename Base>
struct WithMargins : Base {
    WithMargins(Node const& inNode, Clients& inClients) : node(inNode), clients(inClients) {}
    float LeftMargin() const override { return node.lead[0]; }
    float RightMargin() const override { return node.trail[0]; }
    float TopMargin() const override { return node.lead[1]; }
    float BottomMargin() const override { return node.trail[1]; }
    Node const& node;
    Clients& clients;
};

struct Leaf : WithMargins<Single> {
    using WithMargins::WithMargins;
    float MinWidth() const override { return node.min[0]; }
    float MinHeight() const override { return node.min[1]; }
    float BestWidth() const override { return node.best[0]; }
    float BestHeight() const override { return node.best[1]; }
    float ExpandedWidth(float inAvailable) const override { return node.Taken(0, inAvailable); }
    float ExpandedHeight(float inAvailable) const override { return node.Taken(1, inAvailable); }
    bool HorizontallyExpandable() const override { return node.isExpandable[0]; }
    bool VerticallyExpandable() const override { return node.isExpandable[1]; }
    Point ArrangeContent(geom::RectT<float> const& inRect) override {
        Point const size{inRect.width, inRect.height};
        clients.Log("ArrangeContent", node, 0, {inRect.x, inRect.y}, size);
        return {size.x + node.surplus[0], size.y + node.surplus[1]};
    }
};

struct Separator final : ISeparator {
    Separator(int inNumber, Node const& inNode, Clients& inClients)
        : number(inNumber), node(inNode), clients(inClients) {}
    void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) override {
        clients.Log("Place", node, inOrientation == 0 ? number : -number, {inRect.x, inRect.y},
                    {inRect.width, inRect.height});
    }
    int number;
    Node const& node;
    Clients& clients;
};

template <typename Base>
struct Client : WithMargins<Base> {
    using WithMargins<Base>::WithMargins;
    using WithMargins<Base>::node;
    using WithMargins<Base>::clients;
    template <typename Function>
    bool Visit(Function const& inFunction) const {
        return std::all_of(node.children.begin(), node.children.end(),
                           [&](Node const* inChild) { return inFunction(clients.Of(*inChild)); });
    }
    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return Visit(inFunction);
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        return Visit(inFunction);
    }
    float HorizontalSpacing() const override { return node.spacing[0]; }
    float VerticalSpacing() const override { return node.spacing[1]; }
    AlignmentHorizontal HorizontalAlignment() const override {
        return static_cast<AlignmentHorizontal>(node.alignment[0]);
    }
    AlignmentVertical VerticalAlignment() const override {
        return static_cast<AlignmentVertical>(node.alignment[1]);
    }
    ISeparator* BuildSeparator() override {
        separators.push_back(std::make_unique<Separator>(++separatorsBuilt, node, clients));
        return node.Separator(separatorsBuilt) == 0 ? nullptr : separators.back().get();
    }
    void ClearSeparators() override { separators.clear(); }
    void Position(Point const& inAt) override { clients.Log("Position", node, 0, inAt, {}); }
    void SetDimensions(Point const& inSize) override {
        clients.Log("SetDimensions", node, 0, {}, inSize);
    }
    int separatorsBuilt = 0;
    std::vector<std::unique_ptr<Separator>> separators;
};

template <typename Kind>
std::unique_ptr<IArrangeable> Make(Node const& inNode, Clients& inClients) {
    return std::make_unique<Kind>(inNode, inClients);
}
constexpr decltype(&Make<Leaf>) kMakers[] = {Make<Leaf>,
                                             Make<Client<Row>>,
                                             Make<Client<Column>>,
                                             Make<Client<Flipping>>,
                                             Make<Client<HorizontalWrapping>>,
                                             Make<Client<VerticalWrapping>>,
                                             Make<Client<AutoLayout>>};

/// A random tree twice: the model's, and the library's on the same answers.
struct World {
    explicit World(unsigned inSeed)
        : random(inSeed), seed(inSeed),
          grain(std::array{10.0F, 1.0F, 0.25F, 1.0F / 3, 37.3F}[random() % 5]) {}

    int Pick(std::size_t inCount) { return static_cast<int>(random() % inCount); }
    bool OneIn(std::size_t inCount) { return Pick(inCount) == 0; }
    float Length(std::size_t inSteps) { return grain * static_cast<float>(Pick(inSteps)); }

    void AnswerAnew(Node& ioNode) {
        std::size_t const steps = grain > 5 ? 3 : 100;
        for (std::size_t a : {0U, 1U}) {
            ioNode.best[a] = Length(steps);
            ioNode.min[a] = OneIn(4) ? std::min(ioNode.best[a], Length(steps)) : ioNode.best[a];
            ioNode.isExpandable[a] = OneIn(3);
            ioNode.limit[a] = OneIn(2) ? Length(3 * steps) : std::numeric_limits<float>::infinity();
            ioNode.surplus[a] = OneIn(9) ? Length(5) - 2 * grain : 0;
            ioNode.lead[a] = OneIn(3) ? Length(5) : 0;
            ioNode.trail[a] = OneIn(3) ? Length(5) : 0;
            ioNode.spacing[a] = OneIn(2) ? Length(7) : 0;
            ioNode.alignment[a] = Pick(4);
        }
        ioNode.separatorEvery = Pick(3);
    }

    Node& Add(int inKind, bool inIsDynamic) {
        Node& node = *nodes.emplace_back(std::make_unique<Node>());
        node.id = static_cast<int>(nodes.size()) - 1;
        node.kind = inKind;
        node.log = &told;
        AnswerAnew(node);
        clients.fixed.push_back(kMakers[inKind + 1](node, clients));
        clients.dynamics.emplace_back();
        if (inIsDynamic) {
            clients.dynamics.back() = std::make_unique<Client<DynamicGroup>>(node, clients);
            SetType(node);
        }
        return node;
    }

    /// Result: how many alternatives the group may have, which bounds the exhaustive search.
    std::size_t Grow(Node& ioGroup, std::size_t inChildren, int inDepth) {
        std::size_t combinations = 1;
        for (std::size_t i = 0; i < inChildren; ++i) {
            if (inDepth < 3 && inChildren < 7 && combinations < 20 && OneIn(3)) {
                ioGroup.children.push_back(&Add(Pick(6), OneIn(3)));
                std::size_t const children = OneIn(12) ? 0U : 1U + random() % 5U;
                combinations *= Grow(*ioGroup.children.back(), children, inDepth + 1);
            } else {
                ioGroup.children.push_back(&Add(model::kLeaf, false));
            }
        }
        return combinations * std::max<std::size_t>(1, inChildren);
    }

    Node& AnyNode() { return *nodes[static_cast<std::size_t>(Pick(nodes.size()))]; }
    Node& Root() { return *nodes.front(); }
    bool IsInTree(Node const& inNode) {
        return inNode.parent != nullptr ? IsInTree(*inNode.parent) : &inNode == &Root();
    }
    void SetType(Node& ioNode) {
        clients.dynamics[static_cast<std::size_t>(ioNode.id)]->SetArrangementType(
            static_cast<GroupArrangementType>(ioNode.kind), nullptr);
    }

    void Arrange(Node& ioNode, model::Rect const& inRect) {
        rect = inRect.extent[0] > 0 && inRect.extent[1] > 0 ? inRect : rect;
        told.push_back({"taken", 0, 0, {{}, model::Arrange(Root(), inRect)}});
        clients.Log(
            "taken", Root(), 0, {},
            clients.Of(IsInTree(ioNode) ? ioNode : Root())
                .Arrange({inRect.origin[0], inRect.origin[1], inRect.extent[0], inRect.extent[1]}));
    }

    /// Tiny, fitting, ample, narrow and low rectangles, one of them twice, and one without a width.
    void ArrangeInManyRectangles() {
        model::Pair const best = model::BestSize(Root());
        told.push_back({"best", 0, 0, {{}, best}});
        clients.Log("best", Root(), 0, {}, clients.Of(Root()).BestSize());
        for (model::Pair const& extent : {model::Pair{grain, 2},
                                          best,
                                          {best[0] * 1.5F, best[1] * 1.25F},
                                          {900, 30},
                                          {30, 900},
                                          {400, 300},
                                          {400, 300},
                                          {0, 50}}) {
            Arrange(AnyNode(), {{Length(9), Length(9)}, extent});
        }
    }

    /// Every change of the tree is one rearrangement, unless it is switched off.
    void Invalidate(Node& ioNode) {
        model::Invalidate(&ioNode);
        ExpectRearrangement(ioNode);
        clients.Of(ioNode).Invalidate();
    }
    void ExpectRearrangement(Node const& inNode) {
        if (isEnabled && IsInTree(inNode)) {
            model::Arrange(Root(), rect);
        }
    }
    void Enable(bool inIsEnabled) {
        if (std::exchange(isEnabled, inIsEnabled) != inIsEnabled) {
            ExpectRearrangement(Root());
        }
        clients.Of(Root()).EnableArrangement(inIsEnabled);
    }

    void Change() {
        Node& node = AnyNode();
        int const what = Pick(4);
        if (what == 0) {
            AnswerAnew(node);
            Invalidate(node);
        } else if (what == 1) { // asked for at every use, so without a word to the library
            node.alignment = {Pick(4), Pick(4)};
            node.spacing = {Length(7), Length(7)};
        } else if (what == 2 && clients.dynamics[static_cast<std::size_t>(node.id)] != nullptr) {
            int const kind = Pick(6);
            if (kind != node.kind) {
                Node* const parent = node.parent;
                model::SetKind(node, kind);
                rect = parent == nullptr && &node == &Root() ? model::Rect{} : rect;
                isEnabled = isEnabled || &node == &Root();
                if (parent != nullptr) {
                    ExpectRearrangement(*parent);
                }
                SetType(node);
            }
        } else if (what == 3 && !node.children.empty() && (removed.empty() || OneIn(2))) {
            auto const at = node.children.begin() + Pick(node.children.size());
            clients.Of(**at).SetParent(nullptr);
            (*at)->parent = nullptr;
            removed.emplace_back(&node, *at);
            node.children.erase(at);
            Invalidate(node);
        } else if (what == 3 && !removed.empty()) {
            auto const [group, child] = removed.back();
            removed.pop_back();
            group->children.insert(group->children.begin(), child);
            Invalidate(*group);
        }
    }

    /// Shows the first difference.
    void Compare() {
        auto const [t, m] =
            std::mismatch(told.begin(), told.end(), clients.log.begin(), clients.log.end());
        model::Call const none{"nothing", 0, 0, {}};
        ASSERT_TRUE(t == told.end() && m == clients.log.end())
            << "seed " << seed << ", call " << t - told.begin() << ": "
            << (m == clients.log.end() ? none : *m) << "\n  and not "
            << (t == told.end() ? none : *t);
        told.clear();
        clients.log.clear();
    }

    std::mt19937 random;
    unsigned seed;
    float grain; ///< what every size is a multiple of
    bool isEnabled = true;
    model::Rect rect;
    Clients clients;
    std::vector<model::Call> told;
    std::vector<std::unique_ptr<Node>> nodes;
    std::vector<std::pair<Node*, Node*>> removed; ///< a group, and which child it has lost
};

TEST(Layout, ArrangesAnyTreeAsTheExhaustiveModelDoes) {
    for (unsigned seed = 0; seed < 3000 && !testing::Test::HasFatalFailure(); ++seed) {
        World world(seed);
        world.Grow(world.Add(world.Pick(6), world.OneIn(3)), 1 + world.random() % 10, 0);
        world.ArrangeInManyRectangles();
        for (int step = 0; step < 16; ++step) {
            if (step % 8 == 4) {
                world.Enable(step > 8);
            }
            world.Change();
        }
        world.ArrangeInManyRectangles();
        world.Compare();
    }
}

TEST(Layout, BreaksLongGroupsAsTheExhaustiveModelDoes) {
    for (unsigned seed = 0; seed < 40 && !testing::Test::HasFatalFailure(); ++seed) {
        World world(seed);
        Node& root = world.Add(3 + world.Pick(3), false);
        for (std::size_t children = 11 + seed % 4; children > 0; --children) {
            root.children.push_back(&world.Add(model::kLeaf, false));
        }
        world.ArrangeInManyRectangles();
        world.Compare();
    }
}

} // namespace
} // namespace brindle::arrange
