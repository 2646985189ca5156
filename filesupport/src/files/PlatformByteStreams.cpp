#include <brindle/filesupport/PlatformByteStreams.h>

#include "filesupport/src/files/CreateFailure.h"
#include "platform/Files.h"

#include <brindle/filesupport/FileExceptions.h>

#include <utility>

namespace brindle::filesupport {

namespace {

platform::OpenFile OpenedOrThrow(platform::Result<platform::OpenFile> inResult,
                                 File const& inFile) {
    switch (inResult.error) {
    case platform::kError_None:
        return std::move(inResult.value);
    case platform::kError_FileNotFound:
    case platform::kError_PathNotFound:
        throw file_not_found_exception(inFile);
    default:
        throw io_error();
    }
}

void ThrowOnFailure(platform::ErrorCode inError) {
    if (inError == platform::kError_EndOfFile) {
        throw eof_error();
    }
    if (inError != platform::kError_None) {
        throw io_error();
    }
}

template <typename T>
T ValueOrThrow(platform::Result<T> const& inResult) {
    ThrowOnFailure(inResult.error);
    return inResult.value;
}

} // namespace

IPlatformByteStream::IPlatformByteStream(File const& inFile)
    : IPlatformByteStream(inFile, kShareWithReaders) {}

IPlatformByteStream::IPlatformByteStream(File const& inFile, FileSharing inSharing)
    : mFile(std::make_unique<platform::OpenFile>(OpenedOrThrow(
          platform::OpenForReading(inFile.Helper().Path(), inSharing == kShareWithEverybody
                                                               ? platform::Sharing::kEverybody
                                                               : platform::Sharing::kReaders),
          inFile))) {}

IPlatformByteStream::~IPlatformByteStream() = default;

std::uint8_t IPlatformByteStream::Get() {
    std::uint8_t byte = 0;
    ReadBlock(&byte, 1);
    return byte;
}

void IPlatformByteStream::ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) {
    if (ValueOrThrow(mFile->Read(outBytes, inCount)) < inCount) {
        throw eof_error();
    }
}

void IPlatformByteStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mFile->SetPosition(inPosition));
}

std::uint64_t IPlatformByteStream::CurPos() const {
    return ValueOrThrow(mFile->Position());
}

std::uint64_t IPlatformByteStream::Length() const {
    return ValueOrThrow(mFile->Size());
}

OPlatformByteStream::OPlatformByteStream(File const& inFile)
    : mFile(std::make_unique<platform::OpenFile>(
          OpenedOrThrow(platform::OpenForWriting(inFile.Helper().Path()), inFile))) {}

OPlatformByteStream::OPlatformByteStream(File const& inFile, MakeNewFile inKind) {
    auto const readers =
        inKind == kMakeNewPrivateFile ? platform::Readers::kOwner : platform::Readers::kAnybody;
    auto file = platform::CreateNewFile(inFile.Helper().Path(), readers);
    if (!file) {
        ThrowCreateFailure(inFile, file.error);
    }
    mFile = std::make_unique<platform::OpenFile>(std::move(file.value));
}

OPlatformByteStream::~OPlatformByteStream() = default;

void OPlatformByteStream::Put(std::uint8_t inByte) {
    WriteBlock(&inByte, 1);
}

void OPlatformByteStream::WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) {
    ThrowOnFailure(mFile->Write(inBytes, inCount));
}

void OPlatformByteStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mFile->SetPosition(inPosition));
}

std::uint64_t OPlatformByteStream::CurPos() const {
    return ValueOrThrow(mFile->Position());
}

std::uint64_t OPlatformByteStream::Length() const {
    return ValueOrThrow(mFile->Size());
}

} // namespace brindle::filesupport
