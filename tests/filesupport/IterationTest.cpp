#include "tests/TemporaryDirectory.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <unistd.h>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;
using Names = std::multiset<std::string>;

class Iteration : public testing::Test {
protected:
    void MakeFile(std::string const& inName) {
        fs::create_directories(fs::path(mTemporary.Native(inName)).parent_path());
        std::ofstream(mTemporary.Native(inName)) << inName;
    }

    /// A path without the temporary directory's own.
    std::string Relative(std::string const& inNative) {
        return inNative.substr(std::min(inNative.size(), mTemporary.Native().size() + 1));
    }

    template <typename Iterator>
    Names Listed(Iterator inBegin, Iterator const& inEnd) {
        Names names;
        for (; inBegin != inEnd; ++inBegin) {
            names.insert(Relative(NativePath(*inBegin)));
        }
        return names;
    }

    Names Walked(bool inResolveAliases) {
        return Listed(RecursiveFileIterator(mDir, inResolveAliases), RecursiveFileIterator());
    }

    tests::TemporaryDirectory mTemporary;
    Dir mDir{mTemporary.Path()};
};

TEST_F(Iteration, ListsFilesAndDirectoriesApartWithEverythingOdd) {
    std::string const longName(255, 'n');
    for (std::string const name :
         {"a", ".hidden", "sub/b", "new\nline", "back\\slash", "\xFF\xC3"}) {
        MakeFile(name);
    }
    MakeFile(longName);
    fs::create_directory_symlink("sub", mTemporary.Native("link"));
    fs::create_symlink("nowhere", mTemporary.Native("dangling"));
    EXPECT_EQ((Names{"a", ".hidden", "new\nline", "back\\slash", "\xFF\xC3", longName, "dangling"}),
              Listed(mDir.BeginFiles(false), mDir.EndFiles()));
    EXPECT_EQ((Names{"sub", "link"}), Listed(mDir.BeginSubdirs(false), mDir.EndSubdirs()));
    Dir const missing(mDir, u"missing"_utf16);
    EXPECT_EQ(missing.EndFiles(), missing.BeginFiles(false));
    EXPECT_EQ(missing.EndSubdirs(), missing.BeginSubdirs(true));
}

TEST_F(Iteration, ASnapshotKeepsItsPlacesWhateverHappens) {
    for (std::string const name : {"a", "b", "c"}) {
        MakeFile(name);
    }
    auto file = mDir.BeginFiles(false);
    EXPECT_EQ(mDir.BeginFiles(false), file);
    EXPECT_NE(mDir.BeginFiles(true), file);
    auto const before = file++;
    EXPECT_NE(before, file);
    File const first = *before;
    for (auto each = mDir.BeginFiles(false); each != mDir.EndFiles(); ++each) {
        (*each).Delete();
    }
    EXPECT_EQ(first, *before);
    ++file;
    ++file;
    EXPECT_EQ(mDir.EndFiles(), file);
    EXPECT_EQ(File(), *file) << "the end holds nothing";
    ++file;
    EXPECT_EQ(mDir.EndFiles(), file) << "and stays the end";
    EXPECT_EQ(Dir::FileIterator(), Dir::FileIterator());
    EXPECT_NE(Dir::FileIterator(), file) << "an iterator without a listing is of another kind";
}

TEST_F(Iteration, ShortcutsStandForTheirTargets) {
    MakeFile("target");
    MakeFile("sub/b");
    CreateShortCut(File(mDir, u"file.lnk"_utf16), File(mDir, u"target"_utf16));
    CreateShortCut(File(mDir, u"dir.lnk"_utf16), Dir(mDir, u"sub"_utf16));
    CreateShortCut(File(mDir, u"upper.LNK"_utf16), File(mDir, u"target"_utf16));
    CreateShortCut(File(mDir, u"broken.lnk"_utf16), File(mDir, u"gone"_utf16));
    EXPECT_EQ((Names{"target", "target", "upper.LNK"}),
              Listed(mDir.BeginFiles(true), mDir.EndFiles()));
    EXPECT_EQ((Names{"sub", "sub"}), Listed(mDir.BeginSubdirs(true), mDir.EndSubdirs()));
    EXPECT_EQ((Names{"target", "upper.LNK", "file.lnk", "dir.lnk", "broken.lnk"}),
              Listed(mDir.BeginFiles(false), mDir.EndFiles()));
}

TEST_F(Iteration, AWalkGoesThroughFilesFirstAndThenDown) {
    EXPECT_EQ(RecursiveFileIterator(), RecursiveFileIterator(mDir, false)) << "an empty tree";
    fs::create_directories(mTemporary.Native("empty/empty"));
    MakeFile("sub/deep/d");
    RecursiveFileIterator walk(mDir, false);
    EXPECT_EQ("sub/deep/d", Relative(NativePath(*walk)));
    EXPECT_EQ("sub/deep", Relative(NativePath(walk.CurrentDir())));
    MakeFile("sub/c");
    MakeFile("top");

    walk = RecursiveFileIterator(mDir, false);
    EXPECT_EQ(RecursiveFileIterator(mDir, false), walk);
    EXPECT_NE(RecursiveFileIterator(mDir, true), walk);
    std::vector<std::string> order;
    while (walk != RecursiveFileIterator()) {
        order.push_back(Relative(NativePath(*walk++)));
    }
    EXPECT_EQ((std::vector<std::string>{"top", "sub/c", "sub/deep/d"}), order);
    EXPECT_EQ(File(), *walk);
    EXPECT_EQ(Dir(), walk.CurrentDir());
}

TEST_F(Iteration, AWalkStaysInTheTreeAndEnds) {
    tests::TemporaryDirectory outside;
    std::ofstream(outside.Native("foreign")) << "x";
    MakeFile("a/x");
    MakeFile("b/y");
    fs::create_directory_symlink("..", mTemporary.Native("a/up"));
    fs::create_directory_symlink("../b", mTemporary.Native("a/across"));
    fs::create_directory_symlink(outside.Native(), mTemporary.Native("out"));
    fs::create_symlink("loop", mTemporary.Native("loop"));
    EXPECT_EQ((Names{"a/x", "b/y", "loop"}), Walked(false));

    CreateShortCut(File(mDir, u"b\\circle.lnk"_utf16), mDir);
    CreateShortCut(File(mDir, u"b\\self.lnk"_utf16), Dir(mDir, u"b"_utf16));
    CreateShortCut(File(mDir, u"b\\a.lnk"_utf16), Dir(mDir, u"a"_utf16));
    EXPECT_EQ((Names{"a/x", "a/x", "b/y", "loop"}), Walked(true));
}

TEST_F(Iteration, AWalkTellsWhichDirectoriesCannotBeRead) {
    MakeFile("a/x");
    std::vector<Dir> unreadable;
    Dir const missing(mDir, u"missing"_utf16);
    RecursiveFileIterator const walk(missing, false,
                                     [&](Dir const& inDir) { unreadable.push_back(inDir); });
    EXPECT_EQ(RecursiveFileIterator(), walk);
    EXPECT_EQ(std::vector<Dir>{missing}, unreadable);

    fs::permissions(mTemporary.Native("a"), fs::perms::none);
    if (::geteuid() != 0) {
        unreadable.clear();
        RecursiveFileIterator(mDir, false, [&](Dir const& inDir) { unreadable.push_back(inDir); });
        EXPECT_EQ(std::vector<Dir>{Dir(mDir, u"a"_utf16)}, unreadable);
    }
    fs::permissions(mTemporary.Native("a"), fs::perms::all);
}

TEST_F(Iteration, DeletingATreeRemovesLinksAndSparesTheirTargets) {
    tests::TemporaryDirectory outside;
    std::ofstream(outside.Native("foreign")) << "x";
    MakeFile("tree/a/x");
    fs::create_directory_symlink(outside.Native(), mTemporary.Native("tree/out"));
    fs::create_directory_symlink("..", mTemporary.Native("tree/a/up"));
    fs::create_symlink("nowhere", mTemporary.Native("tree/dangling"));
    fs::create_directory_symlink("tree", mTemporary.Native("link"));

    Dir(mDir, u"link"_utf16).Delete();
    EXPECT_TRUE(fs::exists(mTemporary.Native("tree/a/x"))) << "a link goes without its target";
    EXPECT_FALSE(fs::exists(fs::symlink_status(mTemporary.Native("link"))));
    Dir(mDir, u"tree"_utf16).Delete();
    EXPECT_FALSE(fs::exists(mTemporary.Native("tree")));
    EXPECT_TRUE(fs::exists(outside.Native("foreign")));
}

TEST_F(Iteration, NoTreeIsTooDeep) {
    constexpr int kDepth =
        1000; // with these names the path is far longer than the kernel takes at once
    Dir dir(mDir, u"deep"_utf16);
    for (int i = 0; i < kDepth; ++i) {
        dir.Create();
        dir = Dir(dir, u"0123456789"_utf16);
    }
    File const file(dir.Parent(), u"bottom"_utf16);
    file.Create();
    RecursiveFileIterator const walk(mDir, false);
    EXPECT_EQ(file, *walk);
    Dir(mDir, u"deep"_utf16).Delete();
    EXPECT_EQ(mDir.EndSubdirs(), mDir.BeginSubdirs(false));
}

TEST_F(Iteration, VolumesAreTheRootAndWhatIsMapped) {
    MapVolume('Q', mDir);
    EXPECT_EQ((std::vector<std::string>{"/", mTemporary.Native()}), [] {
        std::vector<std::string> roots;
        for (auto volume = Dir::BeginVolumes(); volume != Dir::EndVolumes(); ++volume) {
            roots.push_back(NativePath(*volume));
        }
        return roots;
    }());
    EXPECT_EQ(Dir(u"C:"_utf16), *Dir::BeginVolumes());
    MapVolume('Q', Dir());
}

} // namespace

} // namespace brindle::filesupport
