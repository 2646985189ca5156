#include <brindle/arrange/AbstractArrangeableGroup.h>

#include "arrange/src/BuildLayouts.h"
#include "arrange/src/Limits.h"

#include <algorithm>
#include <utility>

namespace brindle::arrange::impl {

namespace {

/// The address of a child that a client passes on without looking at it, null perhaps.
IArrangeable* AddressOf(IArrangeable& inChild) {
    // Read back from memory, where the compiler may not conclude that a reference is never null.
    IArrangeable* volatile child = &inChild;
    return child;
}

} // namespace

// The virtual base is made by the client's class, which need not repeat the parent: each kind of
// group sets it.
AbstractArrangeableGroup::AbstractArrangeableGroup(IArrangeable* inParent)
    : IArrangeable(inParent) {}

AbstractArrangeableGroup::~AbstractArrangeableGroup() = default;

void AbstractArrangeableGroup::Position(geom::PointT<float> const&) {}

void AbstractArrangeableGroup::SetDimensions(geom::PointT<float> const&) {}

void AbstractArrangeableGroup::BuildSeparators() {
    ClearSeparators();
    if (mChildren.empty()) {
        return;
    }
    mSeparators.resize(mChildren.size() - 1);
    for (ISeparator*& separator : mSeparators) {
        separator = BuildSeparator();
    }
}

void AbstractArrangeableGroup::RebuildSelf() {
    mArrangements.Clear();
    std::vector<IArrangeable*> children;
    arrange::VisitChildren(*this, [&](IArrangeable& inChild) {
        children.push_back(AddressOf(inChild));
        return true;
    });
    for (IArrangeable* const child : children) {
        if (child != nullptr) {
            child->SetParent(this);
        }
    }
    mChildren = children;
    if (children.empty()) {
        return;
    }
    if (mSeparators.size() != children.size() - 1) {
        BuildSeparators();
    }
    Combine(children);
    mArrangements.Prepare();
}

/// Builds the layouts of all combinations of the children's alternatives, the first child varying
/// slowest. A child without alternatives is left out; with a null child there are no layouts.
void AbstractArrangeableGroup::Combine(std::vector<IArrangeable*> const& inChildren) {
    Alternatives alternatives;
    for (IArrangeable* const child : inChildren) {
        if (child == nullptr) {
            return;
        }
        ArrangementSet const& set = child->Arrangements();
        std::vector<boost::intrusive_ptr<IArrangement>> ofChild;
        for (std::size_t index = 0; index < set.Size(); ++index) {
            if (auto alternative = set[index]; alternative->Depth() < kDeepestArrangement) {
                ofChild.push_back(std::move(alternative));
            }
        }
        if (!ofChild.empty()) {
            alternatives.push_back(std::move(ofChild));
        }
    }
    bool const isOneCombination =
        std::all_of(alternatives.begin(), alternatives.end(),
                    [](auto const& inOfChild) { return inOfChild.size() == 1; });
    std::vector<LayoutForm> const forms = Forms();
    if (!isOneCombination && !forms.empty()) {
        BuildLayouts(mArrangements, *this, forms, alternatives, mSeparators);
        return;
    }
    std::vector<std::size_t> choice(alternatives.size());
    std::vector<boost::intrusive_ptr<IArrangement>> chosen(alternatives.size());
    std::size_t varying = 0;
    do {
        for (; varying < choice.size(); ++varying) {
            chosen[varying] = alternatives[varying][choice[varying]];
        }
        BuildArrangements(mArrangements, chosen, mSeparators);
        while (varying > 0 && ++choice[varying - 1] == alternatives[varying - 1].size()) {
            choice[--varying] = 0;
        }
    } while (varying-- > 0);
}

} // namespace brindle::arrange::impl
