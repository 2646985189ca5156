#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <memory>

namespace brindle::platform {
class FileReplacement;
}

namespace brindle::filesupport {

/// Writes a new version of a file, which takes the place of the old one in one step:
///
///     OSafeSaveStream stream(file);
///     stream << value;
///     stream.Commit();
///
/// Until `Commit` nobody sees the new version, and without it nothing remains of it: on most file
/// systems it has no name until then, so that not even a kill leaves anything behind. At every
/// moment, and after a crash, readers find the whole old file or the whole new one. A target
/// that is a link stays one, and what it leads to is replaced. Use this rather than `SafeSave`
/// unless something else has to write the file by its name.
///
/// One system call for each `Put` and each `WriteBlock`: wrap it in `OBufferedByteStream` to write
/// by the byte, and flush that before `Commit`. Every operation throws `io_error` on a failure of
/// the system, such as a full disk.
///
/// Beside the standard library: what to use where `std::ofstream` would truncate the old file
/// before the new one is there.
class BRN_API OSafeSaveStream : public OByteStream {
public:
    /// A file that does not exist yet gets the permissions that the process's settings give it.
    /// Throws `rename_file` if there is an old version that may not be replaced, and a class of
    /// `create_exception` if its directory takes no new file.
    explicit OSafeSaveStream(File const& inTarget);
    /// A file that does not exist yet gets the permissions of `inModel`, as is right for something
    /// made from the content of `inModel`.
    OSafeSaveStream(File const& inTarget, File const& inModel);
    /// Drops a new version that was not committed.
    ~OSafeSaveStream() override;

    void Put(std::uint8_t inByte) override;
    void WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    /// The new version's size in bytes.
    virtual std::uint64_t Length() const;

    /// Puts the new version in place. It gets the permissions of the old one and, as far as this
    /// process may set them, its owner and group. When this returns, the new version is on the
    /// disk. Call it once; nothing may be written afterwards.
    ///
    /// Throws `rename_file` with the target and its name, and leaves the old version alone, if that
    /// is not a regular file, may not be written or is open for writing, and if the system refuses.
    /// Only a disk that fails at the very end may leave the new version.
    void Commit();

private:
    File mTarget;
    std::unique_ptr<platform::FileReplacement> mNewVersion;
};

/// Replaces a file by this text, as `OSafeSaveStream` does. Throws what its constructor and
/// `Commit` throw, and `file_exception` if the text cannot be written.
BRN_API void SafeSaveText(File const& inTarget, UTF8String const& inText);

} // namespace brindle::filesupport
