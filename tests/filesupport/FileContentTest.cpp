#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/utility/TextConversions.h>

#include <set>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;

class WholeFiles : public tests::InTemporaryDirectory {
protected:
    File FileAt(std::string const& inName) const { return File(At(inName)); }
    std::string ReadBack(File const& inFile, std::size_t inLimit) const {
        auto const bytes = ReadFile(inFile, inLimit);
        return {bytes.begin(), bytes.end()};
    }
    Dir const mDir{mTemporary.Path()};
};

TEST_F(WholeFiles, AreReadUpToALimitWhateverTheirSizeIsSaidToBe) {
    for (std::size_t const size : {1u, 65535u, 65536u, 200'000u}) {
        SCOPED_TRACE(size);
        std::string const content(size, 'x');
        Fill("file", content);
        EXPECT_EQ(ReadBack(FileAt("file"), size), content);
        EXPECT_EQ(ReadBack(FileAt("file"), ~std::size_t{}), content);
        EXPECT_THROW(ReadBack(FileAt("file"), size - 1), file_exception);
    }
    Fill("file", "");
    EXPECT_EQ(ReadBack(FileAt("file"), 0), "");
    File const unsized(tests::Wide("/proc/version"));
    EXPECT_EQ(ReadBack(unsized, 10'000), ContentOf("/proc/version"));
    EXPECT_THROW(ReadBack(FileAt("missing"), 1), file_not_found_exception);
}

TEST_F(WholeFiles, AreReplacedInOneStepOrNotAtAll) {
    tests::FileSizeLimit const limit(4);
    WriteFile(FileAt("file"), "text");
    EXPECT_EQ(ContentOf("file"), "text");
    WriteFile(FileAt("file"), std::vector<std::uint8_t>{'o', 'l', 'd'});
    EXPECT_THROW(WriteFile(FileAt("file"), std::string(10, 'n')), file_exception);
    EXPECT_EQ(ContentOf("file"), "old");
    EXPECT_THROW(WriteFile(FileAt("missing/file"), ""), create_exception);
}

TEST_F(WholeFiles, RemainsOfKilledSavesAreRemovedAndNothingElse) {
    // They look like the files of saves, but are none; the empty one may be written at any moment.
    Fill("report.2023.11.xml", "x");
    Fill("a.1.12", "x");
    Fill(".brindle-0123456789abcdeg", "x");
    Fill(".brindle-0123456789abcdef", "");
    fs::create_symlink("a.1.12", Native(".brindle-0000000000000000"));
    SafeSave committed(FileAt("taken.5.51.xml")), live(FileAt("live.xml"));
    std::ofstream(NativePath(committed.GetTempFile())) << "x";
    committed.Commit();
    live.GetTempFile();
    EXPECT_EQ(SafeSave::RemoveAbandoned(mDir), 0u);
    EXPECT_EQ(EntryCount(), 7);

    WalkOptions options;
    options.leaveOutSaves = true;
    std::set<std::string> walked;
    for (RecursiveFileIterator file(mDir, options), end; file != end; ++file) {
        walked.insert(utility::ToStd((*file).GetName()));
    }
    EXPECT_EQ(walked, (std::set<std::string>{"report.2023.11.xml", "a.1.12", "taken.5.51.xml",
                                             ".brindle-0123456789abcdeg"}));
    EXPECT_THROW(SafeSave::RemoveAbandoned(Dir(At("missing"))), dir_exception);
}

TEST_F(WholeFiles, WhateverCallASaveIsKilledAtItsRemainsAreRecognised) {
    auto const work = [this] {
        SafeSave save(FileAt("file.xml"));
        std::ofstream(NativePath(save.GetTempFile())) << "new";
        save.Commit();
        return 0;
    };
    std::size_t unrecognised = 0, removed = 0;
    bool hasHappened = true;
    for (int call = 1; hasHappened; ++call) {
        SCOPED_TRACE(call);
        Fill("file.xml", "old");
        hasHappened =
            tests::RunWithFault(work, {tests::SystemCallFault::kKillAfter, 0, call}).hasHappened;
        auto const content = ContentOf("file.xml");
        EXPECT_TRUE(content == "old" || content == "new");
        removed += SafeSave::RemoveAbandoned(mDir);
        unrecognised += EntryCount() == 1 ? 0u : 1u;
        for (auto const& entry : fs::directory_iterator(Native(""))) {
            fs::remove(entry);
        }
    }
    EXPECT_LT(2 * unrecognised, removed)
        << "only before the file is marked, and at the moment before it takes its place";
}

} // namespace

} // namespace brindle::filesupport
