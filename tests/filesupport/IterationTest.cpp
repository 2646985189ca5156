#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/Listings.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PathStreams.h>
#include <brindle/utility/Streams.h>
#include <brindle/utility/TextConversions.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <set>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;
using Names = std::multiset<std::string>;

class Iteration : public tests::InTemporaryDirectory {
protected:
    void MakeFile(std::string const& inName) {
        fs::create_directories(fs::path(Native(inName)).parent_path());
        Fill(inName, inName);
    }

    Dir DirAt(std::string const& inName) const { return Dir(At(inName)); }

    /// The rest of a path behind the temporary directory.
    template <typename Path>
    std::string Relative(Path const& inPath) {
        return NativePath(inPath).substr(Native("").size());
    }

    template <typename Iterator>
    Names Listed(Iterator inBegin, Iterator const& inEnd) {
        Names names;
        for (; inBegin != inEnd; ++inBegin) {
            names.insert(Relative(*inBegin));
        }
        return names;
    }

    Names Walked(bool inResolveAliases) {
        return Listed(RecursiveFileIterator(mDir, inResolveAliases), RecursiveFileIterator());
    }

    tests::TemporaryDirectory mOutside;
    Dir mDir{mTemporary.Path()};
};

TEST_F(Iteration, ListsFilesAndDirectoriesApartAndShortcutsAsTheirTargets) {
    MakeFile("sub/b");
    MakeFile(".hidden");
    fs::create_directory_symlink("sub", Native("link"));
    fs::create_symlink("nowhere", Native("dangling"));
    CreateShortCut(File(At("file.lnk")), File(At(".hidden")));
    CreateShortCut(File(At("dir.lnk")), DirAt("sub"));
    CreateShortCut(File(At("upper.LNK")), File(At(".hidden")));
    CreateShortCut(File(At("broken.lnk")), File(At("gone")));
    EXPECT_EQ(Listed(mDir.BeginFiles(false), mDir.EndFiles()),
              (Names{".hidden", "dangling", "upper.LNK", "file.lnk", "dir.lnk", "broken.lnk"}));
    EXPECT_EQ(Listed(mDir.BeginFiles(true), mDir.EndFiles()),
              (Names{".hidden", ".hidden", "dangling", "upper.LNK"}));
    EXPECT_EQ(Listed(mDir.BeginSubdirs(false), mDir.EndSubdirs()), (Names{"sub", "link"}));
    EXPECT_EQ(Listed(mDir.BeginSubdirs(true), mDir.EndSubdirs()), (Names{"sub", "sub", "link"}));
    EXPECT_EQ(DirAt("missing").BeginFiles(false), mDir.EndFiles());
    EXPECT_EQ(DirAt("missing").BeginSubdirs(true), mDir.EndSubdirs());
}

TEST_F(Iteration, ListingsAreRangesForLoopsAndAlgorithms) {
    MakeFile("a");
    MakeFile("sub/bb");
    Names files;
    for (File const& file : Files(mDir)) {
        files.insert(Relative(file));
    }
    EXPECT_EQ(files, (Names{"a"}));
    auto const subdirs = Subdirs(mDir);
    EXPECT_EQ(Names({Relative(*subdirs.begin())}), (Names{"sub"}));
    EXPECT_EQ(std::distance(Volumes().begin(), Volumes().end()),
              std::distance(Dir::BeginVolumes(), Dir::EndVolumes()));
    EXPECT_TRUE(Files(DirAt("missing")).empty());
    auto const below = FilesBelow(mDir);
    std::vector<File> const all(below.begin(), below.end());
    auto const larger = std::find_if(below.begin(), below.end(),
                                     [](File const& inFile) { return inFile.Size() == 6; });
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(larger->GetName(), u"bb"_utf16);
    EXPECT_GE(all[0], std::min(all[0], all[1]));
    EXPECT_FALSE(all[0] > all[0] || all[0] < all[0]);

    std::ostringstream narrow;
    narrow << all[0];
    EXPECT_EQ(utility::Utf16(narrow.str()), all[0].FullPath());
    oUTF16StringStream wide;
    wide << mDir << all[1];
    EXPECT_EQ(wide.str(), mDir.FullPath() + all[1].FullPath());
}

TEST_F(Iteration, ASnapshotKeepsItsPlacesWhateverHappens) {
    MakeFile("a");
    MakeFile("b");
    auto file = mDir.BeginFiles(false);
    EXPECT_EQ(mDir.BeginFiles(false), file);
    EXPECT_NE(mDir.BeginFiles(true), file);
    auto const before = file++;
    EXPECT_NE(before, file);
    fs::remove(Native("a"));
    fs::remove(Native("b"));
    EXPECT_NE(file, mDir.EndFiles());
    EXPECT_EQ(++file, mDir.EndFiles());
    EXPECT_EQ(++file, mDir.EndFiles()) << "one beyond the end";
    EXPECT_EQ(*file, File()) << "the end holds nothing";
    EXPECT_NE(Dir::FileIterator(), file) << "an iterator without a listing is of another kind";
}

TEST_F(Iteration, AWalkGoesThroughFilesFirstAndThenDown) {
    EXPECT_EQ(RecursiveFileIterator(mDir, false), RecursiveFileIterator()) << "an empty tree";
    fs::create_directories(mTemporary.Native("empty/empty"));
    MakeFile("sub/deep/d");
    MakeFile("sub/c");
    RecursiveFileIterator walk(mDir, false);
    EXPECT_EQ(walk, RecursiveFileIterator(mDir, false));
    EXPECT_NE(walk, RecursiveFileIterator(mDir, true));
    EXPECT_EQ(Relative(walk.CurrentDir()), "sub");
    EXPECT_EQ(Relative(*walk++), "sub/c");
    EXPECT_EQ(Relative(*walk++), "sub/deep/d");
    EXPECT_EQ(walk, RecursiveFileIterator());
    EXPECT_EQ(*walk, File());
    EXPECT_EQ(walk.CurrentDir(), Dir());
}

TEST_F(Iteration, AWalkAndADeletionStayInTheTreeAndEnd) {
    std::ofstream(mOutside.Native("foreign")) << "x";
    MakeFile("a/x");
    MakeFile("b/y");
    fs::create_directory_symlink("..", Native("a/up"));
    fs::create_directory_symlink("../b", Native("a/across"));
    fs::create_directory_symlink(mOutside.Native(), Native("a/out"));
    fs::create_directory_symlink("a", Native("link"));
    fs::create_symlink("loop", Native("a/loop"));
    EXPECT_EQ(Walked(false), (Names{"a/x", "a/loop", "b/y"}));

    CreateShortCut(File(At("b/circle.lnk")), mDir);
    CreateShortCut(File(At("b/self.lnk")), DirAt("b"));
    CreateShortCut(File(At("b/a.lnk")), DirAt("a"));
    EXPECT_EQ(Walked(true), (Names{"a/x", "a/x", "a/loop", "a/loop", "b/y"}));
    DirAt("link").Delete();
    EXPECT_TRUE(DirAt("a").Exists());
    DirAt("a").Delete();
    EXPECT_EQ(Walked(true), Names{"b/y"});
    EXPECT_EQ(EntryCount(), 1);
    EXPECT_TRUE(fs::exists(mOutside.Native("foreign")));
}

TEST_F(Iteration, AWalkTellsWhichDirectoriesCannotBeRead) {
    MakeFile("a/x");
    fs::permissions(Native("a"), fs::perms::none);
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    for (bool const resolveAliases : {false, true}) {
        std::vector<Dir> unreadable;
        auto const note = [&](Dir const& inDir) { unreadable.push_back(inDir); };
        RecursiveFileIterator(mDir, resolveAliases, note);
        RecursiveFileIterator(DirAt("missing"), resolveAliases, note);
        EXPECT_EQ(unreadable, (std::vector<Dir>{DirAt("a"), DirAt("missing")}));
    }
    std::error_code ignored;
    fs::permissions(Native("a"), fs::perms::all, ignored);
}

TEST_F(Iteration, AWalkTellsOfLinksAndEmptyDirectoriesIfAsked) {
    MakeFile("full/x");
    fs::create_directories(Native("hollow/empty"));
    fs::create_directory_symlink("../full", Native("hollow/link"));
    MakeFile("saves/.brindle-0123456789abcdef");
    Names links, empty;
    WalkOptions options;
    options.onDirLink = [&](Dir const& inDir) { links.insert(Relative(inDir)); };
    options.onEmptyDir = [&](Dir const& inDir) { empty.insert(Relative(inDir)); };
    EXPECT_EQ(Listed(RecursiveFileIterator(mDir, options), RecursiveFileIterator()),
              (Names{"full/x", "saves/.brindle-0123456789abcdef"}));
    EXPECT_EQ(links, Names{"hollow/link"});
    EXPECT_EQ(empty, Names{"hollow/empty"});
    options.leaveOutSaves = true;
    EXPECT_EQ(Listed(RecursiveFileIterator(mDir, options), RecursiveFileIterator()),
              Names{"full/x"});
    EXPECT_EQ(empty.count("saves"), 1u);
}

TEST_F(Iteration, DeletingStaysInTheTreeWhateverIsExchangedInIt) {
    // Before each system call somebody exchanges a directory of the tree for a link that leads out
    // of it, or moves one out of it, to where a directory has the name of its neighbour.
    using Fault = tests::SystemCallFault;
    std::string const precious[] = {"precious", "b/c/precious", "beside b/b/c/precious",
                                    "beside c/c/precious"};
    for (auto const& name : precious) {
        fs::create_directories(fs::path(mOutside.Native(name)).parent_path());
        std::ofstream(mOutside.Native(name)) << "x";
    }
    // What is disturbed, and where it is moved to; what is not moved is exchanged.
    std::pair<std::string, std::string> const disturbances[] = {{"tree", ""},
                                                                {"tree/a", ""},
                                                                {"tree/a/b", ""},
                                                                {"tree/a/b", "beside c/moved"},
                                                                {"tree/a/c", "beside b/moved"}};
    auto const deleteTree = [&] {
        try {
            DirAt("tree").Delete();
            return 0;
        } catch (std::exception const&) {
            return 1;
        }
    };
    for (auto const& [disturbed, movedTo] : disturbances) {
        auto const disturb = [&, name = Native(disturbed), target = mOutside.Native(movedTo)] {
            if (target == mOutside.Native("")) {
                fs::create_directory_symlink(mOutside.Native(), Native("link"));
                renameat2(AT_FDCWD, Native("link").c_str(), AT_FDCWD, name.c_str(),
                          RENAME_EXCHANGE);
            } else {
                std::rename(name.c_str(), target.c_str());
            }
        };
        for (Fault fault{Fault::kActBefore, 0, 1, disturb};; ++fault.call) {
            SCOPED_TRACE(disturbed + " " + movedTo + " before " + std::to_string(fault.call));
            MakeFile("tree/a/b/c/precious");
            MakeFile("tree/a/c/precious");
            MakeFile("tree/a/precious");
            auto const run = tests::RunWithFault(deleteTree, fault);
            for (auto const& name : precious) {
                ASSERT_TRUE(fs::exists(mOutside.Native(name))) << name;
            }
            if (!run.hasHappened) {
                EXPECT_EQ(run.status, 0);
                EXPECT_FALSE(fs::exists(Native("tree")));
                break;
            }
            for (auto const& left :
                 {Native("tree"), Native("link"), mOutside.Native("beside b/moved"),
                  mOutside.Native("beside c/moved")}) {
                fs::remove_all(left);
            }
        }
    }
}

TEST_F(Iteration, AWalkStaysInTheTreeWhateverIsExchangedInIt) {
    std::ofstream(mOutside.Native("foreign")) << "x";
    fs::create_directory(mOutside.Native("b"));
    std::ofstream(mOutside.Native("b/foreign")) << "x";
    for (std::string const name : {"a/b", "a"}) {
        MakeFile("a/x");
        MakeFile("a/b/y");
        RecursiveFileIterator walk(mDir, false); // has listed "a", and not "a/b"
        fs::rename(Native(name), Native("moved"));
        fs::create_directory_symlink(mOutside.Native(), Native(name));
        EXPECT_EQ(Relative(*walk), "a/x");
        EXPECT_EQ(++walk, RecursiveFileIterator());
        fs::remove(Native(name));
        fs::remove_all(Native("moved"));
    }
    MakeFile("c/z");
    MakeFile("d/y");
    MakeFile("x");
    RecursiveFileIterator walk(mDir, false); // has listed "c" and "d"
    fs::rename(Native("d"), mOutside.Native("d"));
    fs::create_directory_symlink("c", Native("d"));
    EXPECT_EQ(Listed(walk, RecursiveFileIterator()), (Names{"x", "c/z"})) << "no file twice";
}

TEST_F(Iteration, WhatCannotBeDeletedIsNamed) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    MakeFile("tree/a/file");
    fs::permissions(Native("tree/a"), fs::perms(0500));
    auto const failedPath = [&] {
        try {
            DirAt("tree").Delete();
        } catch (config::FileFailure const& failure) {
            return failure.Path();
        }
        return UTF16String();
    };
    EXPECT_EQ(failedPath(), At("tree\\a\\file"));
    fs::permissions(Native("tree/a"), fs::perms(0));
    EXPECT_EQ(failedPath(), At("tree\\a"));
    fs::permissions(Native("tree/a"), fs::perms(0700));
    DirAt("tree").Delete();
    EXPECT_FALSE(fs::exists(Native("tree")));
}

TEST_F(Iteration, NoTreeIsTooDeep) {
    Dir dir = DirAt("deep");
    for (int i = 0; i < 1000; ++i) { // far longer than the kernel takes at once
        dir.Create();
        dir = Dir(dir, u"0123456789"_utf16);
    }
    File const file(dir.Parent(), u"bottom"_utf16);
    file.Create();
    EXPECT_EQ(*RecursiveFileIterator(mDir, false), file);
    DirAt("deep").Delete();
    EXPECT_TRUE(fs::is_empty(Native("")));
}

} // namespace

} // namespace brindle::filesupport
