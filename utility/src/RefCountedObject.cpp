#include <brindle/Impl.h>
#include <brindle/utility/RefCountedObject.h>

namespace brindle {

Impl::~Impl() = default;

namespace utility {

RefCountedObject::~RefCountedObject() = default;

void RefCountedObject::Release() const noexcept {
    if (mRefCount.fetch_sub(1, std::memory_order_acq_rel) == 1 && !mIsBeingDeleted && !mIsKept) {
        mIsBeingDeleted = true;
        delete this;
    }
}

} // namespace utility

} // namespace brindle
