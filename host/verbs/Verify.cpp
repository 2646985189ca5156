#include "host/verbs/Verbs.h"

#include "host/commandline/EscapedText.h"
#include "host/files/FileErrors.h"
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
    std::optional<FileSum> sealed;
    bool isThere = false;
    Verdict verdict = kSame;
};

/// Merges the entries of the manifest and the files of the tree, both sorted by path, into one
/// sorted list.
std::vector<Item> Joined(std::vector<SealedFile> inSealed, std::vector<std::string> inFound) {
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
            item.sealed = (sealed++)->sum;
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

/// Compares a file with its seal. Only files that the walk found are read, whatever paths the
/// manifest holds. Throws `unreadable_error`.
Verdict Compare(Item const& inItem, SealedTree const& inTree, FileSum& outSum) {
    if (!inItem.isThere) {
        return kMissing;
    }
    File const file = inTree.FileAt(inItem.path);
    if (!inItem.sealed) {
        RequireRegular(file);
        return kNew;
    }
    try {
        std::uint64_t modified = 0;
        outSum = SteadySumOf(file, modified);
    } catch (missing_error const&) {
        return kMissing;
    } catch (irregular_error const&) {
        return kChanged;
    }
    bool const isSame = outSum.size == inItem.sealed->size && outSum.crc == inItem.sealed->crc;
    return isSame ? kSame : kChanged;
}

/// Reads the tree and prints how it differs from the manifest.
void Verify(std::vector<SealedFile> inSealed, SealedTree const& inTree, std::uint32_t inJobs,
            Diagnostics& ioDiagnostics) {
    std::size_t const sealedCount = inSealed.size();
    FoundFiles found = inTree.Find(ioDiagnostics);
    std::vector<Item> items = Joined(std::move(inSealed), std::move(found.files));
    std::size_t counts[kVerdicts] = {};

    auto const compare = [&](std::size_t inIndex) {
        FileSum sum;
        items[inIndex].verdict = Compare(items[inIndex], inTree, sum);
        return sum;
    };
    auto const print = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        Item const& item = items[inIndex];
        Verdict verdict = item.verdict;
        if (!inOutcome.failure.empty()) {
            ioDiagnostics.Report(inTree.NativePathOf(item.path), inOutcome.failure);
            verdict = kUnreadable;
        } else if (!item.isThere && IsBelow(item.path, found.unreadableDirs)) {
            verdict = kUnreadable; // the directory itself has been reported
        }
        ++counts[verdict];
        if (kWords[verdict] != nullptr) {
            ioDiagnostics.MakeRoomForOutput();
            utility::streams::Out << kWords[verdict] << ' ' << EscapedName(item.path) << '\n';
        }
    };
    SumInOrder(items.size(), inJobs, ioDiagnostics, compare, print);

    ioDiagnostics.MakeRoomForOutput();
    utility::streams::Out << std::to_string(sealedCount)
                          << " files: " << std::to_string(counts[kChanged]) << " changed, "
                          << std::to_string(counts[kMissing]) << " missing, "
                          << std::to_string(counts[kNew]) << " new, "
                          << std::to_string(counts[kUnreadable]) << " unreadable\n";
    if (counts[kSame] != items.size()) {
        ioDiagnostics.NoteDifference();
    }
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("verify needs one MANIFEST");
    }
    std::uint32_t const jobs = Jobs(inArguments);
    std::string const& path = inArguments.Operands()[0];
    std::string root = inArguments.Text("root", "");
    if (root.empty() && inArguments.Has("root")) {
        throw usage_error("--root needs a DIR");
    }
    Manifest manifest;
    try {
        manifest = ReadManifest(FileFromNative(path));
    } catch (unreadable_error const& error) {
        return ioDiagnostics.Report(path, error.what());
    }
    if (root.empty()) {
        root = PathFrom(DirectoryOf(PathWithoutLinks(path)), manifest.root);
    }
    try {
        Verify(std::move(manifest.files), SealedTree(root, path), jobs, ioDiagnostics);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(root, error.what());
    }
}

} // namespace

Verb const kVerifyVerb = {
    "verify",
    "MANIFEST [--jobs=N] [--root=DIR]",
    "tells how files differ from what seal wrote down",
    "Reads all files below the directory that a manifest of seal tells, and writes a line for\n"
    "each that differs, sorted by path: \"changed PATH\" if size or CRC-32 differ,\n"
    "\"missing PATH\" or \"new PATH\", with the path below that directory and a backslash, a\n"
    "newline and a carriage return in it as \\\\, \\n and \\r. The last line has the counts.\n"
    "Another time of modification is no difference. What cannot be read, or changes while it\n"
    "is read, is reported.\n"
    "\n"
    "  --jobs=N    how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "              processor\n"
    "  --root=DIR  the directory; without it, where the manifest tells\n",
    {"help", "jobs=", "root="},
    Run,
};

} // namespace brindle::host
