#pragma once

#include <brindle/utility/SmallBlockAllocator.h>

#include <boost/function.hpp>

#include <memory>
#include <new>
#include <utility>

namespace brindle::threads {

/// A work item: a function in a block of the small block allocator.
class AllocatedFunction {
public:
    struct Release {
        void operator()(AllocatedFunction* inItem) const {
            inItem->~AllocatedFunction();
            utility::SmallBlockAllocator::Dispose(inItem, kBlockSize);
        }
    };
    using Pointer = std::unique_ptr<AllocatedFunction, Release>;

    /// Holds a copy of the function. Throws `std::bad_alloc`, and what copying throws.
    static Pointer Make(boost::function0<void> inFunction) {
        void* const block = utility::SmallBlockAllocator::Allocate(kBlockSize);
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return Pointer(new (block) AllocatedFunction(inFunction));
    }

    bool IsEmpty() const { return mFunction.empty(); }
    void Run() { mFunction(); }

private:
    static constexpr unsigned int kBlockSize = 32;

    explicit AllocatedFunction(boost::function0<void>& ioFunction) noexcept {
        mFunction.swap(ioFunction);
    }
    ~AllocatedFunction() = default;

    boost::function0<void> mFunction;
};

static_assert(sizeof(AllocatedFunction) <= 32);

} // namespace brindle::threads
