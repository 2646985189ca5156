#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <iterator>
#include <utility>

namespace brindle::proplist {

/// A key of a list with what is stored under it:
///
///     for (PropListEntry const& entry : *list.GetSubList("volumes")) {
///         total += entry.Get<std::int64_t>(0);
///     }
///
/// Refers to the list, and is valid until the property is removed or changes its type.
///
/// Beside the standard library: as the `value_type` of a map; but the value is read by its type.
class PropListEntry {
public:
    /// Valid as long as the entry.
    [[nodiscard]] UTF8String const& Key() const noexcept { return *mKey; }
    [[nodiscard]] PropListPropertyType Type() const noexcept { return mType; } ///< of the value

    /// The nested list, or null if the entry is none.
    [[nodiscard]] PropList* SubList() const { return mList->GetSubList(*mKey); }

    /// As the functions of `PropList`, for this key. An array is read as a `std::vector`.
    template <typename T>
    [[nodiscard]] typename impl::Gotten<T>::Type Get(T inDefault = T()) const {
        return mList->Get<T>(*mKey, std::move(inDefault));
    }
    template <typename T>
    bool TryGet(T& outValue) const {
        return mList->TryGet(*mKey, outValue);
    }

private:
    friend class PropListIterator;

    PropList const* mList = nullptr;
    UTF8String const* mKey = nullptr;
    PropListPropertyType mType = kPropertyType_None;
};

/// Visits the entries of a list in the order of their keys.
///
/// Beside the standard library: an input iterator for `for` and for the algorithms that take one.
class BRN_API PropListIterator {
public:
    ///@{
    /// What `std::iterator_traits` asks for. An iterator may be copied, but walks once.
    using iterator_category = std::input_iterator_tag;
    using value_type = PropListEntry;
    using difference_type = std::ptrdiff_t;
    using pointer = PropListEntry const*;
    using reference = PropListEntry const&;
    ///@}

    /// Refers to the iterator, until it is changed.
    reference operator*() const noexcept { return mEntry; }
    pointer operator->() const noexcept { return &mEntry; }

    /// Goes on to the next key; the end must not be passed.
    PropListIterator& operator++() noexcept;
    PropListIterator operator++(int) noexcept {
        PropListIterator const before = *this;
        ++*this;
        return before;
    }

    /// Compares iterators of one list.
    friend bool operator==(PropListIterator const& inLHS, PropListIterator const& inRHS) noexcept {
        return inLHS.mBlock == inRHS.mBlock && inLHS.mSlot == inRHS.mSlot;
    }
    friend bool operator!=(PropListIterator const& inLHS, PropListIterator const& inRHS) noexcept {
        return !(inLHS == inRHS);
    }

private:
    friend class PropList;

    PropListIterator(PropList const& inList, impl::PropNodeBlocks const& inNodes,
                     std::size_t inBlock) noexcept;
    void Load() noexcept;

    impl::PropNodeBlocks const* mNodes;
    std::size_t mBlock;
    std::size_t mSlot = 0;
    PropListEntry mEntry; ///< at the place; unchanged at the end
};

} // namespace brindle::proplist
