#pragma once

#include "Manifest.h"

#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>

namespace offload {

using Executor = boost::shared_ptr<threads::AsyncExecutor>;

/// How far an offload has come.
struct State {
    std::size_t files = 0;
    std::size_t copied = 0;
    std::size_t present = 0; // were there already, and are whole
    std::uint64_t bytes = 0;
    std::uint64_t totalBytes = 0;
    std::vector<UTF16String> failures; // a sentence for each
    bool isCancelled = false;

    bool HasSucceeded() const { return failures.empty() && !isCancelled; }
    /// A sentence for the end.
    UTF16String Summary() const;
};

/// Copies a tree, from its construction on. A copy is whole or not there at all, whatever happens,
/// and a file that is there already is compared and never replaced by another one.
class Offload {
public:
    using Show = std::function<void(State const&)>;

    /// The functions are called on the loop: `inShow` now and then, `inFinish` once, at the end.
    Offload(Order inOrder, Executor const& inPool, Executor const& inLoop, Show inShow,
            Show inFinish);
    /// What is being copied is given up.
    void Cancel() noexcept { mGroup.Cancel(); }

private:
    using Path = std::filesystem::path; // relative to the source and to the destination

    void Run();
    std::vector<Path> ListFiles();
    std::optional<Entry> Transfer(Path const& inPath, Manifest const& inManifest);
    std::uint32_t SumOf(filesupport::File const& inFile) const;
    void Try(std::function<void()> const& inFunction);
    void Fail(UTF16String const& inSentence);
    void Change(std::function<void(State&)> const& inChange);

    Order const mOrder;
    Executor const mPool;
    std::mutex mMutex;
    State mState; // guarded by the mutex
    threads::Progress<State> mProgress;
    threads::TaskGroup mGroup; // destroyed first, since its functions use the rest
};

} // namespace offload
