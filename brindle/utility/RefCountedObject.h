#pragma once

#include <brindle/Export.h>

#include <atomic>
#include <cstdint>

namespace brindle::utility {

/// Base of intrusively counted objects, held through `boost::intrusive_ptr`.
///
/// The count starts at 0, in a copy too; the first `intrusive_ptr` makes it 1 and the last one to
/// go deletes the object. Counting is atomic: pointers to one object may come and go on any thread,
/// and what a thread did to the object before it let go is visible to the destructor.
class BRN_API RefCountedObject {
public:
    RefCountedObject() noexcept = default;
    RefCountedObject(RefCountedObject const&) noexcept {}
    RefCountedObject& operator=(RefCountedObject const&) noexcept { return *this; }
    virtual ~RefCountedObject();

    void AddRef() const noexcept { mRefCount.fetch_add(1, std::memory_order_relaxed); }
    void Release() const noexcept;

protected:
    /// For an object with automatic or static storage: it is never deleted by its last reference.
    void KeepWhenUnreferenced() noexcept { mIsKept = true; }

private:
    mutable std::atomic<std::int32_t> mRefCount{0};
    // A destructor may hand out a pointer to its object for a while: that must not delete it again.
    mutable bool mIsBeingDeleted = false;
    bool mIsKept = false;
};

inline void intrusive_ptr_add_ref(RefCountedObject const* inObject) noexcept {
    inObject->AddRef();
}

inline void intrusive_ptr_release(RefCountedObject const* inObject) noexcept {
    inObject->Release();
}

} // namespace brindle::utility
