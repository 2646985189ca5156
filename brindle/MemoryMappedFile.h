#pragma once

#include <brindle/Export.h>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle {

namespace platform {
class SharedMemory;
}

/// Memory with a name, shared by the processes of one user. No file on disk is involved.
///
///     MemoryMappedFile meters;
///     meters.Init("mixer meters", 4096, MemoryMappedFile::kMappedFileCreate |
///     MemoryMappedFile::kMappedFileWritable); auto* const levels =
///     static_cast<float*>(meters.GetAddress());
///
/// The memory exists as long as an object in any process holds it, and vanishes with its last
/// holder, even if that process is killed. Its name is then free, and new memory
/// under it is all zero. Each user has separate names. A name has 1 to 255 characters other than
/// NUL.
///
/// Failures throw `kErrorMappedFileException`, a plain `std::int32_t`. An object must not be used
/// by two threads at the same time. Clients synchronise their accesses to the memory themselves.
///
/// Beside the standard library: there is none. Copies share as those of a `std::shared_ptr` do.
class BRN_API MemoryMappedFile {
public:
    static constexpr std::int32_t kErrorMappedFileException = 9002; ///< what every failure throws

    // The flags of `Init`.
    static constexpr std::uint32_t kMappedFileCreate =
        0x01; ///< create the memory if it does not exist
    static constexpr std::uint32_t kMappedFileMapNow = 0x08; ///< map the view in `Init` already
    /// The view is writable, or read-only if the memory was found only by a second attempt to open
    /// it.
    static constexpr std::uint32_t kMappedFileWritable = 0x10;
    static constexpr std::uint32_t kMappedFileWritableOnly =
        0x20; ///< writable, without a second attempt

    /// Holds no memory and has no name, so `GetAddress` throws.
    MemoryMappedFile() noexcept;
    /// A copy shares the memory and the view that the other holds at that moment; the address is
    /// the same. They exist until both objects have released them, in either order.
    MemoryMappedFile(MemoryMappedFile const& inOther);
    MemoryMappedFile& operator=(MemoryMappedFile const& inOther);
    ~MemoryMappedFile();

    /// Releases what the object holds, then creates or opens the memory of this name. The size of
    /// new memory in bytes is the low 32 bits of `inSize`, which must not be 0; it is all zero.
    /// Pages are taken from the system when they are first accessed. The system counts the whole
    /// size at the creation, and refuses what it cannot hold; but most systems promise more memory
    /// than there is, and end a process if pages are accessed when none is left. Existing memory is
    /// opened whatever its size. After a failure the object holds nothing, and keeps the new name,
    /// size and flags.
    void Init(std::string const& inName, std::uint64_t inSize, std::uint32_t inFlags);
    /// The same for memory that is created if it does not exist, writable, and mapped at once.
    void Init(std::string const& inName, std::uint64_t inSize) {
        Init(inName, inSize, kMappedFileCreate | kMappedFileMapNow | kMappedFileWritable);
    }

    /// The size given to `Init`; existing memory may have another size.
    std::uint64_t Size() const noexcept { return mSize; }
    /// The name given to `Init`, without a change.
    void GetName(std::string& outName) const { outName = mName; }

    /// The address of the whole memory. The first call maps it; further calls return the same
    /// address. After `Reset` it opens the memory again, read-only.
    void* GetAddress();

    /// Whether a view is mapped and writable.
    bool MappedMemoryIsWritable() const noexcept;

    /// Releases the view and keeps the memory. `GetAddress` maps it again, possibly at another
    /// address.
    void UnmapMemory() noexcept;
    void CloseFileHandleIfPossible() noexcept { UnmapMemory(); }

    /// Releases the view and the memory. The name, size and flags stay.
    void Reset() noexcept;

protected:
    /// Creates or opens the memory by the stored name, size and flags.
    void Init();

private:
    void Create();
    void Open();

    std::string mName; // the first member, so that an assignment that throws changes nothing
    std::shared_ptr<platform::SharedMemory> mMemory;
    std::uint64_t mSize = 0;
    std::shared_ptr<void> mView;
    std::uint32_t mFlags = 0;
};

} // namespace brindle
