#include "host/verbs/Verbs.h"

#include "host/files/FileErrors.h"
#include "host/files/RunInOrder.h"
#include "host/files/SumInOrder.h"
#include "host/seal/Manifest.h"
#include "host/seal/SealedTree.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>

#include <array>
#include <utility>

namespace brindle::host {

namespace {

using namespace filesupport;

constexpr char kManifestName[] = "/brindle-seal.xml";

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

/// Sums the files and enters them into the manifest.
void AddFiles(std::vector<std::string> inPaths, SealedTree const& inTree, std::uint32_t inJobs,
              NewManifest& ioManifest, Diagnostics& ioDiagnostics) {
    std::array<std::uint64_t, kMostAhead> modified{};
    auto const sum = [&](std::size_t inIndex) {
        return SteadySumOf(inTree.FileAt(inPaths[inIndex]), modified[inIndex % kMostAhead]);
    };
    auto const add = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        std::string const& path = inPaths[inIndex];
        if (inOutcome.failure.empty()) {
            ioManifest.Add(path, inOutcome.sum, modified[inIndex % kMostAhead]);
        } else {
            ioDiagnostics.Report(inTree.NativePathOf(path), inOutcome.failure);
        }
    };
    SumInOrder(inPaths.size(), inJobs, ioDiagnostics, sum, add);
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("seal needs one DIR");
    }
    std::uint32_t const jobs = Jobs(inArguments);
    std::string const& root = inArguments.Operands()[0];
    std::string const output = inArguments.Text("output", root + kManifestName);
    if (output.empty()) {
        throw usage_error("--output needs a FILE");
    }
    // If the path is a link, the file that it leads to is written.
    std::string const manifestPath = PathWithoutLinks(output);
    try {
        SealedTree const tree(root, manifestPath);
        std::string const objection = Objection(manifestPath);
        if (!objection.empty()) {
            return ioDiagnostics.Report(output, objection);
        }
        FoundFiles found = tree.Find(ioDiagnostics);
        if (found.files.empty() && !found.unreadableDirs.empty()) {
            return; // this has been reported, and an older manifest is worth more than an empty one
        }
        NewManifest manifest(tree.RootForManifest());
        AddFiles(std::move(found.files), tree, jobs, manifest, ioDiagnostics);
        ioDiagnostics.ShowProgress("writing " + output);
        File file = FileFromNative(manifestPath);
        manifest.Save(file);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(root, error.what());
    } catch (file_exception const&) {
        ioDiagnostics.Report(output, "cannot be written");
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
    "files are followed, links to directories are not entered. What cannot be read, changes\n"
    "while it is read, or is a FIFO, socket or device is reported and left out.\n"
    "\n"
    "  --jobs=N       how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "                 processor\n"
    "  --output=FILE  the manifest; without it, brindle-seal.xml in DIR\n",
    {"help", "jobs=", "output="},
    Run,
};

} // namespace brindle::host
