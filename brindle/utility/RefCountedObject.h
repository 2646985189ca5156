#pragma once

#include <brindle/Export.h>

#include <atomic>
#include <cstdint>

namespace brindle::utility {

/// The base of objects with an intrusive reference count, held through `boost::intrusive_ptr`.
///
///     class Picture : public utility::RefCountedObject {};
///     boost::intrusive_ptr<Picture> const picture(new Picture);
///
/// The count starts at 0, also in a copy. The last `intrusive_ptr` that is destroyed or reset
/// deletes the object. Counting is atomic, so pointers to one object may be copied and destroyed on
/// any thread; what a thread did to the object before it released its pointer is visible to the
/// destructor.
///
/// Beside the standard library: unlike with `std::shared_ptr` the count is in the object, so a
/// plain pointer can become an owning one at any time, and there are no weak pointers.
class BRN_API RefCountedObject {
public:
    RefCountedObject() noexcept = default;
    /// A copy is another object, with a count of its own that starts at 0; an assignment leaves
    /// both counts as they are.
    RefCountedObject(RefCountedObject const&) noexcept {}
    RefCountedObject& operator=(RefCountedObject const&) noexcept { return *this; }
    virtual ~RefCountedObject();

    /// Adds a reference. An `intrusive_ptr` does this by itself.
    void AddRef() const noexcept { mRefCount.fetch_add(1, std::memory_order_relaxed); }
    /// Takes a reference away, and deletes the object with the last one unless it is kept.
    void Release() const noexcept;

protected:
    /// Keeps the last reference from deleting the object, for objects with automatic or static
    /// storage.
    void KeepWhenUnreferenced() noexcept { mIsKept = true; }

private:
    mutable std::atomic<std::int32_t> mRefCount{0};
    // A destructor may hold a pointer to its own object for a while; releasing that pointer must
    // not delete the object again.
    mutable bool mIsBeingDeleted = false;
    bool mIsKept = false;
};

///@{
/// What `boost::intrusive_ptr` calls.
inline void intrusive_ptr_add_ref(RefCountedObject const* inObject) noexcept {
    inObject->AddRef();
}

inline void intrusive_ptr_release(RefCountedObject const* inObject) noexcept {
    inObject->Release();
}
///@}

} // namespace brindle::utility
