#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/File.h>

#include <cstdint>
#include <memory>

namespace brindle::platform {
class OpenFile;
}

namespace brindle::filesupport {

/// With whom a reader shares its file. Sharing is advisory: it concerns the users of this library,
/// and programs that lock whole files.
enum FileSharing {
    kShareWithReaders,  ///< nobody may write the file in place meanwhile
    kShareWithEverybody ///< takes no lock and respects none: reads what is there, and disturbs
                        ///< nobody
};

/// Reads an existing regular file, which other readers may read at the same time:
///
///     IPlatformByteStream file(input);
///     IBufferedByteStream buffered(file, 64 * 1024, 32 * 1024);
///     buffered >> header;
///
/// One system call for each `Get` and each `ReadBlock`: wrap it in `IBufferedByteStream` to read by
/// the byte. Every operation throws `io_error` on a failure of the system, such as a position past
/// 2^63 - 1.
///
/// Beside the standard library: as a `std::ifstream` in binary mode without a buffer.
class BRN_API IPlatformByteStream : public IByteStream {
public:
    /// Throws `file_not_found_exception` if there is no such file, and `io_error` on any other
    /// failure: it is not a regular file, may not be read, or is open for writing elsewhere.
    explicit IPlatformByteStream(File const& inFile);
    /// The same; with `kShareWithEverybody` the file may also be open for writing elsewhere.
    IPlatformByteStream(File const& inFile, FileSharing inSharing);
    ~IPlatformByteStream() override;

    /// Throws `eof_error` at the end.
    std::uint8_t Get() override;
    /// Throws `eof_error` if the file ends first; `outBytes` then begins with what there was.
    void ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    std::uint64_t Length() const override;

private:
    friend struct PlatformStreamIdentity;
    File mName;
    std::unique_ptr<platform::OpenFile> mFile;
};

/// Selects the constructor that creates the file.
enum MakeNewFile {
    kMakeNewFile,       ///< its permissions are those that the process's settings give
    kMakeNewPrivateFile ///< may be read by its owner only
};

/// Overwrites an existing regular file from its beginning, or creates a new one. While it is open
/// nobody else can open the file. It never shortens a file: bytes behind the last one written
/// survive.
///
/// One system call for each `Put` and each `WriteBlock`: wrap it in `OBufferedByteStream` to write
/// by the byte. Every operation throws `io_error` on a failure of the system, such as a full disk.
///
/// Beside the standard library: as a `std::fstream` in binary mode without a buffer, which does not
/// truncate.
class BRN_API OPlatformByteStream : public OByteStream {
public:
    /// Throws `file_not_found_exception` if there is no such file, and `io_error` on any other
    /// failure: it is not a regular file, may not be written, or is open elsewhere.
    explicit OPlatformByteStream(File const& inFile);
    /// Throws a class derived from `create_exception` if the file cannot be created, also because
    /// the name is taken, even by a dangling link.
    OPlatformByteStream(File const& inFile, MakeNewFile inKind);
    ~OPlatformByteStream() override;

    void Put(std::uint8_t inByte) override;
    void WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    /// The file's size in bytes.
    virtual std::uint64_t Length() const;

private:
    friend struct PlatformStreamIdentity;
    File mName;
    std::unique_ptr<platform::OpenFile> mFile;
};

} // namespace brindle::filesupport
