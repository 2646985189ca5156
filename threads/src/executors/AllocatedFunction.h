#pragma once

#include <brindle/utility/SmallBlockAllocator.h>

#include <boost/function.hpp>

#include <memory>
#include <new>

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
    [[nodiscard]] static Pointer Make(boost::function0<void> const& inFunction) {
        Block block(utility::SmallBlockAllocator::Allocate(kBlockSize));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        Pointer item(new (block.get()) AllocatedFunction(inFunction));
        static_cast<void>(block.release());
        return item;
    }

    bool IsEmpty() const { return mFunction.empty(); }
    void Run() { mFunction(); }

private:
    static constexpr unsigned int kBlockSize = 32;

    struct DisposeBlock {
        void operator()(void* inBlock) const {
            utility::SmallBlockAllocator::Dispose(inBlock, kBlockSize);
        }
    };
    using Block = std::unique_ptr<void, DisposeBlock>;

    explicit AllocatedFunction(boost::function0<void> const& inFunction) : mFunction(inFunction) {}
    ~AllocatedFunction() = default;

    boost::function0<void> mFunction;
};

static_assert(sizeof(AllocatedFunction) <= 32);

} // namespace brindle::threads
