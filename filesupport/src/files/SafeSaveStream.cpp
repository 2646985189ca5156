#include <brindle/filesupport/SafeSaveStream.h>

#include "filesupport/src/files/NewVersion.h"
#include "filesupport/src/files/StreamFailure.h"
#include "filesupport/src/streams/BlockStream.h"

#include <brindle/filesupport/FileContent.h>

namespace brindle::filesupport {

using config::FileOperation;

namespace {

constexpr bool kIsFile = true;
// Nobody else can open the new version.
constexpr impl::BlockStream kBlocks{typeid(OSafeSaveStream), kIsFile, nullptr, nullptr};

} // namespace

OSafeSaveStream::OSafeSaveStream(File const& inTarget) : OSafeSaveStream(inTarget, File()) {}

OSafeSaveStream::OSafeSaveStream(File const& inTarget, File const& inModel)
    : mTarget(inTarget),
      mNewVersion(std::make_unique<platform::FileReplacement>(BeginOrThrow(mTarget, inModel))) {
    SetBlocks(kBlocks);
}

OSafeSaveStream::~OSafeSaveStream() = default;

void OSafeSaveStream::Put(std::uint8_t inByte) {
    WriteBlock(&inByte, 1);
}

void OSafeSaveStream::WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) {
    ThrowOnFailure(mTarget, FileOperation::kWrite, mNewVersion->Write(inBytes, inCount));
}

void OSafeSaveStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mTarget, FileOperation::kSeek, mNewVersion->SetPosition(inPosition));
}

std::uint64_t OSafeSaveStream::CurPos() const {
    return mNewVersion->Position();
}

std::uint64_t OSafeSaveStream::Length() const {
    return ValueOrThrow(mTarget, FileOperation::kInspect, mNewVersion->Size());
}

void OSafeSaveStream::Commit() {
    CommitOrThrow(*mNewVersion, mTarget);
}

void SafeSaveText(File const& inTarget, UTF8String const& inText) {
    WriteFile(inTarget, inText.data(), inText.size());
}

} // namespace brindle::filesupport
