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

Offload::Offload(Order inOrder, Executor const& inPool, Executor const& inLoop,
                 std::function<void(State const&)> inShow)
    : mOrder(std::move(inOrder)), mPool(inPool), mProgress(inLoop, std::move(inShow)),
      mGroup(inPool) {
    mGroup.Run([this] {
        Try([this] { Run(); });
        Change([this](State& ioState) {
            ioState.summary =
                Text("$$$/offload/Done=^4{0=|other=Cancelled: }^1 ^1{one=file|other=files} copied, "
                     "^2 already there, ^3 failed.",
                     {ioState.copied, ioState.present, ioState.failures.size(),
                      int(mCancel.IsCancelled())});
        });
    });
}

State const& Offload::Wait() {
    mGroup.Wait();
    return mState;
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
        return;
    } catch (std::exception const& error) {
        Fail(config::Describe(error));
    }
}

void Offload::Run() {
    auto const inside = ToPath(mOrder.destination).lexically_relative(ToPath(mOrder.source));
    if (!inside.empty() && *inside.begin() != "..") {
        return Fail(Text("$$$/offload/Inside=The destination must be outside the card."));
    }
    auto const files = ListFiles();
    Manifest manifest(mOrder);
    threads::ForEach(mPool, files.size(), [&](std::size_t inIndex) {
        Try([&] { Transfer(files[inIndex], manifest); });
    });
    manifest.Save();
}

/// Also makes the directories, and removes what a run left there that was killed.
std::vector<Offload::Path> Offload::ListFiles() {
    auto const failing = [this](char const* inLiteral) {
        return [=](Dir const& inDir) { Fail(Text(inLiteral, {inDir})); };
    };
    std::vector<Path> files;
    std::set<Dir> dirs{mOrder.source};
    WalkOptions options;
    options.leaveOutSaves = true;
    options.onUnreadableDir = failing("$$$/offload/Unreadable=Could not read the folder '^1'.");
    options.onDirLink = failing("$$$/offload/Link=The link '^1' was not followed.");
    options.onEmptyDir = [&](Dir const& inDir) { dirs.insert(inDir); };
    for (RecursiveFileIterator file(mOrder.source, options), end; file != end; ++file) {
        mCancel.Token().ThrowIfCancelled();
        files.push_back(ToPath(*file).lexically_relative(ToPath(mOrder.source)));
        dirs.insert(file.CurrentDir());
        mState.totalBytes += (*file).Size(kFileSize_Data);
    }
    mState.files = files.size();
    for (Dir const& dir : dirs) {
        Try([&] {
            auto const path = ToPath(dir).lexically_relative(ToPath(mOrder.source));
            Dir const copy = DirFromPath(ToPath(mOrder.destination) / path);
            copy.CreateAll();
            SafeSave::RemoveAbandoned(copy);
        });
    }
    return files;
}

void Offload::Transfer(Path const& inPath, Manifest& ioManifest) {
    File const original = FileFromPath(ToPath(mOrder.source) / inPath);
    File const copy = FileFromPath(ToPath(mOrder.destination) / inPath);
    if (copy == ioManifest.file) {
        return Fail(Text("$$$/offload/Manifest=The card's own '^1' was not copied.", {inPath}));
    }
    proplist::PropList entry;
    auto const size = original.Size(kFileSize_Data);
    entry.Set("size", size);
    entry.Set("modified", original.Modified());
    if (copy.Exists()) {
        auto const stop = [this](auto...) { mCancel.Token().ThrowIfCancelled(); };
        auto const* const known = ioManifest.Find(inPath);
        auto const crc = known != nullptr ? known->Get("crc", 0U) : 0U;
        entry.Set("crc", crc);
        bool const isListed = known != nullptr && *known == entry;
        entry.Set("crc", isListed ? crc : SumOf(original, stop));
        if (copy.Size(kFileSize_Data) == size && SumOf(copy, stop) == entry.Get("crc", 0U)) {
            Change([&](State& ioState) { ioState.bytes += size; });
            Change([&](State& ioState) { ++ioState.present; });
            return ioManifest.Set(inPath, std::move(entry));
        }
        if (!isListed) {
            return Fail(
                Text("$$$/offload/Other='^1' is another file than the card's: kept.", {copy}));
        }
    }
    std::uint64_t shown = 0;
    CopyOptions options;
    options.keepTimes = options.sum = true;
    options.isCancelled = [token = mCancel.Token()] { return token.IsCancelled(); };
    options.progress = [&](std::uint64_t inDone, std::uint64_t) {
        Change([&](State& ioState) { ioState.bytes += inDone - std::exchange(shown, inDone); });
    };
    auto const copied = CopyFile(original, copy, options);
    mCancel.Token().ThrowIfCancelled();
    Change([&](State& ioState) { ++ioState.copied; });
    entry.Set("crc", copied.crc);
    ioManifest.Set(inPath, std::move(entry));
}

} // namespace offload
