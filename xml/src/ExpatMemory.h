#pragma once

#include <boost/core/noncopyable.hpp>
#include <expat.h>

#include <cstddef>

namespace brindle::xml::impl {

/// The memory of one Expat parser, which may not be out of proportion to the document: some
/// documents of a megabyte would otherwise make Expat allocate tens of gigabytes.
class ExpatMemory : private boost::noncopyable {
public:
    /// To be passed to Expat, which may then be called only within a `Scope`, but for
    /// `XML_ParserFree`. The blocks come from `operator new`.
    static XML_Memory_Handling_Suite const kFunctions;

    /// Charges what Expat allocates on this thread to a memory. Scopes may be nested.
    class Scope : private boost::noncopyable {
    public:
        explicit Scope(ExpatMemory& ioMemory) noexcept : mBefore(S_currentP) {
            S_currentP = &ioMemory;
        }
        ~Scope() { S_currentP = mBefore; }

    private:
        ExpatMemory* const mBefore;
    };

    /// Tells it of further bytes of the document.
    void Add(std::size_t inDocumentBytes) noexcept { mDocumentBytes += inDocumentBytes; }

    /// How many bytes may be made of the document so far.
    std::size_t Allowance() const noexcept { return kFree + kMostAmplification * mDocumentBytes; }

    /// True if an allocation was refused because of the allowance.
    bool WasExceeded() const noexcept { return mWasExceeded; }

private:
    struct Block;

    static constexpr std::size_t kFree = std::size_t{64} << 20;
    static constexpr std::size_t kMostAmplification = 100;

    static void* Allocate(std::size_t inSize) noexcept;
    static void* Reallocate(void* inBytes, std::size_t inSize) noexcept;
    static void Free(void* inBytes) noexcept;

    static thread_local ExpatMemory* S_currentP;

    std::size_t mDocumentBytes = 0;
    std::size_t mAllocated = 0;
    bool mWasExceeded = false;
};

} // namespace brindle::xml::impl
