#include <brindle/MemoryMappedFile.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"
#include "tests/support/SystemCallFilter.h"

#include <array>
#include <csignal>
#include <memory>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace brindle {

namespace {

constexpr std::uint32_t kOpen = MemoryMappedFile::kMappedFileWritable;
constexpr std::uint32_t kCreate =
    kOpen | MemoryMappedFile::kMappedFileCreate | MemoryMappedFile::kMappedFileMapNow;

/// Runs a body in a child process, which stops after it and is killed when the result is destroyed.
template <typename Body>
std::unique_ptr<tests::ChildProcess> Fork(Body inBody) {
    auto child = std::make_unique<tests::ChildProcess>([&] {
        inBody();
        return ::raise(SIGSTOP);
    });
    siginfo_t state;
    ::waitid(P_PID, static_cast<id_t>(child->Id()), &state, WSTOPPED | WEXITED | WNOWAIT);
    return child;
}

struct SharedByName : tests::InTemporaryDirectory {
    void SetUp() override {
        if (::access("/dev/shm", W_OK | X_OK) != 0) {
            GTEST_SKIP() << "shared memory is named in /dev/shm, which cannot be written to here";
        }
    }
    static char* Text(MemoryMappedFile& ioFile) { return static_cast<char*>(ioFile.GetAddress()); }
    bool Can(MemoryMappedFile& ioFile, std::uint32_t inFlags, std::string const& inName) try {
        ioFile.Init(inName, mSize, inFlags);
        return true;
    } catch (std::int32_t error) {
        return error != MemoryMappedFile::kErrorMappedFileException;
    }
    bool Can(std::uint32_t inFlags) { return Can(mFile, inFlags, mName); }
    /// Whether the system has memory of the size that this test alone gives.
    bool IsThereMemory() const {
        auto const size = ' ' + std::to_string(mSize) + ' ';
        return ContentOf("/proc/sysvipc/shm").find(size) != std::string::npos;
    }

    std::string const mName = Native(""); // nobody else's
    std::size_t const mSize = 1'000'000 + static_cast<std::size_t>(::getpid());
    MemoryMappedFile mFile, mOther;
};

TEST_F(SharedByName, ViewsAreWhatTheFlagsAskFor) {
    mFile.Init(mName, 0x1'0000'1388, kCreate);
    EXPECT_TRUE(mFile.MappedMemoryIsWritable());
    Text(mFile)[4999] = 'x';
    mOther.Init(mName, 1, MemoryMappedFile::kMappedFileCreate);
    EXPECT_EQ(Text(mOther)[4999], 'x') << "the size is that of the creation";
    EXPECT_DEATH(Text(mOther)[0] = 1, "") << "read-only";
    mFile.UnmapMemory();
    EXPECT_FALSE(mFile.MappedMemoryIsWritable());
    Text(mFile)[4999] = 'y';
    mFile.Reset();
    EXPECT_EQ(Text(mFile)[4999], 'y') << "opened again by its name";
    EXPECT_FALSE(mFile.MappedMemoryIsWritable());
}

TEST_F(SharedByName, NamesAreExactAndInvalidOnesAreRefused) {
    MemoryMappedFile files[5], *file = files;
    for (std::string const name : {"a/b", "a", "line\n\x01\\ ", "\xE9", "\xEA"}) {
        ASSERT_TRUE(Can(*file, kCreate, mName + name)) << name;
        EXPECT_EQ(Text(*file++)[0]++, 0) << "the same memory as another name: " << name;
    }
    EXPECT_THROW(mFile.GetAddress(), std::int32_t);
    EXPECT_THROW(mFile.Init(mName, 0x1'0000'0000, kCreate), std::int32_t) << "no size";
    for (std::string const& name : {std::string(), std::string(256, 'n'), std::string("a\0b", 3)}) {
        EXPECT_FALSE(Can(mFile, kCreate, name)) << name;
    }
    ASSERT_TRUE(Can(kCreate));
    tests::OrdinaryUser const somebodyElse;
    EXPECT_FALSE(::geteuid() != ::getuid() && Can(mOther, kOpen, mName));
}

TEST_F(SharedByName, VanishesWithItsLastHolderEvenIfThatIsKilled) {
    auto holder = Fork([this] { Can(kCreate), ++Text(mFile)[0]; });
    ASSERT_TRUE(Can(kOpen));
    holder.reset();
    EXPECT_EQ(Text(mFile)[0]++, 1);
    mOther = mFile;
    MemoryMappedFile third(mOther);
    mFile.Reset();
    EXPECT_EQ(Text(third)[0], 2) << "copies are released in any order";
    mOther.Reset();
    holder = Fork([] {}); // a child holds what its parent does
    third.Reset();
    EXPECT_TRUE(Can(kOpen));
    EXPECT_TRUE(IsThereMemory());
    mFile.Reset();
    holder.reset();
    EXPECT_FALSE(Can(kOpen));
    EXPECT_FALSE(IsThereMemory());
    ASSERT_TRUE(Can(kCreate));
    EXPECT_EQ(Text(mFile)[0], 0) << "the old content reappears";
}

TEST_F(SharedByName, AKilledCreationLeavesNothing) {
    for (int const step : {__NR_shmget, __NR_shmat, __NR_shmctl, __NR_pwrite64, __NR_flock}) {
        auto const creator = Fork([this, step] {
            tests::FilterSystemCall(step, SECCOMP_RET_KILL_PROCESS);
            Can(kCreate);
        });
        EXPECT_FALSE(Can(kOpen)) << step;
        mOther.Init(mName + "another", 8, kCreate);
        EXPECT_FALSE(IsThereMemory()) << step;
    }
    tests::RefuseEachAllocation([this] { Can(kCreate); },
                                [this] { EXPECT_FALSE(IsThereMemory()); });
}

TEST_F(SharedByName, ConcurrentCreatorsShareOneMemory) {
    std::array<MemoryMappedFile, 100> files[2];
    tests::InThreads(2, [&](unsigned int inThread) {
        int number = 0;
        for (MemoryMappedFile& file : files[inThread]) {
            ASSERT_TRUE(Can(file, kCreate, mName + std::to_string(++number)));
            Text(file)[inThread] = 'x';
        }
    });
    for (MemoryMappedFile& file : files[0]) {
        EXPECT_EQ(std::string(Text(file), 2), "xx");
    }
}

TEST_F(SharedByName, AFileOfNamesThatIsNotTheUsersIsRefused) {
    struct stat memory {};
    bool const isForAll = ::stat("/dev/shm", &memory) == 0 && (memory.st_mode & S_IWOTH) != 0;
    std::string const cd = isForAll ? "cd /dev/shm" : "cd /tmp";
    for (std::string const words : {"ln -s own", "ln own", "install -m 666 /dev/null"}) {
        std::string const setup = cd + " && rm -f brindle-memory-65534 own && "
                                       "install -o 65534 /dev/null own && ";
        if (::geteuid() != 0 ||
            std::system((setup + words + " brindle-memory-65534").c_str()) != 0) {
            GTEST_SKIP() << "only root can make files of two other users";
        }
        tests::OrdinaryUser const user;
        EXPECT_FALSE(Can(kCreate)) << words;
    }
    EXPECT_EQ(std::system((cd + " && rm brindle-memory-65534 own").c_str()), 0);
}

} // namespace

} // namespace brindle
