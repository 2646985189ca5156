#include <brindle/filesupport/SafeSaveStream.h>

#include "filesupport/src/files/CreateFailure.h"
#include "filesupport/src/files/StreamFailure.h"
#include "platform/FileReplacement.h"

#include <brindle/filesupport/FileExceptions.h>

#include <utility>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

namespace {

[[noreturn]] void ThrowUnreplaceable(File const& inTarget, platform::ErrorCode inError) {
    throw Because(rename_file(inTarget, inTarget.GetName()), FileOperation::kReplace, inError);
}

platform::FileReplacement Begun(File const& inTarget, File const& inModel) {
    auto begun =
        platform::FileReplacement::Begin(inTarget.Helper().Path(), inModel.Helper().Path());
    if (!begun) {
        ThrowCreateFailure(inTarget, begun.error);
    }
    // What the last step would refuse is refused before hours of work.
    auto const refusal = begun.value.CheckTarget();
    if (refusal != platform::kError_None) {
        ThrowUnreplaceable(inTarget, refusal);
    }
    return std::move(begun.value);
}

void CommitOrThrow(platform::FileReplacement& ioNewVersion, File const& inTarget) {
    auto const error = ioNewVersion.Commit();
    if (error != platform::kError_None) {
        ThrowUnreplaceable(inTarget, error);
    }
}

} // namespace

OSafeSaveStream::OSafeSaveStream(File const& inTarget) : OSafeSaveStream(inTarget, File()) {}

OSafeSaveStream::OSafeSaveStream(File const& inTarget, File const& inModel)
    : mTarget(inTarget),
      mNewVersion(std::make_unique<platform::FileReplacement>(Begun(mTarget, inModel))) {}

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
    auto newVersion = Begun(inTarget, File());
    auto const error = newVersion.Write(inText.data(), inText.size());
    if (error != platform::kError_None) {
        throw Because(file_exception(inTarget), FileOperation::kWrite, error);
    }
    CommitOrThrow(newVersion, inTarget);
}

} // namespace brindle::filesupport
