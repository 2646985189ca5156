#include "Offload.h"

#include <brindle/config/Describe.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/CopyFile.h>
#include <brindle/filesupport/FileSum.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/threads/ForEach.h>

#include <set>

namespace offload {

using namespace filesupport;
using config::Text;

constexpr char kInside[] = "$$$/offload/Inside=The destination must be outside the card.";

Offload::Offload(Order inOrder, Executor const& inPool, Executor const& inLoop, Show inShow)
    : mOrder(std::move(inOrder)), mPool(inPool), mProgress(inLoop, std::move(inShow)),
      mGroup(inPool) {
    mGroup.Run([this] {
        Try([this] { Run(); });
        mState.summary = Text(
            "$$$/offload/Done=^4{0=|other=Cancelled: }^1 ^1{one=file|other=files} copied, ^2 "
            "already there, ^3 failed.",
            {mState.copied, mState.present, mState.failures.size(), int(mCancel.IsCancelled())});
        mProgress.Set(mState);
    });
}

void Offload::Change(std::function<void(State&)> const& inChange) {
    std::lock_guard const lock(mMutex);
    inChange(mState);
    mProgress.Set(mState);
}

void Offload::Fail(UTF16String const& inSentence) {
    Change([&](State& ioState) { ioState.failures.push_back(inSentence); });
}

/// What fails is told, and does not stop the rest. Nothing begins after the user has cancelled.
void Offload::Try(std::function<void()> const& inFunction) {
    try {
        mCancel.Token().ThrowIfCancelled();
        inFunction();
    } catch (threads::cancelled_exception const&) {
        // Nobody has to be told.
    } catch (std::exception const& error) {
        Fail(config::Describe(error));
    }
}

void Offload::Run() {
    auto const inside = mOrder.to.lexically_relative(mOrder.from);
    if (!mOrder.HasStart() || inside.empty() || *inside.begin() != "..") {
        return Fail(Text(mOrder.HasStart() ? kInside : kNoTimecode));
    }
    auto const files = ListFiles();
    Manifest manifest(mOrder);
    manifest.Save(); // if that fails, nothing else has to be tried
    threads::ForEach(mPool, files.size(), [&](std::size_t inIndex) {
        Try([&] { Transfer(files[inIndex], manifest); });
    });
    manifest.Save();
}

/// Also makes the directories, and removes what a run left there that was killed.
std::vector<std::filesystem::path> Offload::ListFiles() {
    auto const failing = [this](char const* inLiteral) {
        return [=](Dir const& inDir) { Fail(Text(inLiteral, {inDir})); };
    };
    std::vector<std::filesystem::path> files;
    std::set<Dir> dirs{DirFromPath(mOrder.from)};
    WalkOptions options;
    options.leaveOutSaves = true;
    options.onUnreadableDir = failing("$$$/offload/Unreadable=Could not read the folder '^1'.");
    options.onDirLink = failing("$$$/offload/Link=The link '^1' was not followed.");
    options.onEmptyDir = [&](Dir const& inDir) { dirs.insert(inDir); };
    for (RecursiveFileIterator file(DirFromPath(mOrder.from), options), end; file != end; ++file) {
        mCancel.Token().ThrowIfCancelled();
        files.push_back(ToPath(*file).lexically_relative(mOrder.from));
        dirs.insert(file.CurrentDir());
        mState.totalBytes += (*file).Size(kFileSize_Data);
    }
    mState.files = files.size();
    for (Dir const& dir : dirs) {
        Try([&] {
            Dir const copy = DirFromPath(mOrder.to / ToPath(dir).lexically_relative(mOrder.from));
            copy.CreateAll();
            SafeSave::RemoveAbandoned(copy);
        });
    }
    return files;
}

void Offload::Transfer(std::filesystem::path const& inPath, Manifest& ioManifest) {
    File const original = FileFromPath(mOrder.from / inPath);
    File const copy = FileFromPath(mOrder.to / inPath);
    proplist::PropList entry;
    auto const size = original.Size(kFileSize_Data);
    entry.Set("size", size);
    entry.Set("modified", original.Modified());
    std::uint64_t shown = 0;
    auto const progress = [&](std::uint64_t inDone, std::uint64_t) {
        mCancel.Token().ThrowIfCancelled();
        Change([&](State& ioState) { ioState.bytes += inDone - std::exchange(shown, inDone); });
    };
    if (copy.Exists()) {
        auto const* const known = ioManifest.Find(inPath);
        auto const crc = known != nullptr ? known->Get("crc", 0U) : 0U;
        entry.Set("crc", crc);
        bool const isListed = known != nullptr && *known == entry;
        entry.Set("crc", isListed ? crc : SumOf(original, progress));
        if (copy.Size(kFileSize_Data) == size && SumOf(copy, progress) == entry.Get("crc", 0U)) {
            Change([&](State& ioState) { ++ioState.present; });
            return ioManifest.Set(inPath, std::move(entry));
        }
        if (!isListed) {
            return Fail(Text("$$$/offload/Other=There is another '^1', which was kept.", {copy}));
        }
    }
    CopyOptions options;
    options.keepTimes = options.sum = true;
    options.progress = progress;
    auto const copied = CopyFile(original, copy, options);
    Change([&](State& ioState) { ++ioState.copied; });
    entry.Set("crc", copied.crc);
    ioManifest.Set(inPath, std::move(entry));
}

} // namespace offload
