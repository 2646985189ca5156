#include "host/verbs/Verbs.h"

#include "host/commandline/EscapedText.h"
#include "host/files/FileErrors.h"
#include "host/files/Input.h"
#include "host/files/SumInOrder.h"
#include "host/seal/Manifest.h"
#include "host/seal/SealedTree.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <optional>

namespace brindle::host {

namespace {

using namespace filesupport;

enum Verdict { kSame, kChanged, kMissing, kNew, kUnreadable, kVerdicts };
constexpr char const* kWords[kVerdicts] = {nullptr, "changed", "missing", "new", nullptr};

/// A path that is in the manifest, in the tree, or in both.
struct Item {
    std::string path;
    std::optional<EntryState> sealed;
    bool isThere = false;
    Verdict verdict = kSame;
    std::string problem = {}; ///< why the file cannot be read
};

/// Merges the entries of the manifest and the files of the tree, both sorted by path, into one
/// sorted list.
std::vector<Item> Joined(std::vector<SealedEntry> inSealed, std::vector<std::string> inFound) {
    std::vector<Item> items;
    items.reserve(std::max(inSealed.size(), inFound.size()));
    auto sealed = inSealed.begin();
    auto found = inFound.begin();
    while (sealed != inSealed.end() || found != inFound.end()) {
        int order = sealed != inSealed.end() ? -1 : 1;
        if (sealed != inSealed.end() && found != inFound.end()) {
            order = sealed->path.compare(*found);
        }
        Item& item = items.emplace_back();
        if (order >= 0) {
            item.path = std::move(*found++);
            item.isThere = true;
        }
        if (order <= 0) {
            item.path = std::move(sealed->path);
            item.sealed = (sealed++)->state;
        }
    }
    return items;
}

/// True if the path is below one of the directories, which are sorted; "" is the root.
bool IsBelow(std::string const& inPath, std::vector<std::string> const& inDirs) {
    if (inDirs.empty() || inDirs.front().empty()) {
        return !inDirs.empty();
    }
    for (std::size_t i = inPath.find('/'); i != std::string::npos; i = inPath.find('/', i + 1)) {
        if (std::binary_search(inDirs.begin(), inDirs.end(), inPath.substr(0, i))) {
            return true;
        }
    }
    return false;
}

/// Compares an entry with its seal. Only files that the walk found are read, whatever paths the
/// manifest holds. `outSum` counts what was read. Throws `unreadable_error`.
Verdict Compare(Item& ioItem, SealedTree const& inTree,
                std::vector<std::string> const& inUnreadableDirs, FileSum& outSum) {
    if (!ioItem.sealed) {
        return kNew;
    }
    if (ioItem.sealed->kind == EntryState::kUnreadableDirectory && !ioItem.isThere) {
        bool const isSame =
            std::binary_search(inUnreadableDirs.begin(), inUnreadableDirs.end(), ioItem.path);
        return isSame ? kSame : inTree.HasDirectoryAt(ioItem.path) ? kChanged : kMissing;
    }
    if (!ioItem.isThere) {
        return IsBelow(ioItem.path, inUnreadableDirs) ? kUnreadable : kMissing;
    }
    try {
        EntryState const state = inTree.StateOf(ioItem.path, ioItem.problem);
        outSum = state.sum;
        if (IsSame(state, *ioItem.sealed)) {
            ioItem.problem.clear();
            return kSame;
        }
        return state.kind == EntryState::kUnreadable ? kUnreadable : kChanged;
    } catch (missing_error const&) {
        return kMissing;
    }
}

/// Reports the directories that cannot be read, but not those that could not be sealed either.
void ReportNewlyUnreadable(std::vector<std::string> const& inDirs,
                           std::vector<SealedEntry> const& inSealed, SealedTree const& inTree,
                           Diagnostics& ioDiagnostics) {
    auto const byPath = [](SealedEntry const& inEntry, std::string const& inPath) {
        return inEntry.path < inPath;
    };
    for (std::string const& dir : inDirs) {
        auto const sealed = std::lower_bound(inSealed.begin(), inSealed.end(), dir, byPath);
        if (sealed == inSealed.end() || sealed->path != dir ||
            sealed->state.kind != EntryState::kUnreadableDirectory) {
            ioDiagnostics.Report(inTree.NativePathOf(dir), kCannotReadDirectory);
        }
    }
}

/// Reads the tree and prints how it differs from the manifest.
void Verify(std::vector<SealedEntry> inSealed, SealedTree const& inTree, std::uint32_t inJobs,
            Diagnostics& ioDiagnostics) {
    auto const sealedCount =
        std::count_if(inSealed.begin(), inSealed.end(), [](SealedEntry const& inEntry) {
            return inEntry.state.kind != EntryState::kUnreadableDirectory;
        });
    FoundFiles found = inTree.Find(ioDiagnostics);
    ReportNewlyUnreadable(found.unreadableDirs, inSealed, inTree, ioDiagnostics);
    std::vector<Item> items = Joined(std::move(inSealed), std::move(found.files));
    std::size_t counts[kVerdicts] = {};

    auto const compare = [&](std::size_t inIndex) {
        FileSum sum;
        items[inIndex].verdict = Compare(items[inIndex], inTree, found.unreadableDirs, sum);
        return sum;
    };
    auto const print = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        Item const& item = items[inIndex];
        Verdict const verdict = inOutcome.failure.empty() ? item.verdict : kUnreadable;
        std::string const problem = inOutcome.failure + item.problem;
        if (!problem.empty()) {
            ioDiagnostics.Report(inTree.NativePathOf(item.path), problem);
        }
        ++counts[verdict];
        if (kWords[verdict] != nullptr) {
            ioDiagnostics.MakeRoomForOutput();
            utility::streams::Out << kWords[verdict] << ' ' << EscapedText(item.path) << '\n';
            RequireOutput();
        }
    };
    SumInOrder(items.size(), inJobs, ioDiagnostics, compare, print);

    ioDiagnostics.MakeRoomForOutput();
    utility::streams::Out << std::to_string(sealedCount)
                          << (sealedCount == 1 ? " file: " : " files: ")
                          << std::to_string(counts[kChanged]) << " changed, "
                          << std::to_string(counts[kMissing]) << " missing, "
                          << std::to_string(counts[kNew]) << " new, "
                          << std::to_string(counts[kUnreadable]) << " unreadable\n";
    if (counts[kSame] != items.size()) {
        ioDiagnostics.NoteDifference();
    }
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("verify needs one MANIFEST or DIR");
    }
    std::uint32_t const jobs = Jobs(inArguments);
    std::string path = inArguments.Operands()[0];
    if (path != kStandardStream && DirFromNative(path).Exists()) {
        path = DefaultManifestIn(path);
    }
    std::string root = inArguments.Text("root", "");
    if (root.empty() && inArguments.Has("root")) {
        throw usage_error("--root needs a DIR");
    }
    Manifest manifest;
    try {
        manifest = ReadManifest(path);
    } catch (unreadable_error const& error) {
        return ioDiagnostics.Report(path, error.what());
    }
    if (root.empty()) {
        root = PathFrom(DirectoryOf(PathWithoutLinks(path)), manifest.root);
    }
    try {
        Verify(std::move(manifest.entries), SealedTree(root, path), jobs, ioDiagnostics);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(root, error.what());
    }
}

} // namespace

Verb const kVerifyVerb = {
    "verify",
    "MANIFEST|DIR [--jobs=N] [--root=DIR]",
    "tells how files differ from what seal wrote down",
    "Reads all files that a manifest of seal, or brindle-seal.xml in DIR, is about, and writes a\n"
    "line for each that differs, sorted by path: \"changed PATH\" if size, CRC-32 or kind differ,\n"
    "\"missing PATH\" or \"new PATH\". The path is the one below the sealed directory, with\n"
    "backslashes and control characters as \\\\, \\n, \\u001b and so on. The last line has the\n"
    "counts. Another time of modification is no difference. What cannot be read, or changes\n"
    "while it is read, is reported, but not what could not be read for the seal either. The\n"
    "MANIFEST - is standard input.\n"
    "\n"
    "  --jobs=N    how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "              processor\n"
    "  --root=DIR  the sealed directory; without it, the one that the manifest names\n",
    {"help", "jobs=", "root="},
    Run,
};

} // namespace brindle::host
