#include "tests/arrange/LayoutModel.h"

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace brindle::arrange {
namespace {

using model::Call;
using model::Node;
using Point = geom::PointT<float>;
using Log = std::vector<Call>;

model::Rect ToModel(geom::RectT<float> const& inRect) {
    return {{inRect.x, inRect.y}, {inRect.width, inRect.height}};
}

struct World;

struct Leaf : Single {
    Leaf(Node const& inNode, Log& inLog) : node(inNode), log(inLog) {}

    float MinWidth() const override { return node.min[0]; }
    float MinHeight() const override { return node.min[1]; }
    float BestWidth() const override { return node.best[0]; }
    float BestHeight() const override { return node.best[1]; }
    float ExpandedWidth(float inAvailable) const override { return node.Expanded(0, inAvailable); }
    float ExpandedHeight(float inAvailable) const override { return node.Expanded(1, inAvailable); }
    bool HorizontallyExpandable() const override { return node.isExpandable[0]; }
    bool VerticallyExpandable() const override { return node.isExpandable[1]; }
    float LeftMargin() const override { return node.lead[0]; }
    float RightMargin() const override { return node.trail[0]; }
    float TopMargin() const override { return node.lead[1]; }
    float BottomMargin() const override { return node.trail[1]; }
    Point ArrangeContent(geom::RectT<float> const& inRect) override {
        log.push_back({"ArrangeContent", node.id, 0, ToModel(inRect)});
        if (upsets > 0) {
            --upsets;
            Invalidate();
        }
        return {inRect.width + node.surplus[0], inRect.height + node.surplus[1]};
    }

    Node const& node;
    Log& log;
    int upsets = 0;
};

struct Separator final : ISeparator {
    Separator(int inNode, int inNumber, Log& inLog) : node(inNode), number(inNumber), log(inLog) {}
    void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) override {
        log.push_back({"Place", node, inOrientation == 0 ? number : -number, ToModel(inRect)});
    }
    int node, number;
    Log& log;
};

/// A client's group on any of the seven bases.
template <typename Base>
struct Client : Base {
    Client(Node const& inNode, World& inWorld, Log& inLog)
        : node(inNode), world(inWorld), log(inLog) {}

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return Visit(inFunction);
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        return Visit(inFunction);
    }
    template <typename Function>
    bool Visit(Function const& inFunction) const;
    float HorizontalSpacing() const override { return node.spacing[0]; }
    float VerticalSpacing() const override { return node.spacing[1]; }
    AlignmentHorizontal HorizontalAlignment() const override {
        return static_cast<AlignmentHorizontal>(node.alignment[0]);
    }
    AlignmentVertical VerticalAlignment() const override {
        return static_cast<AlignmentVertical>(node.alignment[1]);
    }
    float LeftMargin() const override { return node.lead[0]; }
    float RightMargin() const override { return node.trail[0]; }
    float TopMargin() const override { return node.lead[1]; }
    float BottomMargin() const override { return node.trail[1]; }
    ISeparator* BuildSeparator() override {
        if (node.Separator(++separatorsBuilt) == 0) {
            return nullptr;
        }
        separators.push_back(std::make_unique<Separator>(node.id, separatorsBuilt, log));
        return separators.back().get();
    }
    void ClearSeparators() override {
        log.push_back({"ClearSeparators", node.id, 0, {}});
        separators.clear();
    }
    void Position(Point const& inPosition) override {
        log.push_back({"Position", node.id, 0, {{inPosition.x, inPosition.y}, {}}});
    }
    void SetDimensions(Point const& inSize) override {
        log.push_back({"SetDimensions", node.id, 0, {{}, {inSize.x, inSize.y}}});
    }

    Node const& node;
    World& world;
    Log& log;
    int separatorsBuilt = 0;
    std::vector<std::unique_ptr<Separator>> separators;
};

/// A random tree twice: as the model's nodes, and as clients of the library on the same answers.
struct World {
    explicit World(unsigned inSeed) : random(inSeed), seed(inSeed) {
        float const grains[] = {10.0F, 1.0F, 0.25F, 1.0F / 3.0F, 37.3F};
        grain = grains[Pick(5)];
    }

    int Pick(int inCount) { return static_cast<int>(random() % static_cast<unsigned>(inCount)); }
    bool OneIn(int inCount) { return Pick(inCount) == 0; }
    float Length(int inSteps) { return grain * static_cast<float>(Pick(inSteps)); }

    void AnswerAnew(Node& ioNode) {
        int const steps = grain > 5 ? 5 : 100;
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
        node.isDynamic = inIsDynamic;
        node.log = &told;
        AnswerAnew(node);
        dynamics.emplace_back();
        if (inIsDynamic) {
            dynamics.back() = std::make_unique<Client<DynamicGroup>>(node, *this, made);
            dynamics.back()->SetArrangementType(static_cast<GroupArrangementType>(inKind), nullptr);
        }
        reals.push_back(inIsDynamic ? nullptr : MakeReal(node));
        return node;
    }

    std::unique_ptr<IArrangeable> MakeReal(Node& ioNode) {
        switch (ioNode.kind) {
        case 0:
            return std::make_unique<Client<Row>>(ioNode, *this, made);
        case 1:
            return std::make_unique<Client<Column>>(ioNode, *this, made);
        case 2:
            return std::make_unique<Client<Flipping>>(ioNode, *this, made);
        case 3:
            return std::make_unique<Client<HorizontalWrapping>>(ioNode, *this, made);
        case 4:
            return std::make_unique<Client<VerticalWrapping>>(ioNode, *this, made);
        case 5:
            return std::make_unique<Client<AutoLayout>>(ioNode, *this, made);
        default:
            return std::make_unique<Leaf>(ioNode, made);
        }
    }

    /// Result: how many alternatives the group may have, by which the exhaustive search is bounded.
    int Grow(Node& ioGroup, int inChildren, int inDepth) {
        int combinations = 1;
        for (int i = 0; i < inChildren; ++i) {
            bool const isGroup = inDepth < 3 && inChildren < 7 && combinations < 20 && OneIn(3);
            bool const isDynamic = OneIn(4);
            ioGroup.children.push_back(
                &Add(isGroup ? Pick(6) : model::kLeaf, isGroup && isDynamic));
            if (isGroup) {
                int const children = OneIn(12) ? 0 : 1 + Pick(5);
                combinations *= Grow(*ioGroup.children.back(), children, inDepth + 1);
            }
        }
        bool const canWrap = ioGroup.kind > 2 || ioGroup.isDynamic;
        return combinations * (canWrap ? std::max(1, inChildren) : ioGroup.kind == 2 ? 2 : 1);
    }

    IArrangeable& Real(Node const& inNode) {
        auto const at = static_cast<std::size_t>(inNode.id);
        return inNode.isDynamic ? *dynamics[at]->Group() : *reals[at];
    }
    Node& AnyNode() {
        return *nodes[static_cast<std::size_t>(Pick(static_cast<int>(nodes.size())))];
    }
    Node& Root() { return *nodes.front(); }

    void Arrange(Node& ioNode, model::Rect inRect) {
        model::Pair const size = model::Arrange(ioNode, inRect);
        Point const real = Real(ioNode).Arrange(
            {inRect.origin[0], inRect.origin[1], inRect.extent[0], inRect.extent[1]});
        told.push_back({"result", ioNode.id, 0, {{}, size}});
        made.push_back({"result", ioNode.id, 0, {{}, {real.x, real.y}}});
    }

    model::Pair BestSize(Node& ioNode) {
        Point const real = Real(ioNode).BestSize();
        model::Pair const size = model::BestSize(ioNode);
        told.push_back({"BestSize", ioNode.id, 0, {{}, size}});
        made.push_back({"BestSize", ioNode.id, 0, {{}, {real.x, real.y}}});
        return size;
    }

    void Invalidate(Node& ioNode) {
        model::Invalidate(ioNode);
        Real(ioNode).Invalidate();
    }

    void Enable(bool inIsEnabled) {
        model::Enable(Root(), inIsEnabled);
        Real(Root()).EnableArrangement(inIsEnabled);
    }

    /// Tiny, fitting, ample, narrow and low rectangles, the last one again, and one without a size.
    void ArrangeInManyRectangles() {
        model::Pair const best = BestSize(Root());
        model::Pair const extents[] = {{grain, 2}, best,      {best[0] * 1.5F, best[1] * 1.25F},
                                       {900, 30},  {30, 900}, {400, 300},
                                       {400, 300}, {0, 50}};
        for (model::Pair const& extent : extents) {
            Arrange(Root(), {{Length(9), Length(9)}, extent});
        }
    }

    void Change() {
        Node& node = AnyNode();
        switch (Pick(7)) {
        case 0:
            AnswerAnew(node);
            Invalidate(node);
            break;
        case 1: // what a group is asked for at every use, without a word to the engine
            node.alignment = {Pick(4), Pick(4)};
            node.spacing = {Length(7), Length(7)};
            Arrange(Root(), Root().rect);
            break;
        case 2:
            if (node.isDynamic) {
                int const kind = Pick(6);
                model::SetKind(node, kind);
                dynamics[static_cast<std::size_t>(node.id)]->SetArrangementType(
                    static_cast<GroupArrangementType>(kind), nullptr);
            }
            break;
        case 3:
            if (!node.children.empty()) {
                auto const at =
                    node.children.begin() + Pick(static_cast<int>(node.children.size()));
                Real(**at).SetParent(nullptr);
                (*at)->parent = nullptr;
                removed.emplace_back(&node, *at);
                node.children.erase(at);
                Invalidate(node);
            }
            break;
        case 4:
            if (!removed.empty()) {
                auto const [group, child] = removed.back();
                removed.pop_back();
                group->children.insert(group->children.begin() +
                                           Pick(static_cast<int>(group->children.size()) + 1),
                                       child);
                Invalidate(*group);
            }
            break;
        case 5:
            model::InvalidateAll(node);
            Real(node).InvalidateAll();
            break;
        default:
            if (node.kind == model::kLeaf) {
                static_cast<Leaf&>(dynamic_cast<Leaf&>(Real(node))).upsets = node.upsets = Pick(3);
            }
            Invalidate(node);
        }
    }

    /// False after a difference, of which the first one is shown.
    bool Agree(char const* inAfter) {
        std::size_t at = 0;
        while (at < told.size() && at < made.size() && told[at] == made[at]) {
            ++at;
        }
        bool const agree = at == told.size() && at == made.size();
        if (!agree) {
            Call const none{"nothing", 0, 0, {}};
            ADD_FAILURE() << "seed " << seed << " after " << inAfter << ", call " << at << ": "
                          << (at < made.size() ? made[at] : none) << "\n  and not "
                          << (at < told.size() ? told[at] : none);
        }
        calls += told.size();
        told.clear();
        made.clear();
        return agree;
    }

    std::mt19937 random;
    unsigned seed;
    float grain = 1;
    Log told, made;
    std::size_t calls = 0;
    std::vector<std::unique_ptr<Node>> nodes;
    std::vector<std::unique_ptr<IArrangeable>> reals;
    std::vector<std::unique_ptr<Client<DynamicGroup>>> dynamics;
    std::vector<std::pair<Node*, Node*>> removed; // from which group, and the child
};

template <typename Base>
template <typename Function>
bool Client<Base>::Visit(Function const& inFunction) const {
    return std::all_of(node.children.begin(), node.children.end(),
                       [&](Node const* inChild) { return inFunction(world.Real(*inChild)); });
}

TEST(Layout, ArrangesAnyTreeAsTheExhaustiveModelDoes) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        World world(seed);
        world.Grow(world.Add(world.Pick(6), world.OneIn(3)), 1 + world.Pick(10), 0);
        world.ArrangeInManyRectangles();
        bool agree = world.Agree("building");
        for (int step = 0; agree && step < 8; ++step) {
            world.Change();
            agree = world.Agree("a change");
        }
        world.Enable(false);
        for (int step = 0; step < 4; ++step) {
            world.Change();
        }
        world.Enable(true);
        world.Arrange(world.AnyNode(), world.Root().rect);
        world.ArrangeInManyRectangles();
        ASSERT_TRUE(agree && world.Agree("many changes at once"));
    }
}

TEST(Layout, BreaksLongGroupsAsTheExhaustiveModelDoes) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        World world(seed);
        Node& root = world.Add(3 + world.Pick(3), false);
        for (int children = 11 + world.Pick(seed % 4 + 1); children > 0; --children) {
            root.children.push_back(&world.Add(model::kLeaf, false));
        }
        world.ArrangeInManyRectangles();
        ASSERT_TRUE(world.Agree("building"));
    }
}

} // namespace
} // namespace brindle::arrange
