#pragma once

namespace brindle::utility {

/// An allocator of blocks of one size. Any thread may call.
class AllocatorInterface {
public:
    /// Contract: `inSize` is at most the block size. Throws `std::bad_alloc`.
    [[nodiscard]] virtual void* Allocate(unsigned int inSize) = 0;
    /// Returns false if the block is not from this allocator. Contract: as for `Allocate`.
    [[nodiscard]] virtual bool Dispose(void* inBlock, unsigned int inSize) = 0;
    virtual unsigned int BlockSize() = 0;

protected:
    ~AllocatorInterface() = default;
};

} // namespace brindle::utility
