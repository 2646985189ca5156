#include <brindle/filesupport/CopyFile.h>

#include "filesupport/src/files/NewVersion.h"
#include "filesupport/src/files/SourceFile.h"
#include "filesupport/src/streams/CRC32.h"

#include <algorithm>
#include <vector>

namespace brindle::filesupport {

namespace {

constexpr std::size_t kBlockSize = 256 * 1024;

/// A copy under way.
class Copy {
public:
    Copy(File const& inFrom, File const& inTo, CopyOptions const& inOptions)
        : mFrom(inFrom), mTo(inTo), mOptions(inOptions),
          mSource(OpenSourceOrThrow(inFrom, inOptions.sharing)), mAtStart(InspectedSource()),
          mNewVersion(BeginOrThrow(inTo, inFrom)) {}

    CopyResult Run() {
        if (!mOptions.sum && !mOptions.progress && !mOptions.isCancelled) {
            RequireWritten(mTo, mNewVersion.CopyRest(mSource));
        }
        if (!CopyBlocks()) {
            return Result(false);
        }
        RequireUnchangedSource();
        TakeAttributes();
        if (IsCancelled()) {
            return Result(false);
        }
        CommitOrThrow(mNewVersion, mTo);
        return Result(true);
    }

private:
    platform::FileInfo InspectedSource() const {
        auto const info = mSource.Inspect();
        if (!info) {
            Fail(config::FileOperation::kInspect, info.error);
        }
        return info.value;
    }

    [[noreturn]] void Fail(config::FileOperation inOperation, platform::ErrorCode inError) const {
        throw config::Because(file_exception(mFrom), inOperation, inError);
    }

    bool IsCancelled() const { return mOptions.isCancelled && mOptions.isCancelled(); }

    /// From the present position to the end; false if the copy was cancelled.
    bool CopyBlocks() {
        std::vector<std::uint8_t> block(kBlockSize);
        for (auto count = kBlockSize; count == kBlockSize;) {
            if (IsCancelled()) {
                return false;
            }
            count = ReadOrThrow(mSource, mFrom, block.data(), kBlockSize);
            RequireWritten(mTo, mNewVersion.Write(block.data(), count));
            if (mOptions.sum) {
                mCRC = UpdateCRC32(mCRC, block.data(), count);
            }
            auto const done = mNewVersion.Position();
            if (mOptions.progress && (count != 0 || done == 0)) {
                mOptions.progress(done, std::max(done, mAtStart.size));
            }
        }
        return true;
    }

    /// A copy that mixes two versions is worth less than none.
    void RequireUnchangedSource() const {
        auto const now = InspectedSource();
        // The system shows some files, such as those about processes, without a size.
        bool const isWhole = mAtStart.size == 0 || mNewVersion.Position() == mAtStart.size;
        if (!isWhole || now.size != mAtStart.size || now.modified != mAtStart.modified) {
            Fail(config::FileOperation::kRead, platform::kError_SharingViolation);
        }
    }

    void TakeAttributes() {
        if (mOptions.keepPermissions) {
            RequireWritten(mTo, mNewVersion.TakePermissionsOf(mSource));
        }
        if (mOptions.keepTimes) {
            RequireWritten(mTo, mNewVersion.SetModified(mAtStart.modified));
        }
    }

    CopyResult Result(bool inIsComplete) const {
        return {inIsComplete, mNewVersion.Position(), mOptions.sum ? ~mCRC : 0};
    }

    File const& mFrom;
    File const& mTo;
    CopyOptions const& mOptions;
    platform::OpenFile mSource;
    platform::FileInfo const mAtStart;
    platform::FileReplacement mNewVersion;
    std::uint32_t mCRC = 0xFFFFFFFF;
};

} // namespace

CopyResult CopyFile(File const& inFrom, File const& inTo, CopyOptions const& inOptions) {
    return Copy(inFrom, inTo, inOptions).Run();
}

} // namespace brindle::filesupport
