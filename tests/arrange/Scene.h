#pragma once

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <functional>
#include <limits>
#include <ostream>
#include <string_view>

/// A client of the library, whose objects answer what a table of looks says.
namespace brindle::arrange::tests {

using Point = geom::PointT<float>;
using Pair = std::array<float, 2>; ///< index 0 is x or width, index 1 is y or height

struct Rect {
    Pair origin{};
    Pair extent{};
};

/// A call on a client's object, or a result that the client gets.
struct Call {
    std::string_view name; ///< ends in '?' if the order of these calls does not matter
    int node;
    int detail; ///< of a separator: its number, negative if it lies between children of a column
    Rect rect;  ///< a point fills `origin`, a size `extent`
};

inline bool operator==(Call const& inLHS, Call const& inRHS) {
    return inLHS.name == inRHS.name && inLHS.node == inRHS.node && inLHS.detail == inRHS.detail &&
           std::memcmp(&inLHS.rect, &inRHS.rect, sizeof inLHS.rect) == 0;
}

inline std::ostream& operator<<(std::ostream& ioStream, Call const& inCall) {
    auto const& [origin, extent] = inCall.rect;
    return ioStream << inCall.name << " of " << inCall.node << " (" << inCall.detail << ") at "
                    << origin[0] << ", " << origin[1] << " size " << extent[0] << ", " << extent[1];
}

inline constexpr int kLeaf = -1; ///< beside the values of the group kinds, 0 to 5
inline constexpr float kUnlimited = std::numeric_limits<float>::infinity();

/// What the client answers for a node. Nodes are identified by number.
struct Looks {
    int kind = kLeaf;
    bool isDynamic = false; ///< a group whose kind may change
    std::vector<int> children;
    Pair min{}, best{}, limit{kUnlimited, kUnlimited}, lead{}, trail{}, spacing{};
    Pair surplus{}; ///< what a leaf returns beyond the size that it was given
    std::array<bool, 2> isExpandable{};
    std::array<int, 2> alignment{};
    int separatorEvery = 0; ///< only separators with a number that this divides are not null

    float Taken(std::size_t inAxis, float inAvailable) const {
        return isExpandable[inAxis] ? std::min(inAvailable, limit[inAxis]) : best[inAxis];
    }
    int Separator(int inNumber) const {
        return separatorEvery != 0 && inNumber % separatorEvery == 0 ? inNumber : 0;
    }
};

/// A leaf, a group or a dynamic group.
struct Client {
    virtual ~Client() = default;
};

/// The nodes of a client by number.
struct Scene {
    int Add(Looks const& inLooks) {
        looks.push_back(inLooks);
        clients.emplace_back();
        Renew(static_cast<int>(looks.size()) - 1);
        return static_cast<int>(looks.size()) - 1;
    }
    /// Replaces the node's object by a new one, and returns the old one.
    std::unique_ptr<Client> Renew(int inId);
    Looks& Of(int inId) { return looks[static_cast<std::size_t>(inId)]; }
    std::unique_ptr<Client>& At(int inId) { return clients[static_cast<std::size_t>(inId)]; }
    /// Null unless the node is a dynamic group.
    DynamicGroup* Dynamic(int inId) { return dynamic_cast<DynamicGroup*>(At(inId).get()); }
    /// Null for a dynamic group without a group.
    IArrangeable* Node(int inId) {
        DynamicGroup* const group = Dynamic(inId);
        return group ? group->Group() : dynamic_cast<IArrangeable*>(At(inId).get());
    }
    std::deque<Looks> looks;
    std::deque<std::unique_ptr<Client>> clients;
    /// Called first in every operation of a client's object.
    std::function<void(Call const&)> onCall = [](Call const&) {};
};

template <typename Base>
struct Answering : Client, Base {
    template <typename... Arguments>
    Answering(Scene& ioScene, int inId, Arguments... inArguments)
        : Base(inArguments...), scene(ioScene), id(inId), looks(ioScene.Of(inId)) {}
    void Report(std::string_view inName, int inDetail = 0, Point inAt = {},
                Point inSize = {}) const {
        scene.onCall({inName, id, inDetail, {{inAt.x, inAt.y}, {inSize.x, inSize.y}}});
    }
    float LeftMargin() const override {
        Report("LeftMargin?");
        return looks.lead[0];
    }
    float RightMargin() const override { return looks.trail[0]; }
    float TopMargin() const override { return looks.lead[1]; }
    float BottomMargin() const override { return looks.trail[1]; }
    Scene& scene;
    int id;
    Looks const& looks;
};

/// Leaves the answer to the library where its looks agree with the library's default.
struct Leaf final : Answering<Single> {
    using Answering::Answering;
    float MinWidth() const override { return looks.min[0]; }
    float MinHeight() const override {
        return looks.min[1] == looks.best[1] ? Single::MinHeight() : looks.min[1];
    }
    float BestWidth() const override {
        Report("BestWidth?");
        return looks.best[0];
    }
    float BestHeight() const override { return looks.best[1]; }
    float ExpandedWidth(float inAvailable) const override {
        Report(std::isnan(inAvailable) ? "NaN" : "ExpandedWidth?");
        return looks.Taken(0, inAvailable);
    }
    float ExpandedHeight(float inAvailable) const override {
        Report(std::isnan(inAvailable) ? "NaN" : "ExpandedHeight?");
        return looks.limit[1] == kUnlimited ? Single::ExpandedHeight(inAvailable)
                                            : looks.Taken(1, inAvailable);
    }
    bool HorizontallyExpandable() const override { return looks.isExpandable[0]; }
    bool VerticallyExpandable() const override { return looks.isExpandable[1]; }
    Point ArrangeContent(geom::RectT<float> const& inRect) override {
        Point const size{inRect.width, inRect.height};
        Report("ArrangeContent", 0, {inRect.x, inRect.y}, size);
        return {size.x + looks.surplus[0], size.y + looks.surplus[1]};
    }
};

template <typename Base>
struct Group final : Answering<Base> {
    struct Separator final : ISeparator {
        Separator(int inNumber, Group const& inGroup) : number(inNumber), group(inGroup) {}
        void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) override {
            group.Report("Place", inOrientation == 0 ? number : -number, {inRect.x, inRect.y},
                         {inRect.width, inRect.height});
        }
        int number;
        Group const& group;
    };

    using Answering<Base>::Answering;
    using Answering<Base>::looks;
    using Answering<Base>::Report;
    template <typename Function>
    bool Visit(Function const& inFunction) const {
        std::vector<int> const shown = looks.children; // the function may change it
        return std::all_of(shown.begin(), shown.end(), [&](int inChild) {
            IArrangeable* const node = this->scene.Node(inChild);
            return node == nullptr || inFunction(*node);
        });
    }
    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return Visit(inFunction);
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        return Visit(inFunction);
    }
    float HorizontalSpacing() const override {
        Report("HorizontalSpacing?");
        return looks.spacing[0];
    }
    float VerticalSpacing() const override { return looks.spacing[1]; }
    AlignmentHorizontal HorizontalAlignment() const override {
        Report("HorizontalAlignment?");
        return static_cast<AlignmentHorizontal>(looks.alignment[0]);
    }
    AlignmentVertical VerticalAlignment() const override {
        return static_cast<AlignmentVertical>(looks.alignment[1]);
    }
    ISeparator* BuildSeparator() override {
        Report("BuildSeparator?");
        separators.push_back(std::make_unique<Separator>(++separatorsBuilt, *this));
        return looks.Separator(separatorsBuilt) == 0 ? nullptr : separators.back().get();
    }
    void ClearSeparators() override { separators.clear(); }
    void Position(Point const& inAt) override { Report("Position", 0, inAt); }
    void SetDimensions(Point const& inSize) override { Report("SetDimensions", 0, {}, inSize); }
    int separatorsBuilt = 0;
    std::vector<std::unique_ptr<Separator>> separators;
};

template <typename Kind>
std::unique_ptr<Client> Make(Scene& ioScene, int inId) {
    return std::make_unique<Kind>(ioScene, inId);
}

inline std::unique_ptr<Client> Scene::Renew(int inId) {
    constexpr decltype(&Make<Leaf>) kMakers[] = {Make<Leaf>,
                                                 Make<Group<Row>>,
                                                 Make<Group<Column>>,
                                                 Make<Group<Flipping>>,
                                                 Make<Group<HorizontalWrapping>>,
                                                 Make<Group<VerticalWrapping>>,
                                                 Make<Group<AutoLayout>>};
    auto const type = static_cast<GroupArrangementType>(Of(inId).kind);
    return std::exchange(At(inId), Of(inId).isDynamic ? std::make_unique<Group<DynamicGroup>>(
                                                            *this, inId, nullptr, type)
                                                      : kMakers[type + 1](*this, inId));
}

/// Random answers from a source: `Pick(n)` is below n, `Length(n)` one of n lengths.
template <typename Source>
void AnswerAnew(Looks& outLooks, Source& ioSource, std::size_t inSteps) {
    auto const oneIn = [&](std::size_t inCount) { return ioSource.Pick(inCount) == 0; };
    auto const lengthOneIn = [&](std::size_t inCount, std::size_t inMost, float inElse) {
        return oneIn(inCount) ? ioSource.Length(inMost) : inElse;
    };
    for (std::size_t const a : {0U, 1U}) {
        float const best = outLooks.best[a] = ioSource.Length(inSteps);
        outLooks.min[a] = std::min(best, lengthOneIn(4, inSteps, best));
        outLooks.isExpandable[a] = oneIn(3);
        outLooks.limit[a] = lengthOneIn(2, 3 * inSteps, kUnlimited);
        outLooks.surplus[a] = lengthOneIn(9, 5, 0) - lengthOneIn(9, 3, 0);
        outLooks.lead[a] = lengthOneIn(3, 5, 0);
        outLooks.trail[a] = lengthOneIn(3, 5, 0);
        outLooks.spacing[a] = lengthOneIn(2, 7, 0);
        outLooks.alignment[a] = ioSource.Pick(4);
    }
    outLooks.separatorEvery = ioSource.Pick(3);
}

} // namespace brindle::arrange::tests
