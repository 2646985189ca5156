#include "filesupport/src/files/NewVersion.h"

#include "filesupport/src/files/CreateFailure.h"

#include <brindle/filesupport/FileExceptions.h>

#include <utility>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

namespace {

[[noreturn]] void ThrowUnreplaceable(File const& inTarget, platform::ErrorCode inError) {
    throw Because(rename_file(inTarget, inTarget.GetName()), FileOperation::kReplace, inError);
}

} // namespace

platform::FileReplacement BeginOrThrow(File const& inTarget, File const& inModel) {
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

void RequireWritten(File const& inTarget, platform::ErrorCode inError) {
    if (inError != platform::kError_None) {
        throw Because(file_exception(inTarget), FileOperation::kWrite, inError);
    }
}

void CommitOrThrow(platform::FileReplacement& ioNewVersion, File const& inTarget) {
    auto const error = ioNewVersion.Commit();
    if (error != platform::kError_None) {
        ThrowUnreplaceable(inTarget, error);
    }
}

} // namespace brindle::filesupport
