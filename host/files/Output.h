#pragma once

#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/SafeSaveStream.h>

#include <memory>
#include <string>

namespace brindle::host {

/// The bytes that become a new version of a file, in one step, on `Commit`; those of standard
/// output if the name is "-". A file that does not exist yet gets the permissions of the file
/// `inModel`, unless that is empty or "-". Every failure is an `unwritable_error`, or
/// `output_error` for standard output.
class Output final : public filesupport::OByteStream {
public:
    explicit Output(std::string const& inName, std::string const& inModel = {});
    ~Output() override;

    void Put(std::uint8_t inByte) override;
    void WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) override;
    std::uint64_t CurPos() const override { return mPosition; }
    /// There is no way back: throws `filesupport::byte_stream_exception` for any other position.
    void CurPos(std::uint64_t inPosition) override;

    void WriteText(std::string const& inText);

    /// Until this is called, the file is what it was.
    void Commit();

private:
    std::unique_ptr<filesupport::OSafeSaveStream> mFile; // null for standard output
    std::uint64_t mPosition = 0;
};

} // namespace brindle::host
