#include <brindle/utility/SmallBlockAllocator.h>

#include <new>

namespace brindle::utility::SmallBlockAllocator {

void* Allocate(unsigned int inSize) {
    return ::operator new(inSize);
}

void Dispose(void* inBlock, unsigned int) {
    ::operator delete(inBlock);
}

unsigned int GetActualAllocationSize(unsigned int inSize) {
    return inSize;
}

} // namespace brindle::utility::SmallBlockAllocator
