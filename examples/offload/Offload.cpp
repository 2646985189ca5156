#include "Offload.h"

#include <brindle/config/Describe.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CopyFile.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/threads/ForEach.h>

#include <set>

namespace offload {

using namespace filesupport;
using config::Text;

UTF16String State::Summary() const {
    return Text(isCancelled ? "$$$/offload/Cancelled=Cancelled: ^1 ^1{one=file|other=files} "
                              "copied, ^2 already there, ^3 failed."
                            : "$$$/offload/Done=^1 ^1{one=file|other=files} copied, ^2 already "
                              "there, ^3 failed.",
                {copied, present, failures.size()});
}

Offload::Offload(Order inOrder, Executor const& inPool, Executor const& inLoop, Show inShow,
                 Show inFinish)
    : mOrder(std::move(inOrder)), mPool(inPool), mProgress(inLoop, std::move(inShow)),
      mGroup(inPool) {
    mGroup.Run([this] { Try([this] { Run(); }); });
    mGroup.WhenDone(inLoop, [this, finish = std::move(inFinish)](std::exception_ptr) {
        mState.isCancelled = mGroup.IsCancelled();
        finish(mState);
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

/// What fails is told, and does not stop the rest.
void Offload::Try(std::function<void()> const& inFunction) {
    try {
        mGroup.Token().ThrowIfCancelled();
        inFunction();
    } catch (threads::cancelled_exception const&) {
        throw;
    } catch (std::exception const& error) {
        Fail(config::Describe(error));
    }
}

void Offload::Run() {
    if (!mOrder.source.Exists()) {
        return Fail(Text("$$$/offload/NoSource=There is no folder '^1'.", {mOrder.source}));
    }
    auto const inside = ToPath(mOrder.destination).lexically_relative(ToPath(mOrder.source));
    if (!inside.empty() && *inside.begin() != "..") {
        return Fail(Text("$$$/offload/Inside=The destination must be outside the card."));
    }
    mOrder.destination.CreateAll();
    auto const files = ListFiles();
    Manifest manifest(mOrder);
    if (!manifest.damaged.empty()) {
        Fail(Text("$$$/offload/Damaged=The manifest was damaged, and has been moved to '^1'.",
                  {File(manifest.damaged)}));
    }
    auto const transfer = [&](std::size_t inIndex) {
        std::optional<Entry> entry;
        Try([&] { entry = Transfer(files[inIndex], manifest); });
        return entry;
    };
    auto const note = [&](std::size_t inIndex, std::optional<Entry> const& inEntry) {
        if (inEntry) {
            manifest.Set(files[inIndex], *inEntry);
        }
    };
    try {
        threads::ForEach(mPool, files.size(), transfer, note);
    } catch (threads::cancelled_exception const&) {
        // The manifest has what was copied until then.
    }
    manifest.Save();
}

/// Also makes the directories, and removes what a run left there that was killed.
std::vector<Offload::Path> Offload::ListFiles() {
    auto const relative = [source = ToPath(mOrder.source)](Path const& inPath) {
        return inPath.lexically_relative(source);
    };
    std::vector<Path> files;
    std::set<Dir> dirs;
    std::uint64_t bytes = 0;
    WalkOptions options;
    options.leaveOutSaves = true;
    options.onUnreadableDir = [&](Dir const& inDir) {
        Fail(Text("$$$/offload/Unreadable=Could not read the folder '^1'.", {inDir}));
    };
    options.onDirLink = [&](Dir const& inDir) {
        Fail(Text("$$$/offload/Link=The link '^1' was not followed.", {inDir}));
    };
    options.onEmptyDir = [&](Dir const& inDir) { dirs.insert(inDir); };
    for (RecursiveFileIterator file(mOrder.source, options), end; file != end; ++file) {
        mGroup.Token().ThrowIfCancelled();
        files.push_back(relative(ToPath(*file)));
        dirs.insert(file.CurrentDir());
        bytes += (*file).Size(kFileSize_Data);
    }
    for (Dir const& dir : dirs) {
        Try([&] {
            Dir const made = DirFromPath(ToPath(mOrder.destination) / relative(ToPath(dir)));
            made.CreateAll();
            SafeSave::RemoveAbandoned(made);
        });
    }
    Change([&](State& ioState) {
        ioState.files = files.size();
        ioState.totalBytes = bytes;
    });
    return files;
}

std::optional<Entry> Offload::Transfer(Path const& inPath, Manifest const& inManifest) {
    File const original = FileFromPath(ToPath(mOrder.source) / inPath);
    File const copy = FileFromPath(ToPath(mOrder.destination) / inPath);
    Entry entry{original.Size(kFileSize_Data), original.Modified(), 0};
    if (copy == inManifest.file) {
        Fail(Text("$$$/offload/Manifest=The manifest of the card itself was not copied."));
        return {};
    }
    if (copy.Exists()) {
        auto const known = inManifest.Find(inPath);
        bool const isListed =
            known && known->size == entry.size && known->modified == entry.modified;
        entry.crc = isListed ? known->crc : SumOf(original);
        if (copy.Size(kFileSize_Data) == entry.size && SumOf(copy) == entry.crc) {
            Change([&](State& ioState) {
                ++ioState.present;
                ioState.bytes += entry.size;
            });
            return entry;
        }
        if (!isListed) {
            Fail(Text("$$$/offload/Other='^1' is another file than the card's, and was kept.",
                      {copy}));
            return {};
        }
    }
    std::uint64_t shown = 0;
    CopyOptions options;
    options.keepTimes = options.sum = true;
    options.isCancelled = [token = mGroup.Token()] { return token.IsCancelled(); };
    options.progress = [&](std::uint64_t inDone, std::uint64_t) {
        Change([&](State& ioState) { ioState.bytes += inDone - std::exchange(shown, inDone); });
    };
    auto const copied = CopyFile(original, copy, options);
    mGroup.Token().ThrowIfCancelled();
    Change([&](State& ioState) { ++ioState.copied; });
    return Entry{copied.size, entry.modified, copied.crc};
}

// bridge: the sum of a file
std::uint32_t Offload::SumOf(File const& inFile) const {
    OCountingByteStream nothing;
    OCRCByteStream sum(nothing);
    CopyBytes(IPlatformByteStream(inFile), sum,
              [&](std::uint64_t, std::uint64_t) { mGroup.Token().ThrowIfCancelled(); });
    return sum.Value();
}
// end of bridge

} // namespace offload
