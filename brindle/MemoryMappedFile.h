#pragma once

#include <brindle/Export.h>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle {

namespace platform {
class SharedMemory;
}

/// A named piece of memory that processes of one user share; no file on disk is behind it.
///
/// It exists for as long as an object, in whatever process, holds it, and is gone with its last
/// holder, also if that is killed: the name then is free, and who creates it anew finds zeros. Each
/// user has names of their own. A name has 1 to 255 characters, each anything but a NUL.
///
/// What fails throws `kErrorMappedFileException`, a plain `std::int32_t`. An object belongs to one
/// thread at a time; what is in the memory is the clients' to guard.
class BRN_API MemoryMappedFile {
public:
    static constexpr std::int32_t kErrorMappedFileException = 9002;

    // What the caller asks for: the flags of `Init`.
    static constexpr std::uint32_t kMappedFileCreate = 0x01; ///< create it if it does not exist
    static constexpr std::uint32_t kMappedFileMapNow = 0x08; ///< map the view in `Init` already
    /// The view is writable; read-only if the memory could only be opened at a second attempt.
    static constexpr std::uint32_t kMappedFileWritable = 0x10;
    static constexpr std::uint32_t kMappedFileWritableOnly = 0x20; ///< without that attempt

    /// Holds nothing and has no name: `GetAddress` throws.
    MemoryMappedFile() noexcept;
    /// A copy shares what the other holds at that moment, its view with the same address. Each may
    /// go or let go in any order: what they share stays until the last of them does.
    MemoryMappedFile(MemoryMappedFile const& inOther);
    MemoryMappedFile& operator=(MemoryMappedFile const& inOther);
    ~MemoryMappedFile();

    /// Lets go of what the object holds, then creates or opens the memory of this name. New memory
    /// has the low 32 bits of `inSize` in bytes, which must not all be 0, and is all zero; it is
    /// taken from the system as it is touched, but only promised if the system can hold it whole.
    /// Memory that exists is opened whatever size it has. After a failure the object holds nothing
    /// and keeps the new name, size and flags.
    void Init(std::string const& inName, std::uint64_t inSize, std::uint32_t inFlags);

    /// The size given to `Init`, which need not be the one of the memory.
    std::uint64_t Size() const noexcept { return mSize; }
    void GetName(std::string& outName) const { outName = mName; }

    /// The address of the whole memory, mapped at the first call and the same from then on. Opens
    /// it again after `Reset`, read-only.
    void* GetAddress();

    /// Whether a view is mapped and may be written to.
    bool MappedMemoryIsWritable() const noexcept;

    /// Lets go of the view. The memory stays, and `GetAddress` maps it again, maybe elsewhere.
    void UnmapMemory() noexcept;
    void CloseFileHandleIfPossible() noexcept { UnmapMemory(); }

    /// Lets go of the view and of the memory; name, size and flags stay.
    void Reset() noexcept;

protected:
    /// Creates or opens by the name, size and flags that are stored.
    void Init();

private:
    void Create();
    void Open();

    std::string mName; // the first, so that a copy that there is no memory for changes nothing
    std::shared_ptr<platform::SharedMemory> mMemory;
    std::uint64_t mSize = 0;
    std::shared_ptr<void> mView;
    std::uint32_t mFlags = 0;
};

} // namespace brindle
