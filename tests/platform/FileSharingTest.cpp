#include "platform/FileContent.h"
#include "platform/FileReplacement.h"
#include "platform/Files.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>

namespace brindle::platform {

namespace {

class FileSharing : public tests::InTemporaryDirectory {
protected:
    UTF16String const mPath = At("file");
};

TEST_F(FileSharing, IsRefusedOnlyToThoseWhoWouldDisturb) {
    std::pair<char const*, std::function<ErrorCode()>> const users[] = {
        {"look", [&] { return OpenForReading(mPath, Sharing::kEverybody).error; }},
        {"read", [&] { return OpenForReading(mPath).error; }},
        {"append", [&] { return AppendContent(mPath, "x", 1); }},
        {"replace", [&] { return ReplaceContent(mPath, "x", 1); }},
        {"write", [&] { return OpenForWriting(mPath).error; }},
        {"empty", [&] { return CreateEmptyFile(mPath); }},
    };
    struct Holder {
        char const* name;
        std::function<Result<OpenFile>()> open;
        int refusals; // to the last ones of the users
    };
    Holder const holders[] = {
        {"nobody", [] { return Result<OpenFile>(); }, 0},
        {"one who looks", [&] { return OpenForReading(mPath, Sharing::kEverybody); }, 0},
        {"a reader", [&] { return OpenForReading(mPath); }, 2},
        {"a writer", [&] { return OpenForWriting(mPath); }, 5},
    };
    for (auto const& holder : holders) {
        int left = static_cast<int>(std::size(users));
        for (auto const& [name, use] : users) {
            SCOPED_TRACE(std::string(holder.name) + " has it open, and somebody wants to " + name);
            Fill("file", "content");
            auto const held = holder.open();
            ASSERT_EQ(held.error, kError_None);
            EXPECT_EQ(use(), left-- > holder.refusals ? kError_None : kError_SharingViolation);
        }
    }
}

TEST_F(FileSharing, WhoMayOnlyReadKeepsNobodyOut) {
    Fill("file", "content");
    int const reader = open(Native("file").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(reader, LOCK_EX), 0);
    struct flock wholeFile {};
    wholeFile.l_type = F_RDLCK;
    ASSERT_EQ(fcntl(reader, F_OFD_SETLK, &wholeFile), 0);

    EXPECT_EQ(OpenForReading(mPath).error, kError_None);
    EXPECT_EQ(AppendContent(mPath, "!", 1), kError_None) << "it does not wait for a reader";
    EXPECT_EQ(ContentOf("file"), "content!");
    EXPECT_EQ(ReplaceContent(mPath, "new", 3), kError_None);
    EXPECT_EQ(ContentOf("file"), "new");
    close(reader);
}

TEST_F(FileSharing, EveryAppendedLineArrivesWhole) {
    constexpr int kLines = 200;
    constexpr unsigned kWriters = 4;
    std::string const line = std::string(99, 'l') + '\n';
    std::string const tooMuch(kLines * kWriters * line.size() + 1, 't');
    tests::FileSizeLimit const limit(tooMuch.size() - 1);
    Fill("file", "");
    tests::InThreads(kWriters + 2, [&](unsigned inThread) {
        for (int i = 0; i < kLines; ++i) {
            if (inThread < kWriters) {
                EXPECT_EQ(AppendContent(mPath, line.data(), line.size()), kError_None);
            } else if (inThread == kWriters) { // fills the file, fails, and takes it all back
                EXPECT_EQ(AppendContent(mPath, tooMuch.data(), tooMuch.size()),
                          kError_FileTooLarge);
            } else {
                EXPECT_EQ(OpenForReading(mPath).error, kError_None);
            }
        }
    });
    auto const content = ContentOf("file");
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), kWriters * kLines);
    EXPECT_EQ(std::count(content.begin(), content.end(), 't'), 0);
}

TEST_F(FileSharing, ANewVersionIsSeenOnlyAsAWhole) {
    Fill("file", "old");
    std::filesystem::permissions(Native("file"), std::filesystem::perms(0600));
    auto begun = FileReplacement::Begin(mPath);
    ASSERT_EQ(begun.error, kError_None);
    EXPECT_EQ(begun.value.Write("new", 3), kError_None);
    EXPECT_EQ(begun.value.SetPosition(5), kError_None);
    EXPECT_EQ(begun.value.Write("!", 1), kError_None);
    EXPECT_EQ(begun.value.Size().value, 6U);
    EXPECT_EQ(ContentOf("file"), "old");
    int const nameless = open(Native("").c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    EXPECT_EQ(EntryCount(), nameless >= 0 ? 1 : 2) << "without a name, a kill leaves nothing";
    close(nameless);
    {
        auto const writer = OpenForWriting(mPath);
        EXPECT_EQ(begun.value.CheckTarget(), kError_SharingViolation);
    }
    EXPECT_EQ(begun.value.Commit(), kError_None);
    EXPECT_EQ(ContentOf("file"), std::string("new\0\0!", 6));
    EXPECT_EQ(std::filesystem::status(Native("file")).permissions(), std::filesystem::perms(0600));

    auto fromPrivate = FileReplacement::Begin(At("copy"), mPath);
    ASSERT_EQ(fromPrivate.error, kError_None);
    EXPECT_EQ(fromPrivate.value.Commit(), kError_None);
    EXPECT_EQ(std::filesystem::status(Native("copy")).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(EntryCount(), 2);
}

} // namespace

} // namespace brindle::platform
