#include <brindle/utility/RefCountedObject.h>

namespace brindle::utility {

RefCountedObject::~RefCountedObject() = default;

void RefCountedObject::Release() const noexcept {
    if (mRefCount.fetch_sub(1, std::memory_order_acq_rel) == 1 && !mIsBeingDeleted && !mIsKept) {
        mIsBeingDeleted = true;
        delete this;
    }
}

} // namespace brindle::utility
