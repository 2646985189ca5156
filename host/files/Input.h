#pragma once

#include "host/commandline/Diagnostics.h"

#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/utility/TextTypes.h>

#include <fstream>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace brindle::host {

/// The name that stands for standard input or output in place of a file.
constexpr char const* kStandardStream = "-";

/// The bytes of a file, in order and buffered; of standard input if the name is "-". FIFOs and
/// devices are read too. Every failure is an `unreadable_error`, except the end of the data.
class Input final : public filesupport::IByteStream {
public:
    /// A progress line is shown if `inDiagnostics` is not null; it has to outlive this object.
    explicit Input(std::string const& inName, Diagnostics* inDiagnostics = nullptr);
    ~Input() override;

    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) override;
    /// Reads `inCount` bytes, or fewer if the data ends first. Returns how many.
    std::uint32_t ReadUpTo(std::uint8_t* outBytes, std::uint32_t inCount);

    std::uint64_t CurPos() const override { return mPosition - (mEnd - mNext); }
    /// There is no way back: throws `filesupport::byte_stream_exception`.
    void CurPos(std::uint64_t inPosition) override;

private:
    std::uint32_t ReadFromSource(std::uint8_t* outBytes, std::uint32_t inCount);
    bool Fill();

    std::unique_ptr<filesupport::IPlatformByteStream> mFile; // null if it is read as a stream
    std::ifstream mOther;
    std::istream* mStream = nullptr;
    Diagnostics* const mDiagnostics;
    std::uint64_t mLength = 0;   // 0 if it is not known
    std::uint64_t mPosition = 0; // of the end of the buffer
    std::vector<std::uint8_t> mBuffer;
    std::size_t mNext = 0;
    std::size_t mEnd = 0;
};

/// The whole content. Throws `unreadable_error`.
UTF8String ReadAll(std::string const& inName);

} // namespace brindle::host
