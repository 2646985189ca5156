#include <brindle/arrange/Box.h>

#include "arrange/src/boxes/FramedArrangement.h"
#include "arrange/src/tree/Pass.h"

#include <algorithm>

namespace brindle::arrange {

/// The separator of a gap, which calls the box's function. The box owns it.
class AbstractBox::Separator final : public ISeparator {
public:
    Separator(AbstractBox const& inBox, std::size_t inNumber) : mBox(inBox), mNumber(inNumber) {}

    void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) override {
        // A copy, because the function may replace itself.
        if (SeparatorFunction const function = mBox.mSeparator) {
            function(mNumber, inOrientation, inRect);
        }
    }

private:
    AbstractBox const& mBox;
    std::size_t mNumber;
};

AbstractBox::AbstractBox(std::initializer_list<IArrangeable*> inChildren, float inSpacing)
    : mSpacing{inSpacing, inSpacing} {
    for (IArrangeable* const child : inChildren) {
        if (child != nullptr) {
            Add(*child);
        }
    }
}

AbstractBox::~AbstractBox() = default;

IArrangeable* AbstractBox::Entry::Get() const noexcept {
    return dynamic != nullptr ? dynamic->Group() : node.Get();
}

void AbstractBox::Insert(std::size_t inIndex, IArrangeable& inChild) {
    ForgetDestroyed();
    Entry entry;
    entry.node = impl::NodePointer<IArrangeable>(&inChild);
    auto const present = Find(inChild);
    if (present != mChildren.end()) {
        entry = std::move(*present);
        // The index counts the children as they stood.
        bool const isBefore = static_cast<std::size_t>(present - mChildren.begin()) < inIndex;
        mChildren.erase(present);
        inIndex -= isBefore && inIndex != kEnd ? 1 : 0;
    }
    InsertEntry(inIndex, std::move(entry));
}

void AbstractBox::InsertEntry(std::size_t inIndex, Entry inEntry) {
    if (inEntry.IsGone()) {
        return;
    }
    if (IArrangeable* const child = inEntry.Get()) {
        child->SetParent(this);
    }
    // Not each time, so that a long list is made in linear time.
    if (inIndex != kEnd || mChildren.size() == mChildren.capacity()) {
        ForgetDestroyed();
    }
    auto const index = static_cast<std::ptrdiff_t>(std::min(inIndex, mChildren.size()));
    mChildren.insert(mChildren.begin() + index, std::move(inEntry));
    NoteChange();
}

bool AbstractBox::Remove(IArrangeable const& inChild) {
    auto const found = Find(inChild);
    if (found == mChildren.end()) {
        return false;
    }
    Entry const removed = std::move(*found);
    mChildren.erase(found);
    Discard(removed);
    NoteChange();
    return true;
}

void AbstractBox::Clear() {
    Entries const removed = std::exchange(mChildren, {});
    for (Entry const& entry : removed) {
        Discard(entry);
    }
    NoteChange();
}

/// A child that is destroyed may be in use further up the stack, so it is kept until the pass ends.
/// One that lives on must not pass its changes on to this tree.
void AbstractBox::Discard(Entry const& inEntry) {
    IArrangeable* const child = inEntry.Get();
    if (child == nullptr) {
        return;
    }
    if (child->Parent() == this) {
        child->SetParent(nullptr);
    }
    if (inEntry.owner != nullptr && impl::Pass::Keep(inEntry.owner)) {
        child->Retire();
    }
}

std::size_t AbstractBox::Size() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(mChildren.begin(), mChildren.end(),
                      [](Entry const& inEntry) { return inEntry.Get() != nullptr; }));
}

IArrangeable const* AbstractBox::Child(std::size_t inIndex) const noexcept {
    for (Entry const& entry : mChildren) {
        IArrangeable const* const child = entry.Get();
        if (child != nullptr && inIndex-- == 0) {
            return child;
        }
    }
    return nullptr;
}

IArrangeable* AbstractBox::Child(std::size_t inIndex) noexcept {
    return const_cast<IArrangeable*>(std::as_const(*this).Child(inIndex));
}

bool AbstractBox::SetShown(IArrangeable const& inChild, bool inIsShown) {
    auto const found = Find(inChild);
    if (found == mChildren.end()) {
        return false;
    }
    if (std::exchange(found->isShown, inIsShown) != inIsShown) {
        NoteChange();
    }
    return true;
}

bool AbstractBox::IsShown(IArrangeable const& inChild) const noexcept {
    return std::any_of(mChildren.begin(), mChildren.end(), [&](Entry const& inEntry) {
        return inEntry.isShown && inEntry.Get() == &inChild;
    });
}

void AbstractBox::ForgetDestroyed() {
    auto const isDestroyed = [](Entry const& inEntry) { return inEntry.IsGone(); };
    mChildren.erase(std::remove_if(mChildren.begin(), mChildren.end(), isDestroyed),
                    mChildren.end());
}

AbstractBox::Entries::iterator AbstractBox::Find(IArrangeable const& inChild) noexcept {
    return std::find_if(mChildren.begin(), mChildren.end(),
                        [&](Entry const& inEntry) { return inEntry.Get() == &inChild; });
}

void AbstractBox::SetSpacing(float inHorizontal, float inVertical) {
    mSpacing = {inHorizontal, inVertical};
    NoteChange();
}

void AbstractBox::SetAlignment(AlignmentHorizontal inHorizontal, AlignmentVertical inVertical) {
    mHorizontalAlignment = inHorizontal;
    mVerticalAlignment = inVertical;
    NoteChange();
}

void AbstractBox::SetInset(Margins const& inInset) {
    mInset = inInset;
    NoteChange();
}

void AbstractBox::SetSeparator(SeparatorFunction inSeparator) {
    bool const hadSeparators = mSeparator != nullptr;
    mSeparator = std::move(inSeparator);
    if (hadSeparators != (mSeparator != nullptr)) {
        BuildSeparators();
    }
    NoteChange();
}

void AbstractBox::SetPlace(PlaceFunction inPlace) {
    mPlace = std::move(inPlace);
    NoteChange();
}

// The functions may change the list: it is indexed anew for each child.
bool AbstractBox::VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const {
    for (std::size_t index = 0; index < mChildren.size(); ++index) {
        IArrangeable const* const child = mChildren[index].Get();
        if (child != nullptr && mChildren[index].isShown && !inFunction(*child)) {
            return false;
        }
    }
    return true;
}

bool AbstractBox::VisitChildren(boost::function<bool(IArrangeable&)> inFunction) {
    for (std::size_t index = 0; index < mChildren.size(); ++index) {
        IArrangeable* const child = mChildren[index].Get();
        if (child != nullptr && mChildren[index].isShown && !inFunction(*child)) {
            return false;
        }
    }
    return true;
}

ISeparator* AbstractBox::BuildSeparator() {
    if (mSeparator == nullptr) {
        return nullptr;
    }
    return mSeparators.emplace_back(std::make_unique<Separator>(*this, mSeparators.size())).get();
}

void AbstractBox::ClearSeparators() {
    mSeparators.clear();
}

void AbstractBox::RebuildSelf() {
    AbstractArrangeableGroup::RebuildSelf();
    impl::ArrangementSet framed;
    bool const isFramed = mInset != Margins() || mPlace != nullptr;
    if (isFramed) {
        impl::ArrangementSet const& content = AbstractArrangeableGroup::ArrangementsSelf();
        for (std::size_t index = 0; index < content.Size(); ++index) {
            framed.AddArrangement(new impl::FramedArrangement(*this, content[index]));
        }
    }
    mFramed = std::move(framed);
    mUsesFramed = isFramed;
}

impl::ArrangementSet& AbstractBox::ArrangementsSelf() {
    return mUsesFramed ? mFramed : AbstractArrangeableGroup::ArrangementsSelf();
}

} // namespace brindle::arrange
