#include <brindle/MemoryMappedFile.h>

#include "platform/SharedMemory.h"

namespace brindle {

namespace {

/// Set by the object beside the caller's flags: the view is to be writable.
constexpr std::uint32_t kViewIsWritable = 0x80000000;

} // namespace

MemoryMappedFile::MemoryMappedFile() noexcept = default;
MemoryMappedFile::MemoryMappedFile(MemoryMappedFile const& inOther) = default;
MemoryMappedFile& MemoryMappedFile::operator=(MemoryMappedFile const& inOther) = default;
MemoryMappedFile::~MemoryMappedFile() = default;

void MemoryMappedFile::Init(std::string const& inName, std::uint64_t inSize,
                            std::uint32_t inFlags) {
    Reset();
    mName = inName;
    mSize = inSize;
    mFlags = inFlags & ~kViewIsWritable;
    try {
        try {
            Init();
        } catch (std::int32_t) {
            // The last holder may have released the memory after the creation found it to exist.
            Reset();
            Init();
        }
    } catch (...) {
        Reset();
        throw;
    }
}

void MemoryMappedFile::Init() {
    if ((mFlags & kMappedFileCreate) != 0) {
        Create();
    }
    if (!mMemory) {
        Open();
    }
    bool const isToBeWritten = (mFlags & (kMappedFileWritable | kMappedFileWritableOnly)) != 0;
    if (isToBeWritten && mMemory) {
        mFlags |= kViewIsWritable;
    }
    if ((mFlags & kMappedFileWritableOnly) == 0 && !mMemory) {
        Open();
    }
    if (!mMemory) {
        throw kErrorMappedFileException;
    }
    if ((mFlags & kMappedFileMapNow) != 0) {
        GetAddress();
    }
}

void MemoryMappedFile::Create() {
    mMemory = platform::CreateSharedMemory(mName, static_cast<std::uint32_t>(mSize)).value;
}

void MemoryMappedFile::Open() {
    mMemory = platform::OpenSharedMemory(mName).value;
}

void* MemoryMappedFile::GetAddress() {
    if (!mMemory) {
        Open();
    }
    if (!mView && mMemory) {
        mView = mMemory->Map((mFlags & kViewIsWritable) != 0).value;
    }
    if (!mView) {
        throw kErrorMappedFileException;
    }
    return mView.get();
}

bool MemoryMappedFile::MappedMemoryIsWritable() const noexcept {
    return mView && (mFlags & kViewIsWritable) != 0;
}

void MemoryMappedFile::UnmapMemory() noexcept {
    mView.reset();
}

void MemoryMappedFile::Reset() noexcept {
    UnmapMemory();
    mMemory.reset();
    mFlags &= ~kViewIsWritable;
}

} // namespace brindle
