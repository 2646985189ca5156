#pragma once

#include "Manifest.h"

#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>

namespace offload {

using Executor = boost::shared_ptr<threads::AsyncExecutor>;

/// How far an offload has come.
struct State {
    std::size_t files = 0, copied = 0, present = 0; // those present were there already
    std::uint64_t bytes = 0, totalBytes = 0;
    std::vector<UTF16String> failures; // a sentence for each
    UTF16String summary;               // empty before the end
};

/// Copies a tree, from its construction on. A copy is whole or not there at all, whatever happens,
/// and a file that is there already is compared and never replaced by another one.
class Offload {
public:
    using Show = std::function<void(State const&)>;

    /// `inShow` is called on the loop, now and then, and at last with the summary.
    Offload(Order inOrder, Executor const& inPool, Executor const& inLoop, Show inShow);
    ~Offload() { Cancel(); }

    /// What is being copied is given up.
    void Cancel() noexcept { mCancel.Cancel(); }
    /// Waits for the end.
    void Wait() { mGroup.Wait(); }
    /// After the end.
    State const& Last() const { return mState; }

private:
    void Run();
    std::vector<std::filesystem::path> ListFiles();
    void Transfer(std::filesystem::path const& inPath, Manifest& ioManifest);
    void Try(std::function<void()> const& inFunction);
    void Fail(UTF16String const& inSentence);
    void Change(std::function<void(State&)> const& inChange);

    Order const mOrder;
    Executor const mPool;
    threads::CancelSource mCancel;
    std::mutex mMutex;
    State mState; // guarded by the mutex while files are copied
    threads::Progress<State> mProgress;
    threads::TaskGroup mGroup; // destroyed first, since its functions use the rest
};

} // namespace offload
