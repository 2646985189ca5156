#include "xml/src/ExpatMemory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace brindle::xml::impl {

/// Stands in front of the bytes that Expat sees.
struct alignas(std::max_align_t) ExpatMemory::Block {
    ExpatMemory* memory;
    std::size_t size;

    static Block* Of(void* inBytes) noexcept { return static_cast<Block*>(inBytes) - 1; }
};

thread_local ExpatMemory* ExpatMemory::S_currentP = nullptr;

XML_Memory_Handling_Suite const ExpatMemory::kFunctions = {Allocate, Reallocate, Free};

void* ExpatMemory::Allocate(std::size_t inSize) noexcept {
    ExpatMemory& memory = *S_currentP;
    std::size_t const left = memory.Allowance() - std::min(memory.mAllocated, memory.Allowance());
    if (inSize > left) {
        memory.mWasExceeded = true;
        return nullptr;
    }
    void* const block = ::operator new(sizeof(Block) + inSize, std::nothrow);
    if (block == nullptr) {
        return nullptr;
    }
    memory.mAllocated += inSize;
    return new (block) Block{&memory, inSize} + 1;
}

void* ExpatMemory::Reallocate(void* inBytes, std::size_t inSize) noexcept {
    void* const bytes = Allocate(inSize);
    if (bytes != nullptr && inBytes != nullptr) {
        std::memcpy(bytes, inBytes, std::min(inSize, Block::Of(inBytes)->size));
        Free(inBytes);
    }
    return bytes;
}

void ExpatMemory::Free(void* inBytes) noexcept {
    if (inBytes != nullptr) {
        Block* const block = Block::Of(inBytes);
        block->memory->mAllocated -= block->size;
        ::operator delete(block);
    }
}

} // namespace brindle::xml::impl
