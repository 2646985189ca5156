#include "host/verbs/Verbs.h"

#include "host/files/FileErrors.h"
#include "host/files/Input.h"
#include "host/files/SumInOrder.h"
#include "host/files/SystemReason.h"
#include "host/seal/Manifest.h"
#include "host/seal/SealedTree.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>

#include <algorithm>
#include <vector>

namespace brindle::host {

namespace {

using namespace filesupport;

/// Why the manifest could not be written to this path, found out before anything is summed; empty
/// if it can.
std::string Objection(std::string const& inManifest) {
    if (!DirFromNative(DirectoryOf(inManifest)).Exists()) {
        return "there is no such directory to write to";
    }
    FileKind const kind = KindOf(FileFromNative(inManifest));
    bool const canBeWritten = kind == FileKind::kRegular || kind == FileKind::kMissing;
    return canBeWritten ? "" : "is no regular file, so it is not replaced";
}

/// Enters the files, sums included, and reports those that cannot be read.
void AddFiles(std::vector<std::string> const& inPaths, SealedTree const& inTree,
              std::uint32_t inJobs, NewManifest& ioManifest, Diagnostics& ioDiagnostics) {
    struct Result {
        EntryState state;
        std::string problem;
    };
    std::vector<Result> results(std::min(inPaths.size(), kMostAhead));
    auto const sum = [&](std::size_t inIndex) {
        Result& result = results[inIndex % kMostAhead];
        result = {};
        result.state = inTree.StateOf(inPaths[inIndex], result.problem);
        return result.state.sum;
    };
    auto const add = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        std::string const& path = inPaths[inIndex];
        Result const& result = results[inIndex % kMostAhead];
        if (inOutcome.failure.empty()) {
            ioManifest.Add(path, result.state);
        }
        if (!inOutcome.failure.empty() || !result.problem.empty()) {
            ioDiagnostics.Report(inTree.NativePathOf(path), inOutcome.failure + result.problem);
        }
    };
    SumInOrder(inPaths.size(), inJobs, ioDiagnostics, sum, add);
}

/// Enters the directories that cannot be read, and reports them.
void AddUnreadableDirs(std::vector<std::string> const& inPaths, SealedTree const& inTree,
                       NewManifest& ioManifest, Diagnostics& ioDiagnostics) {
    EntryState state;
    state.kind = EntryState::kUnreadableDirectory;
    for (std::string const& path : inPaths) {
        ioDiagnostics.Report(inTree.NativePathOf(path), kCannotReadDirectory);
        if (!path.empty()) {
            ioManifest.Add(path, state);
        }
    }
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("seal needs one DIR");
    }
    std::uint32_t const jobs = Jobs(inArguments);
    std::string const& root = inArguments.Operands()[0];
    std::string const output = inArguments.Text("output", DefaultManifestIn(root));
    if (output.empty()) {
        throw usage_error("--output needs a FILE");
    }
    // If the path is a link, the file that it leads to is written.
    bool const isFile = output != kStandardStream;
    std::string const manifestPath = isFile ? PathWithoutLinks(output) : output;
    try {
        SealedTree const tree(root, manifestPath);
        std::string const objection = isFile ? Objection(manifestPath) : "";
        if (!objection.empty()) {
            return ioDiagnostics.Report(output, objection);
        }
        FoundFiles const found = tree.Find(ioDiagnostics);
        NewManifest manifest(tree.RootForManifest());
        AddUnreadableDirs(found.unreadableDirs, tree, manifest, ioDiagnostics);
        if (found.files.empty() && !found.unreadableDirs.empty()) {
            return; // an older manifest is worth more than one without any files
        }
        AddFiles(found.files, tree, jobs, manifest, ioDiagnostics);
        ioDiagnostics.ShowProgress("writing the manifest");
        manifest.Save(manifestPath);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(root, error.what());
    } catch (file_exception const& failure) {
        ioDiagnostics.Report(output, ReasonText(failure));
    }
}

} // namespace

Verb const kSealVerb = {
    "seal",
    "DIR [--jobs=N] [--output=FILE]",
    "writes down every file below DIR, for verify",
    "Writes a manifest of all files below DIR but itself: size, time of modification and CRC-32\n"
    "of each, as a property list. An older manifest is replaced in one step. The manifest tells\n"
    "where DIR is relative to its own directory, so the two may be moved together. Links to\n"
    "files are followed, links to directories are not entered. FIFOs, sockets, devices and\n"
    "links that lead nowhere are recorded as such, and so is what cannot be read, which is\n"
    "reported too. A file that changes while it is read is reported and left out.\n"
    "\n"
    "  --jobs=N       how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "                 processor\n"
    "  --output=FILE  the manifest, - for standard output; without it, brindle-seal.xml in DIR\n",
    {"help", "jobs=", "output="},
    Run,
};

} // namespace brindle::host
