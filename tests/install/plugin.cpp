// A plug-in that is linked to the library.
#include <brindle/utility/Guid.h>
#include <brindle/utility/SmallBlockAllocator.h>
#include <brindle/utility/StringStreams.h>

extern "C" __attribute__((visibility("default"))) bool UseLibrary() {
    using namespace brindle;
    // The allocator keeps blocks for the thread, and has them back when the thread ends.
    void* const block = utility::SmallBlockAllocator::Allocate(48);
    utility::SmallBlockAllocator::Dispose(block, 48);
    oUTF16StringStream text;
    text << utility::Guid() << 1.5;
    return text.str().size() == 39;
}
