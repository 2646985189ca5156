#include <brindle/arrange/AbstractArrangeableGroup.h>

#include "arrange/src/tree/BuildLayouts.h"
#include "arrange/src/tree/Limits.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace brindle::arrange::impl {

namespace {

// How often children may be destroyed while they are measured before the group counts as empty.
constexpr int kMostCollections = 5;

/// The address of a child, which is null if a client dereferenced a null pointer to pass it on.
IArrangeable* AddressOf(IArrangeable& inChild) {
    // Reads it back from memory, so that the compiler cannot conclude that it is never null.
    IArrangeable* volatile child = &inChild;
    return child;
}

} // namespace

// The client's most derived class constructs the virtual base and need not pass the parent on, so
// each kind of group sets it.
AbstractArrangeableGroup::AbstractArrangeableGroup(IArrangeable* inParent)
    : IArrangeable(inParent) {}

AbstractArrangeableGroup::AbstractArrangeableGroup(AbstractArrangeableGroup const& inOther)
    : IArrangeable(inOther) {}

AbstractArrangeableGroup&
AbstractArrangeableGroup::operator=(AbstractArrangeableGroup const& inOther) {
    IArrangeable::operator=(inOther);
    return *this;
}

AbstractArrangeableGroup::~AbstractArrangeableGroup() = default;

void AbstractArrangeableGroup::Position(geom::PointT<float> const&) {}

void AbstractArrangeableGroup::SetDimensions(geom::PointT<float> const&) {}

void AbstractArrangeableGroup::BuildSeparators() {
    // The client may replace this group, or rebuild its separators, from within the calls below.
    NodePointer<AbstractArrangeableGroup> const self(this);
    std::uint32_t const build = ++mSeparatorBuilds;
    auto const isOvertaken = [&] { return self.IsGone() || mSeparatorBuilds != build; };
    // There are none until all new ones exist, whatever the client arranges or throws meanwhile.
    mSeparators.clear();
    ClearSeparators();
    if (isOvertaken() || mChildren.empty()) {
        return;
    }
    std::vector<ISeparator*> separators(mChildren.size() - 1);
    for (ISeparator*& separator : separators) {
        separator = BuildSeparator();
        if (isOvertaken()) {
            return;
        }
    }
    mSeparators = std::move(separators);
}

void AbstractArrangeableGroup::RebuildSelf() {
    mArrangements.Clear();
    for (int attempt = 0; attempt < kMostCollections && *Lifeline(); ++attempt) {
        Children const children = CollectChildren();
        if (children.empty()) {
            return;
        }
        if (mSeparators.size() != children.size() - 1) {
            BuildSeparators();
        }
        // The client may arrange this group from within: it must not find unprepared alternatives.
        ArrangementSet set;
        if (Combine(children, set)) {
            set.Prepare();
            mArrangements = std::move(set);
            return;
        }
    }
}

AbstractArrangeableGroup::Children AbstractArrangeableGroup::CollectChildren() {
    Children children;
    std::vector<IArrangeable*> nodes;
    arrange::VisitChildren(*this, [&](IArrangeable& inChild) {
        nodes.push_back(AddressOf(inChild));
        children.emplace_back(nodes.back());
        return true;
    });
    for (auto const& child : children) {
        if (IArrangeable* const node = child.Get()) {
            node->SetParent(this);
        }
    }
    mChildren = std::move(nodes);
    return children;
}

/// Builds the layouts of all combinations of the children's alternatives, the first child varying
/// slowest. A child without alternatives is left out; with a null child there are no layouts.
/// Returns false if this group was replaced meanwhile, or if a child was destroyed while another
/// one was measured, so that the children have to be collected again.
bool AbstractArrangeableGroup::Combine(Children const& inChildren, ArrangementSet& ioSet) {
    Alternatives alternatives;
    for (auto const& pointer : inChildren) {
        IArrangeable* const child = pointer.Get();
        if (child == nullptr) {
            return !pointer.IsGone();
        }
        ArrangementSet const& set = child->Arrangements();
        if (pointer.IsGone() || !*Lifeline()) {
            return false;
        }
        std::vector<boost::intrusive_ptr<IArrangement>> ofChild;
        NoteLimits(child->LimitsReached());
        for (std::size_t index = 0; index < set.Size(); ++index) {
            auto alternative = set[index];
            if (alternative->Depth() >= kDeepestArrangement) {
                NoteLimits(kLayoutLimit_Depth);
            } else if (alternative->Count() > kLargestArrangement) {
                NoteLimits(kLayoutLimit_Count);
            } else {
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
        BuildLayouts(ioSet, *this, forms, alternatives, mSeparators);
        return true;
    }
    std::vector<std::size_t> choice(alternatives.size());
    std::vector<boost::intrusive_ptr<IArrangement>> chosen(alternatives.size());
    std::size_t varying = 0;
    do {
        for (; varying < choice.size(); ++varying) {
            chosen[varying] = alternatives[varying][choice[varying]];
        }
        BuildArrangements(ioSet, chosen, mSeparators);
        while (varying > 0 && ++choice[varying - 1] == alternatives[varying - 1].size()) {
            choice[--varying] = 0;
        }
    } while (varying-- > 0);
    return true;
}

} // namespace brindle::arrange::impl
