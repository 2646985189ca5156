#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Margins.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace brindle::arrange {

namespace impl {

class FramedArrangement;

} // namespace impl

/// What boxes of all kinds have in common: a list of children that may change at run time, and the
/// look of the group.
///
/// A box owns a child that it was given as a `unique_ptr` or that it made, and points to any other;
/// it becomes the parent of both. Boxes and children may be destroyed in any order: a box leaves
/// out a child that was destroyed when it is measured next.
///
/// A change invalidates the box, so the tree is rearranged before the operation returns; while the
/// tree is being arranged, as in the place function of a leaf, the box is only marked, and the
/// `Arrange` under way has another pass. Exceptions of the functions that rearranging calls pass
/// through; the change stands. `EnableArrangement` makes many changes cost one rearrangement.
class BRN_API AbstractBox : public virtual impl::AbstractArrangeableGroup {
public:
    /// Called for a gap with the number of its separator, which counts from 0 and is less than the
    /// number of children that are shown, less 1; see `ISeparator::Place`. The order of the numbers
    /// along the lines of a wrapping box is not defined.
    using SeparatorFunction = std::function<void(
        std::size_t inNumber, SeparatorOrientation inOrientation, geom::RectT<float> const&)>;
    /// Called with the place of the whole box, its inset included.
    using PlaceFunction = std::function<void(geom::RectT<float> const&)>;

    AbstractBox(AbstractBox const&) = delete;
    AbstractBox& operator=(AbstractBox const&) = delete;
    ~AbstractBox() override;

    /// Appends a child that the box does not own. A child that the box has already is moved to the
    /// end, and stays owned if it was.
    void Add(IArrangeable& inChild) { Insert(kEnd, inChild); }
    /// Appends a child that the box owns from now on, and returns it; a null pointer is ignored.
    /// The child may be a `DynamicGroup`: its node of the moment counts.
    template <typename Child>
    Child* Add(std::unique_ptr<Child> inChild) {
        return Insert(kEnd, std::move(inChild));
    }
    /// Appends a child that the box makes and owns.
    template <typename Child, typename... Arguments>
    Child& Emplace(Arguments&&... inArguments) {
        return *Insert(kEnd, std::make_unique<Child>(std::forward<Arguments>(inArguments)...));
    }

    /// These insert the child in front of the one with this index, or at the end.
    void Insert(std::size_t inIndex, IArrangeable& inChild);
    template <typename Child>
    Child* Insert(std::size_t inIndex, std::unique_ptr<Child> inChild) {
        Child* const child = inChild.get();
        Entry entry;
        if constexpr (std::is_base_of_v<DynamicGroup, Child>) {
            entry.dynamic = child;
        } else {
            entry.node = impl::NodePointer<IArrangeable>(child);
        }
        entry.owner = boost::shared_ptr<Child>(std::move(inChild));
        InsertEntry(inIndex, std::move(entry));
        return child;
    }

    /// Removes a child, and destroys it if the box owns it; while anything is arranged or measured
    /// on this thread it is destroyed afterwards. Returns false if it is not a child of the box.
    bool Remove(IArrangeable const& inChild);
    /// Removes all children.
    void Clear();

    /// How many children there are, hidden ones included.
    std::size_t Size() const noexcept;
    /// Null past the end. The node of a `DynamicGroup` is that of the moment.
    IArrangeable* Child(std::size_t inIndex) noexcept;
    IArrangeable const* Child(std::size_t inIndex) const noexcept;

    /// A child that is not shown takes neither space nor spacing, and is not placed. Returns false
    /// if it is not a child of the box.
    bool SetShown(IArrangeable const& inChild, bool inIsShown);
    /// Also false for a node that is not a child of the box.
    bool IsShown(IArrangeable const& inChild) const noexcept;

    ///@{
    /// The space between neighbours in a line, and between lines; initially that of the
    /// constructor.
    void SetSpacing(float inBoth) { SetSpacing(inBoth, inBoth); }
    void SetSpacing(float inHorizontal, float inVertical);
    ///@}
    /// Where children stand in space that they do not fill; initially at the top left.
    void SetAlignment(AlignmentHorizontal inHorizontal, AlignmentVertical inVertical);
    /// Space around all children, inside the box. It counts wherever the box stands, at the root or
    /// deep in a tree. A box that shows no child has no inset.
    void SetInset(Margins const& inInset);
    Margins const& Inset() const noexcept { return mInset; }
    /// Has the function called for each gap whenever the box is arranged; an empty one leaves the
    /// gaps empty.
    void SetSeparator(SeparatorFunction inSeparator);
    /// Has the function called whenever the box is arranged, before its children are placed: a
    /// program places a background or a frame there.
    void SetPlace(PlaceFunction inPlace);

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override;
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override;
    ///@{
    /// As `SetSpacing` and `SetAlignment` have set them.
    float HorizontalSpacing() const override { return mSpacing.x; }
    float VerticalSpacing() const override { return mSpacing.y; }
    AlignmentHorizontal HorizontalAlignment() const override { return mHorizontalAlignment; }
    AlignmentVertical VerticalAlignment() const override { return mVerticalAlignment; }
    ///@}
    ///@{
    /// For the engine: objects that call the function of `SetSeparator`.
    ISeparator* BuildSeparator() override;
    void ClearSeparators() override;
    ///@}

protected:
    /// Points to the children, and ignores null pointers.
    AbstractBox(std::initializer_list<IArrangeable*> inChildren, float inSpacing);

private:
    static constexpr std::size_t kEnd = static_cast<std::size_t>(-1);

    friend class impl::FramedArrangement;
    class Separator;

    /// A child: a node, or a group whose node may change.
    struct Entry {
        impl::NodePointer<IArrangeable> node;
        DynamicGroup* dynamic = nullptr; ///< owned
        boost::shared_ptr<void> owner;   ///< null for a child that the box points to
        bool isShown = true;

        IArrangeable* Get() const noexcept;
        bool IsGone() const noexcept { return dynamic == nullptr && node.Get() == nullptr; }
    };
    using Entries = std::vector<Entry>;

    void InsertEntry(std::size_t inIndex, Entry inEntry);
    Entries::iterator Find(IArrangeable const& inChild) noexcept;
    void ForgetDestroyed();
    void Discard(Entry const& inEntry);
    void RebuildSelf() override;
    impl::ArrangementSet& ArrangementsSelf() override;

    Entries mChildren;
    geom::PointT<float> mSpacing;
    AlignmentHorizontal mHorizontalAlignment = kAlignmentHorizontal_Left;
    AlignmentVertical mVerticalAlignment = kAlignmentVertical_Top;
    Margins mInset;
    SeparatorFunction mSeparator;
    PlaceFunction mPlace;
    std::vector<std::unique_ptr<Separator>> mSeparators;
    bool mUsesFramed = false;
    impl::ArrangementSet mFramed; ///< the group's alternatives with the inset around them
};

/// A group of any kind whose children are a list: a program composes windows of boxes and leaves
/// without deriving a class.
///
///     Box<Row> row({&label, &field}, 6);
///     auto& tools = row.Emplace<Box<HorizontalWrapping>>();
template <typename Kind>
class Box final : public Kind, public AbstractBox {
    static_assert(std::is_base_of_v<impl::AbstractArrangeableGroup, Kind>,
                  "a box is of a kind of group, such as Row");

public:
    /// A box without children.
    explicit Box(float inSpacing = 0) : Box({}, inSpacing) {}
    /// Points to the children, and ignores null pointers. The spacing is that of both directions.
    Box(std::initializer_list<IArrangeable*> inChildren, float inSpacing = 0)
        : AbstractBox(inChildren, inSpacing) {}
};

} // namespace brindle::arrange
