#pragma once

namespace brindle::utility {

/// What gives blocks of one size. Any thread may call.
class AllocatorInterface {
public:
    /// Contract: `inSize` is at most the block size. Throws `std::bad_alloc`.
    virtual void* Allocate(unsigned int inSize) = 0;
    /// False if the block is not from here. Contract: as for `Allocate`.
    virtual bool Dispose(void* inBlock, unsigned int inSize) = 0;
    virtual unsigned int BlockSize() = 0;

protected:
    ~AllocatorInterface() = default;
};

} // namespace brindle::utility
