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

Offload::Offload(Order inOrder, Executor const& inPool, Executor const& inLoop, Show inShow)
    : mOrder(std::move(inOrder)), mPool(inPool), mProgress(inLoop, inShow), mGroup(inPool) {
    mGroup.Run([this] { Try([this] { Run(); }); });
    mGroup.WhenDone(inLoop, [this, show = std::move(inShow)](std::exception_ptr) {
        mState.summary = Text(
            "$$$/offload/Done=^4{0=|other=Cancelled: }^1 ^1{one=file|other=files} copied, "
            "^2 already there, ^3 failed.",
            {mState.copied, mState.present, mState.failures.size(), mGroup.IsCancelled() ? 1 : 0});
        show(mState);
    });
}

void Offload::Advance(std::uint64_t inBytes, std::size_t State::*inCounter) {
    std::lock_guard const lock(mMutex);
    mState.bytes += inBytes;
    if (inCounter != nullptr) {
        ++(mState.*inCounter);
    }
    mProgress.Set(mState);
}

/// Returns no entry.
Manifest::Entry Offload::Fail(UTF16String const& inSentence) {
    std::lock_guard const lock(mMutex);
    mState.failures.push_back(inSentence);
    mProgress.Set(mState);
    return {};
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
    auto const inside = ToPath(mOrder.destination).lexically_relative(ToPath(mOrder.source));
    if (!inside.empty() && *inside.begin() != "..") {
        Fail(Text("$$$/offload/Inside=The destination must be outside the card."));
        return;
    }
    mOrder.destination.CreateAll();
    auto const files = ListFiles();
    Manifest manifest(mOrder);
    auto const transfer = [&](std::size_t inIndex) {
        Manifest::Entry entry;
        Try([&] { entry = Transfer(files[inIndex], manifest); });
        return entry;
    };
    auto const note = [&](std::size_t inIndex, Manifest::Entry inEntry) {
        if (!inEntry.IsEmpty()) {
            manifest.Set(files[inIndex], std::move(inEntry));
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
    auto const failing = [this](char const* inLiteral) {
        return [=](Dir const& inDir) { Fail(Text(inLiteral, {inDir})); };
    };
    std::vector<Path> files;
    std::set<Dir> dirs;
    WalkOptions options;
    options.leaveOutSaves = true;
    options.onUnreadableDir = failing("$$$/offload/Unreadable=Could not read the folder '^1'.");
    options.onDirLink = failing("$$$/offload/Link=The link '^1' was not followed.");
    options.onEmptyDir = [&](Dir const& inDir) { dirs.insert(inDir); };
    for (RecursiveFileIterator file(mOrder.source, options), end; file != end; ++file) {
        mGroup.Token().ThrowIfCancelled();
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

Manifest::Entry Offload::Transfer(Path const& inPath, Manifest const& inManifest) {
    File const original = FileFromPath(ToPath(mOrder.source) / inPath);
    File const copy = FileFromPath(ToPath(mOrder.destination) / inPath);
    if (copy == inManifest.file) {
        return Fail(Text("$$$/offload/Manifest=The card's own '^1' was not copied.", {inPath}));
    }
    Manifest::Entry entry;
    auto const size = original.Size(kFileSize_Data);
    entry.Set("size", size);
    entry.Set("modified", original.Modified());
    if (copy.Exists()) {
        auto const* const known = inManifest.Find(inPath);
        entry.Set("crc", known != nullptr ? known->Get("crc", 0U) : 0U);
        bool const isListed = known != nullptr && *known == entry;
        entry.Set("crc", isListed ? known->Get("crc", 0U) : SumOf(original));
        if (copy.Size(kFileSize_Data) == size && SumOf(copy) == entry.Get("crc", 0U)) {
            Advance(size, &State::present);
            return entry;
        }
        if (!isListed) {
            return Fail(
                Text("$$$/offload/Other='^1' is another file than the card's: kept.", {copy}));
        }
    }
    std::uint64_t shown = 0;
    CopyOptions options;
    options.keepTimes = options.sum = true;
    options.isCancelled = [token = mGroup.Token()] { return token.IsCancelled(); };
    options.progress = [&](std::uint64_t inDone, std::uint64_t) {
        Advance(inDone - std::exchange(shown, inDone));
    };
    auto const copied = CopyFile(original, copy, options);
    mGroup.Token().ThrowIfCancelled();
    Advance(0, &State::copied);
    entry.Set("crc", copied.crc);
    return entry;
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
