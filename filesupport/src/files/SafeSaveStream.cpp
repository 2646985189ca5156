#include <brindle/filesupport/SafeSaveStream.h>

#include "filesupport/src/files/CreateFailure.h"
#include "platform/FileReplacement.h"

#include <brindle/filesupport/FileExceptions.h>

#include <utility>

namespace brindle::filesupport {

namespace {

void ThrowOnFailure(platform::ErrorCode inError) {
    if (inError != platform::kError_None) {
        throw io_error();
    }
}

platform::FileReplacement Begun(File const& inTarget, File const& inModel) {
    auto begun =
        platform::FileReplacement::Begin(inTarget.Helper().Path(), inModel.Helper().Path());
    if (!begun) {
        ThrowCreateFailure(inTarget, begun.error);
    }
    // What the last step would refuse is refused before hours of work.
    if (begun.value.CheckTarget() != platform::kError_None) {
        throw rename_file(inTarget, inTarget.GetName());
    }
    return std::move(begun.value);
}

void CommitOrThrow(platform::FileReplacement& ioNewVersion, File const& inTarget) {
    if (ioNewVersion.Commit() != platform::kError_None) {
        throw rename_file(inTarget, inTarget.GetName());
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
    ThrowOnFailure(mNewVersion->Write(inBytes, inCount));
}

void OSafeSaveStream::CurPos(std::uint64_t inPosition) {
    ThrowOnFailure(mNewVersion->SetPosition(inPosition));
}

std::uint64_t OSafeSaveStream::CurPos() const {
    return mNewVersion->Position();
}

std::uint64_t OSafeSaveStream::Length() const {
    auto const size = mNewVersion->Size();
    ThrowOnFailure(size.error);
    return size.value;
}

void OSafeSaveStream::Commit() {
    CommitOrThrow(*mNewVersion, mTarget);
}

void SafeSaveText(File const& inTarget, UTF8String const& inText) {
    auto newVersion = Begun(inTarget, File());
    if (newVersion.Write(inText.data(), inText.size()) != platform::kError_None) {
        throw file_exception(inTarget);
    }
    CommitOrThrow(newVersion, inTarget);
}

} // namespace brindle::filesupport
