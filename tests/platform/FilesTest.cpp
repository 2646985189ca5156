#include "platform/Files.h"
#include "platform/Directories.h"

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <limits>
#include <map>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::platform {

namespace {

using tests::TemporaryDirectory;

std::string ContentOf(std::string const& inNativePath) {
    std::ifstream file(inNativePath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void Fill(std::string const& inNativePath, std::string const& inContent) {
    std::ofstream(inNativePath, std::ios::binary) << inContent;
}

std::size_t EntryCount(UTF16String const& inPath) {
    DirectoryScan scan(inPath);
    DirectoryEntry entry;
    std::size_t count = 0;
    while (scan.Next(entry)) {
        ++count;
    }
    return count;
}

/// A full disk: no file of this process grows beyond the limit meanwhile.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t inLimit) {
        // As a host does: the failure is to arrive as an error.
        mOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &mOld);
        rlimit const limit{inLimit, mOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &mOld);
        std::signal(SIGXFSZ, mOldHandler);
    }

private:
    rlimit mOld{};
    void (*mOldHandler)(int) = nullptr;
};

TEST(Files, EveryNameThatTheKernelHoldsWorks) {
    TemporaryDirectory const directory;
    std::string const names[] = {
        "plain",        ".hidden",      "\xFF\xFE",     "line\nbreak", "back\\slash",
        "C:x",          "C:",           "a:b*?\"<>|",   " ",           "\xEF\x81\x9C",
        "\xED\xA0\x80", "\xED\xB2\x80", "\xC3\xA9\xC3", "\\\\?\\x",    std::string(255, 'n'),
    };
    for (auto const& name : names) {
        Fill(directory.Native(name), name);
    }

    std::map<std::string, int> seen;
    DirectoryScan scan(directory.Path());
    DirectoryEntry entry;
    while (scan.Next(entry)) {
        auto const path = directory.Path(entry.name);
        auto const native = NativePath(path).value;
        auto const name = native.substr(directory.Native().size() + 1);
        ++seen[name];
        EXPECT_EQ(Inspect(path).value.size, name.size());
        EXPECT_EQ(entry.isHidden, name[0] == '.');
        EXPECT_FALSE(entry.isDirectory || entry.isSystem || entry.isLink);
        EXPECT_EQ(DeleteFile(path), kError_None);
    }
    EXPECT_EQ(scan.Error(), kError_None);
    EXPECT_EQ(seen.size(), std::size(names));
    for (auto const& name : names) {
        EXPECT_EQ(seen[name], 1) << name;
    }
    EXPECT_EQ(EntryCount(directory.Path()), 0U);
    EXPECT_EQ(CreateEmptyFile(directory.Path(UTF16String(256, 'n'))), kError_NameTooLong);
}

TEST(Files, EveryKindIsToldAndOnlyRegularFilesAreOpened) {
    TemporaryDirectory const directory;
    Fill(directory.Native("file"), "12345");
    ASSERT_EQ(mkdir(directory.Native("dir").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(directory.Native("fifo").c_str(), 0600), 0);
    int const socketHandle = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    directory.Native("sock").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socketHandle, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(socketHandle);
    for (auto const* name : {"file", "dir", "fifo", "sock", "none"}) {
        ASSERT_EQ(symlink(name, directory.Native(std::string("to-") + name).c_str()), 0);
    }
    ASSERT_EQ(symlink("/dev/null", directory.Native("to-null").c_str()), 0);
    ASSERT_EQ(symlink("circle", directory.Native("circle").c_str()), 0);

    struct Case {
        UTF16String name;
        FileKind kind;
        ErrorCode error;
    };
    Case const cases[] = {
        {u"file"_utf16, FileKind::kFile, kError_None},
        {u"to-file"_utf16, FileKind::kFile, kError_None},
        {u"dir"_utf16, FileKind::kDirectory, kError_None},
        {u"to-dir"_utf16, FileKind::kDirectory, kError_None},
        {u"fifo"_utf16, FileKind::kPipe, kError_None},
        {u"to-fifo"_utf16, FileKind::kPipe, kError_None},
        {u"sock"_utf16, FileKind::kSocket, kError_None},
        {u"to-null"_utf16, FileKind::kDevice, kError_None},
        {u"to-none"_utf16, FileKind::kOther, kError_FileNotFound},
        {u"circle"_utf16, FileKind::kOther, kError_LinkCircle},
        {u"none"_utf16, FileKind::kOther, kError_FileNotFound},
        {u"none\\x"_utf16, FileKind::kOther, kError_PathNotFound},
        {u"file\\x"_utf16, FileKind::kOther, kError_PathNotFound},
    };
    for (auto const& one : cases) {
        auto const path = directory.Path(one.name);
        auto const info = Inspect(path);
        EXPECT_EQ(info.error, one.error) << NativePath(path).value;
        EXPECT_EQ(info.value.kind, one.kind) << NativePath(path).value;
        auto const refusal = one.kind == FileKind::kFile ? kError_None
                             : one.error == kError_None  ? kError_AccessDenied
                                                         : one.error;
        EXPECT_EQ(OpenForReading(path).error, refusal) << NativePath(path).value;
        EXPECT_EQ(OpenForWriting(path).error, refusal) << NativePath(path).value;
        if (refusal == kError_AccessDenied) {
            EXPECT_EQ(CreateEmptyFile(path), refusal);
            EXPECT_EQ(ReplaceContent(path, "x", 1), refusal);
            EXPECT_EQ(AppendContent(path, "x", 1), refusal);
        }
    }
    EXPECT_EQ(Inspect({}).error, kError_PathNotFound);
    EXPECT_EQ(ReplaceContent(directory.Path(u"circle"_utf16), "x", 1), kError_LinkCircle);
    EXPECT_EQ(DeleteFile(directory.Path(u"dir"_utf16)), kError_AccessDenied);
    EXPECT_TRUE(IsSymbolicLink(directory.Path(u"to-none"_utf16)));
    EXPECT_TRUE(IsSymbolicLink(directory.Path(u"to-dir\\"_utf16)));
    EXPECT_FALSE(IsSymbolicLink(directory.Path(u"dir"_utf16)));

    DirectoryScan scan(directory.Path());
    DirectoryEntry entry;
    while (scan.Next(entry)) {
        auto const native = NativePath(entry.name).value;
        bool const isLink = native.find("to-") == 0 || native == "circle";
        auto const target = native.find("to-") == 0 ? native.substr(3) : native;
        EXPECT_EQ(entry.isLink, isLink) << native;
        EXPECT_EQ(entry.isDirectory, target == "dir") << native;
        EXPECT_EQ(entry.isSystem, target == "fifo" || target == "sock" || target == "null")
            << native;
    }
}

TEST(Files, TimesAndIdentityAreTheSystems) {
    TemporaryDirectory const directory;
    Fill(directory.Native("a"), "");
    ASSERT_EQ(link(directory.Native("a").c_str(), directory.Native("b").c_str()), 0);
    // 2001-09-09 01:46:40.5 UTC is 126444736005000000 ticks, as published for this well-known
    // second.
    struct TimeCase {
        timespec time;
        std::uint64_t ticks;
    };
    TimeCase const cases[] = {{{1000000000, 500000000}, 126444736005000000U},
                              {{0, 100}, 116444736000000001U},
                              {{-1, 0}, 116444735990000000U}};
    for (auto const& one : cases) {
        timespec const times[] = {one.time, one.time};
        ASSERT_EQ(utimensat(AT_FDCWD, directory.Native("a").c_str(), times, 0), 0);
        EXPECT_EQ(Inspect(directory.Path(u"a"_utf16)).value.modified, one.ticks);
    }
    auto const a = Inspect(directory.Path(u"a"_utf16)).value;
    EXPECT_GT(a.created, 133000000000000000U); // made by this test, so after 2022
    EXPECT_TRUE(a.identity == Inspect(directory.Path(u"b"_utf16)).value.identity);
    EXPECT_FALSE(a.identity == Inspect(directory.Path()).value.identity);
}

TEST(Files, AnOpenFileReadsAndWritesAtItsPosition) {
    TemporaryDirectory const directory;
    auto const path = directory.Path(u"file"_utf16);
    ASSERT_EQ(CreateEmptyFile(path), kError_None);
    auto writer = OpenForWriting(path);
    ASSERT_TRUE(writer);
    EXPECT_EQ(writer.value.Write("0123456789", 10), kError_None);
    EXPECT_EQ(writer.value.Position().value, 10U);
    EXPECT_EQ(writer.value.SetPosition(2), kError_None);
    EXPECT_EQ(writer.value.Write("ab", 2), kError_None);
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(writer.value.SetPosition(kMost + 1), kError_InvalidParameter);
    EXPECT_EQ(writer.value.Position().value, 4U);
    EXPECT_EQ(writer.value.SetPosition(kMost), kError_None);
    EXPECT_EQ(writer.value.Write("x", 1), kError_FileTooLarge);
    EXPECT_EQ(writer.value.Size().value, 10U);
    writer = {};

    auto reader = OpenForReading(path);
    ASSERT_TRUE(reader);
    char bytes[32] = {};
    EXPECT_EQ(reader.value.Read(bytes, 4).value, 4U);
    EXPECT_EQ(reader.value.Read(bytes + 4, 28).value, 6U);
    EXPECT_STREQ(bytes, "01ab456789");
    EXPECT_EQ(reader.value.Read(bytes, 1).value, 0U);
    EXPECT_EQ(reader.value.SetPosition(kMost), kError_None);
    auto const atEnd = reader.value.Read(bytes, 1);
    EXPECT_EQ(atEnd.error, kError_None);
    EXPECT_EQ(atEnd.value, 0U);
}

TEST(Files, SharingRefusesWhoeverWouldDisturb) {
    TemporaryDirectory const directory;
    auto const path = directory.Path(u"file"_utf16);
    auto const refusals = [&] {
        std::vector<ErrorCode> errors;
        errors.push_back(OpenForReading(path).error);
        errors.push_back(OpenForWriting(path).error);
        errors.push_back(CreateEmptyFile(path));
        errors.push_back(ReplaceContent(path, "new", 3));
        errors.push_back(AppendContent(path, "new", 3));
        return errors;
    };
    constexpr auto kNo = kError_SharingViolation;
    Fill(directory.Native("file"), "old");
    {
        auto const reader = OpenForReading(path);
        EXPECT_EQ(refusals(), (std::vector<ErrorCode>{kError_None, kNo, kNo, kNo, kNo}));
    }
    {
        auto const writer = OpenForWriting(path);
        EXPECT_EQ(refusals(), (std::vector<ErrorCode>{kNo, kNo, kNo, kNo, kNo}));
    }
    EXPECT_EQ(ContentOf(directory.Native("file")), "old");
    EXPECT_EQ(refusals(), std::vector<ErrorCode>(5, kError_None));
    EXPECT_EQ(ContentOf(directory.Native("file")), "newnew");
}

TEST(Files, MovingNeverReplaces) {
    TemporaryDirectory const directory;
    Fill(directory.Native("a"), "a");
    Fill(directory.Native("b"), "b");
    auto const at = [&](char16_t const* inName) {
        return directory.Path(
            UTF16String(inName, inName + std::char_traits<char16_t>::length(inName)));
    };
    EXPECT_EQ(Move(at(u"a"), at(u"b")), kError_AlreadyExists);
    EXPECT_EQ(Move(at(u"none"), at(u"c")), kError_FileNotFound);
    EXPECT_EQ(Move(at(u"none\\a"), at(u"c")), kError_PathNotFound);
    EXPECT_EQ(Move(at(u"a"), at(u"none\\c")), kError_PathNotFound);
    EXPECT_EQ(ContentOf(directory.Native("b")), "b");
    EXPECT_EQ(Move(at(u"a"), at(u"c")), kError_None);
    EXPECT_EQ(ContentOf(directory.Native("c")), "a");
    EXPECT_EQ(Inspect(at(u"a")).error, kError_FileNotFound);
    ASSERT_EQ(CreateDirectory(at(u"d")), kError_None);
    EXPECT_EQ(Move(at(u"d"), at(u"d\\e")), kError_InvalidParameter);
    EXPECT_EQ(Move(at(u"d"), at(u"e")), kError_None);
}

TEST(Files, ReplacingKeepsLinksAndPermissions) {
    TemporaryDirectory const directory;
    ASSERT_EQ(mkdir(directory.Native("dir").c_str(), 0700), 0);
    Fill(directory.Native("dir/file"), "old");
    ASSERT_EQ(chmod(directory.Native("dir/file").c_str(), 0640), 0);
    ASSERT_EQ(symlink("file", directory.Native("dir/near").c_str()), 0);
    ASSERT_EQ(symlink("dir/near", directory.Native("far").c_str()), 0);
    ASSERT_EQ(symlink(directory.Native("dir/made").c_str(), directory.Native("dangling").c_str()),
              0);

    EXPECT_EQ(ReplaceContent(directory.Path(u"far"_utf16), "new", 3), kError_None);
    EXPECT_EQ(ContentOf(directory.Native("dir/file")), "new");
    EXPECT_TRUE(IsSymbolicLink(directory.Path(u"far"_utf16)));
    EXPECT_TRUE(IsSymbolicLink(directory.Path(u"dir\\near"_utf16)));
    struct stat status {};
    ASSERT_EQ(stat(directory.Native("dir/file").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);

    EXPECT_EQ(AppendContent(directory.Path(u"far"_utf16), "er", 2), kError_None);
    EXPECT_EQ(ContentOf(directory.Native("dir/file")), "newer");
    EXPECT_EQ(ReplaceContent(directory.Path(u"dangling"_utf16), "made", 4), kError_None);
    EXPECT_EQ(ContentOf(directory.Native("dir/made")), "made");
    EXPECT_EQ(ReplaceContent(directory.Path(u"none\\x"_utf16), "x", 1), kError_PathNotFound);
    EXPECT_EQ(EntryCount(directory.Path(u"dir"_utf16)), 3U);
    if (geteuid() != 0) {
        ASSERT_EQ(chmod(directory.Native("dir/file").c_str(), 0440), 0);
        EXPECT_EQ(ReplaceContent(directory.Path(u"far"_utf16), "x", 1), kError_AccessDenied);
        EXPECT_EQ(ContentOf(directory.Native("dir/file")), "newer");
    }
}

TEST(Files, AFullDiskKeepsTheOldFile) {
    TemporaryDirectory const directory;
    Fill(directory.Native("old"), std::string(100, 'o'));
    std::string const big(100000, 'b');
    {
        FileSizeLimit const limit(4096);
        for (auto const& name : {u"old"_utf16, u"new"_utf16}) {
            auto const path = directory.Path(name);
            EXPECT_EQ(ReplaceContent(path, big.data(), big.size()), kError_FileTooLarge);
            EXPECT_EQ(AppendContent(path, big.data(), big.size()), kError_FileTooLarge);
        }
        auto writer = OpenForWriting(directory.Path(u"old"_utf16));
        EXPECT_EQ(writer.value.Write(big.data(), big.size()), kError_FileTooLarge);
        EXPECT_EQ(writer.value.Position().value, 4096U);
    }
    EXPECT_EQ(EntryCount(directory.Path()), 1U);
    EXPECT_EQ(Inspect(directory.Path(u"old"_utf16)).value.size, 4096U);
    Fill(directory.Native("old"), "o");
    FileSizeLimit const limit(1);
    EXPECT_EQ(ReplaceContent(directory.Path(u"old"_utf16), "12", 2), kError_FileTooLarge);
    EXPECT_EQ(AppendContent(directory.Path(u"old"_utf16), "12", 2), kError_FileTooLarge);
    EXPECT_EQ(ContentOf(directory.Native("old")), "o");
}

TEST(Files, AKilledWriterLeavesTheOldFileOrTheNew) {
    TemporaryDirectory const directory;
    auto const path = directory.Path(u"file"_utf16);
    std::string const old(200000, 'o');
    std::string const fresh(300000, 'n');
    ASSERT_EQ(ReplaceContent(path, old.data(), old.size()), kError_None);
    for (int round = 0; round < 60; ++round) {
        pid_t const child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                ReplaceContent(path, fresh.data(), fresh.size());
                ReplaceContent(path, old.data(), old.size());
            }
        }
        usleep(static_cast<useconds_t>(200 + round * 97));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        auto const content = ContentOf(directory.Native("file"));
        ASSERT_TRUE(content == old || content == fresh) << content.size();
    }
    // The dead hold no locks.
    EXPECT_EQ(ReplaceContent(path, "x", 1), kError_None);
}

} // namespace

} // namespace brindle::platform
