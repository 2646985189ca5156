#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileSum.h>
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
    for (std::size_t const size : {0u, 1u, 65535u, 65536u, 200'000u}) {
        SCOPED_TRACE(size);
        std::string const content(size, 'x');
        Fill("file", content);
        EXPECT_EQ(ReadBack(FileAt("file"), size), content);
        EXPECT_EQ(ReadBack(FileAt("file"), ~std::size_t{}), content);
        if (size != 0) {
            EXPECT_THROW(ReadBack(FileAt("file"), size - 1), file_exception);
        }
    }
    File const unsized(tests::Wide("/proc/version"));
    EXPECT_EQ(ReadBack(unsized, 10'000), ContentOf("/proc/version"));
    EXPECT_THROW(ReadBack(FileAt("missing"), 1), file_not_found_exception);
    EXPECT_THROW(ReadBack(FileAt(""), 1), file_exception);
}

TEST_F(WholeFiles, AreReplacedInOneStepOrNotAtAll) {
    WriteFile(FileAt("file"), "from a literal");
    EXPECT_EQ(ContentOf("file"), "from a literal");
    WriteFile(FileAt("file"), std::vector<std::uint8_t>{'o', 'l', 'd'});
    {
        tests::FileSizeLimit const limit(4);
        EXPECT_THROW(WriteFile(FileAt("file"), std::string(10, 'n')), file_exception);
    }
    EXPECT_EQ(ContentOf("file"), "old");
    EXPECT_THROW(WriteFile(FileAt("missing/file"), ""), create_exception);
}

TEST_F(WholeFiles, AreSummedInAnyNumberOfBlocks) {
    Fill("digits", "123456789");
    EXPECT_EQ(SumOf(FileAt("digits")), 0xCBF43926u); // the published check value
    Fill("zeros", std::string(1 << 20, '\0'));
    EXPECT_EQ(SumOf(FileAt("zeros")), 0xA738EA1Cu); // zlib's
    Fill("empty", "");
    EXPECT_EQ(SumOf(FileAt("empty")), 0u);
    EXPECT_THROW(static_cast<void>(SumOf(FileAt("digits"), [](auto...) { throw 7; })), int);
    EXPECT_THROW(static_cast<void>(SumOf(FileAt("missing"))), file_not_found_exception);
}

TEST_F(WholeFiles, RemainsOfKilledSavesAreRemovedAndNothingElse) {
    // They look like the files of saves, but are none; the empty one may be written at any moment.
    Fill("report.2023.11.xml", "x");
    Fill("a.1.12", "x");
    Fill(".brindle-0123456789abcdeg", "x");
    Fill(".brindle-0123456789abcdef", "");
    fs::create_symlink("a.1.12", Native(".brindle-0000000000000000"));
    {
        SafeSave save(FileAt("taken.5.51.xml"));
        std::ofstream(NativePath(save.GetTempFile())) << "x";
        save.Commit();
    }
    auto const before = EntryCount();

    SafeSave live(FileAt("live.xml"));
    live.GetTempFile();
    EXPECT_EQ(SafeSave::RemoveAbandoned(mDir), 0u);
    EXPECT_TRUE(live.GetTempFile().Exists());
    EXPECT_EQ(EntryCount(), before + 1);

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
    int unrecognised = 0;
    int removed = 0;
    bool hasHappened = true;
    for (int call = 1; hasHappened; ++call) {
        SCOPED_TRACE(call);
        Fill("file.xml", "old");
        hasHappened =
            tests::RunWithFault(work, {tests::SystemCallFault::kKillAfter, 0, call}).hasHappened;
        auto const content = ContentOf("file.xml");
        EXPECT_TRUE(content == "old" || content == "new");
        removed += static_cast<int>(SafeSave::RemoveAbandoned(mDir));
        unrecognised += EntryCount() == 1 ? 0 : 1;
        for (auto const& entry : fs::directory_iterator(Native(""))) {
            if (entry.path().filename() != "file.xml") {
                fs::remove(entry);
            }
        }
    }
    EXPECT_LT(2 * unrecognised, removed)
        << "only before the file is marked, and at the moment before it takes its place";
}

} // namespace

} // namespace brindle::filesupport
