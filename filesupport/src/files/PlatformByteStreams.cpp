#include <brindle/filesupport/PlatformByteStreams.h>

#include "filesupport/src/files/CreateFailure.h"
#include "filesupport/src/files/SourceFile.h"
#include "filesupport/src/files/StreamFailure.h"
#include "filesupport/src/streams/BlockStream.h"
#include "platform/Files.h"

#include <brindle/filesupport/FileExceptions.h>

#include <utility>

namespace brindle::filesupport {

using config::FileOperation;

namespace {

std::unique_ptr<platform::OpenFile> OpenedOrThrow(platform::Result<platform::OpenFile> inResult,
                                                  File const& inFile) {
    if (inResult.error == platform::kError_FileNotFound ||
        inResult.error == platform::kError_PathNotFound) {
        throw config::Because(file_not_found_exception(inFile), FileOperation::kOpen,
                              inResult.error);
    }
    ThrowOnFailure(inFile, FileOperation::kOpen, inResult.error);
    return std::make_unique<platform::OpenFile>(std::move(inResult.value));
}

} // namespace

/// Which file a stream has open, and under which name.
struct PlatformStreamIdentity {
    template <typename Stream>
    static platform::Result<platform::FileIdentity> Of(ByteStream_base const& inStream) {
        auto const info = static_cast<Stream const&>(inStream).mFile->Inspect();
        return {info.value.identity, info.error};
    }

    template <typename Stream>
    static UTF16String PathOf(ByteStream_base const& inStream) {
        return static_cast<Stream const&>(inStream).mName.FullPath();
    }
};

namespace {

constexpr bool kIsFile = true;
constexpr impl::BlockStream kInputBlocks{typeid(IPlatformByteStream), kIsFile,
                                         &PlatformStreamIdentity::Of<IPlatformByteStream>,
                                         &PlatformStreamIdentity::PathOf<IPlatformByteStream>};
constexpr impl::BlockStream kOutputBlocks{typeid(OPlatformByteStream), kIsFile,
                                          &PlatformStreamIdentity::Of<OPlatformByteStream>,
                                          &PlatformStreamIdentity::PathOf<OPlatformByteStream>};

} // namespace

IPlatformByteStream::IPlatformByteStream(File const& inFile)
    : IPlatformByteStream(inFile, kShareWithReaders) {}

IPlatformByteStream::IPlatformByteStream(File const& inFile, FileSharing inSharing)
    : mName(inFile),
      mFile(OpenedOrThrow(platform::OpenForReading(inFile.Helper().Path(), SharingFor(inSharing)),
                          inFile)) {
    SetBlocks(kInputBlocks);
}

IPlatformByteStream::~IPlatformByteStream() = default;

std::uint8_t IPlatformByteStream::Get() {
    std::uint8_t byte = 0;
    ReadBlock(&byte, 1);
    return byte;
}

void IPlatformByteStream::ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) {
    if (ValueOrThrow(mName, FileOperation::kRead, mFile->Read(outBytes, inCount)) < inCount) {
        ThrowOnFailure(mName, FileOperation::kRead, platform::kError_EndOfFile);
    }
}

void IPlatformByteStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mName, FileOperation::kSeek, mFile->SetPosition(inPosition));
}

std::uint64_t IPlatformByteStream::CurPos() const {
    return ValueOrThrow(mName, FileOperation::kSeek, mFile->Position());
}

std::uint64_t IPlatformByteStream::Length() const {
    return ValueOrThrow(mName, FileOperation::kInspect, mFile->Size());
}

OPlatformByteStream::OPlatformByteStream(File const& inFile)
    : mName(inFile),
      mFile(OpenedOrThrow(platform::OpenForWriting(inFile.Helper().Path()), inFile)) {
    SetBlocks(kOutputBlocks);
}

OPlatformByteStream::OPlatformByteStream(File const& inFile, MakeNewFile inKind) : mName(inFile) {
    auto const readers =
        inKind == kMakeNewPrivateFile ? platform::Readers::kOwner : platform::Readers::kAnybody;
    auto file = platform::CreateNewFile(inFile.Helper().Path(), readers);
    if (!file) {
        ThrowCreateFailure(inFile, file.error);
    }
    mFile = std::make_unique<platform::OpenFile>(std::move(file.value));
    SetBlocks(kOutputBlocks);
}

OPlatformByteStream::~OPlatformByteStream() = default;

void OPlatformByteStream::Put(std::uint8_t inByte) {
    WriteBlock(&inByte, 1);
}

void OPlatformByteStream::WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) {
    ThrowOnFailure(mName, FileOperation::kWrite, mFile->Write(inBytes, inCount));
}

void OPlatformByteStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mName, FileOperation::kSeek, mFile->SetPosition(inPosition));
}

std::uint64_t OPlatformByteStream::CurPos() const {
    return ValueOrThrow(mName, FileOperation::kSeek, mFile->Position());
}

std::uint64_t OPlatformByteStream::Length() const {
    return ValueOrThrow(mName, FileOperation::kInspect, mFile->Size());
}

} // namespace brindle::filesupport
