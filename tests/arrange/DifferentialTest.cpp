#include "tests/arrange/LayoutModel.h"

#include <gtest/gtest.h>

#include <random>

namespace brindle::arrange::tests {
namespace {

/// A random tree, in the model and in the library, with the same answers.
struct World {
    explicit World(unsigned inSeed) : random(inSeed), seed(inSeed) {
        grain = std::array{10.0F, 1.0F, 0.25F, 1.0F / 3, 37.3F}[random() % 5];
        steps = grain > 5 ? 3 : 100;
        scene.onCall = [this](Call const& inCall) {
            if (inCall.name.back() != '?') {
                calls.push_back(inCall);
            }
        };
    }

    int Pick(std::size_t inCount) { return static_cast<int>(random() % inCount); }
    bool OneIn(std::size_t inCount) { return Pick(inCount) == 0; }
    float Length(std::size_t inSteps) { return grain * static_cast<float>(Pick(inSteps)); }

    int Add(int inKind, bool inIsDynamic) {
        Looks looks;
        looks.kind = inKind;
        looks.isDynamic = inIsDynamic;
        AnswerAnew(looks, *this, steps);
        return scene.Add(looks);
    }

    /// Returns how many alternatives the group may have, which bounds the exhaustive search.
    std::size_t Grow(int inGroup, std::size_t inChildren, int inDepth) {
        std::size_t combinations = 1;
        for (std::size_t i = 0; i < inChildren; ++i) {
            bool const isGroup = inDepth < 3 && inChildren < 7 && combinations < 20 && OneIn(3);
            int const child = isGroup ? Add(Pick(6), OneIn(3)) : Add(kLeaf, false);
            scene.Of(inGroup).children.push_back(child);
            if (isGroup) {
                combinations *= Grow(child, OneIn(12) ? 0U : 1U + random() % 5U, inDepth + 1);
            }
        }
        return combinations * std::max<std::size_t>(1, inChildren);
    }

    int AnyNode() { return Pick(scene.looks.size()); }
    bool IsInTree(int inId) {
        model::Node const* const parent = tree.At(inId).parent;
        return parent != nullptr ? IsInTree(parent->id) : inId == 0;
    }

    void Arrange(int inId, Rect const& inRect) {
        auto const [at, size] = inRect;
        rect = size[0] > 0 && size[1] > 0 ? inRect : rect;
        tree.log.push_back({"taken", 0, 0, {{}, tree.Arrange(inRect)}});
        Point const taken =
            scene.Node(IsInTree(inId) ? inId : 0)->Arrange({at[0], at[1], size[0], size[1]});
        calls.push_back({"taken", 0, 0, {{}, {taken.x, taken.y}}});
    }

    /// Tiny, fitting, ample, narrow and low rectangles, one of them twice, and one without a width.
    void ArrangeInManyRectangles() {
        Pair const best = tree.BestSize();
        tree.log.push_back({"best", 0, 0, {{}, best}});
        Point const bestSize = scene.Node(0)->BestSize();
        calls.push_back({"best", 0, 0, {{}, {bestSize.x, bestSize.y}}});
        Pair const ample{best[0] * 1.5F, best[1] * 1.25F};
        for (Pair const& size : std::initializer_list<Pair>{
                 {grain, 2}, best, ample, {900, 30}, {30, 900}, {400, 300}, {400, 300}, {0, 50}}) {
            Arrange(AnyNode(), {{Length(9), Length(9)}, size});
        }
    }

    /// Every change of the tree causes one rearrangement, unless arranging is switched off.
    void ExpectRearrangement(int inId) {
        if (isEnabled && IsInTree(inId)) {
            tree.Arrange(rect);
        }
    }
    void Invalidate(int inId) {
        tree.Invalidate(inId);
        ExpectRearrangement(inId);
        scene.Node(inId)->Invalidate();
    }
    void Enable(bool inIsEnabled) {
        if (std::exchange(isEnabled, inIsEnabled) != inIsEnabled) {
            ExpectRearrangement(0);
        }
        scene.Node(0)->EnableArrangement(inIsEnabled);
    }

    void Change() {
        int const id = AnyNode();
        int const what = Pick(4);
        Looks& looks = scene.Of(id);
        if (what == 0) {
            AnswerAnew(looks, *this, steps);
            Invalidate(id);
        } else if (what == 1) { // asked for at every use, so the library need not be notified
            looks.alignment = {Pick(4), Pick(4)};
            looks.spacing = {Length(7), Length(7)};
        } else if (what == 2 && looks.isDynamic) {
            int const kind = Pick(6);
            if (std::exchange(looks.kind, kind) != kind) {
                model::Node const* const parent = tree.At(id).parent;
                tree.Renew(id);
                rect = parent == nullptr && id == 0 ? Rect{} : rect;
                isEnabled = isEnabled || id == 0;
                if (parent != nullptr) {
                    ExpectRearrangement(parent->id);
                }
                scene.Dynamic(id)->SetArrangementType(static_cast<GroupArrangementType>(kind));
            }
        } else if (what == 3 && !looks.children.empty() && (removed.empty() || OneIn(2))) {
            auto const at = looks.children.begin() + Pick(looks.children.size());
            scene.Node(*at)->SetParent(nullptr);
            tree.At(*at).parent = nullptr;
            removed.emplace_back(id, *at);
            looks.children.erase(at);
            Invalidate(id);
        } else if (what == 3 && !removed.empty()) {
            auto const [group, child] = removed.back();
            removed.pop_back();
            scene.Of(group).children.insert(scene.Of(group).children.begin(), child);
            Invalidate(group);
        }
    }

    /// Fails with the first call in which the library differs from the model.
    void Compare() {
        tree.log.push_back({"end", 0, 0, {}});
        calls.push_back({"End", 0, 0, {}});
        auto const [expected, actual] =
            std::mismatch(tree.log.begin(), tree.log.end(), calls.begin());
        bool const areAllEqual = expected + 1 == tree.log.end() && actual + 1 == calls.end();
        ASSERT_TRUE(areAllEqual) << "seed " << seed << ": " << *actual << "\n  and not "
                                 << *expected;
    }

    std::mt19937 random;
    unsigned seed;
    float grain; ///< every size is a multiple of it
    std::size_t steps;
    bool isEnabled = true;
    Rect rect;
    Scene scene;
    model::Tree tree{scene.looks};
    std::vector<Call> calls;
    std::vector<std::pair<int, int>> removed; ///< a group, and the child that was removed from it
};

TEST(Layout, ArrangesAnyTreeAsTheExhaustiveModelDoes) {
    for (unsigned seed = 0; seed < 5040 && !testing::Test::HasFatalFailure(); ++seed) {
        bool const hasManyLines = seed >= 5000;
        World world(seed);
        world.Grow(world.Add(hasManyLines ? 3 + world.Pick(3) : world.Pick(6), world.OneIn(3)),
                   hasManyLines ? 11 + seed % 4 : 1 + world.random() % 10, 0);
        world.ArrangeInManyRectangles();
        for (int step = 0; step < 16 && !hasManyLines; ++step) {
            if (step % 8 == 4) {
                world.Enable(step > 8);
            }
            world.Change();
        }
        world.ArrangeInManyRectangles();
        world.Compare();
    }
}

} // namespace
} // namespace brindle::arrange::tests
