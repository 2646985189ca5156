#include <brindle/MemoryMappedFile.h>

#include "tests/InTemporaryDirectory.h"

#include <atomic>
#include <csignal>
#include <deque>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <optional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace brindle {

namespace {

constexpr std::uint32_t kOpen = MemoryMappedFile::kMappedFileWritable;
constexpr std::uint32_t kCreate =
    kOpen | MemoryMappedFile::kMappedFileCreate | MemoryMappedFile::kMappedFileMapNow;

/// A process of its own, which runs a body and then stays until it is killed.
class Holder {
public:
    template <typename Body>
    explicit Holder(Body inBody) : mProcess(::fork()) {
        if (mProcess == 0) {
            inBody();
            ::raise(SIGSTOP);
        }
    }
    ~Holder() {
        if (mProcess > 0 && ::kill(mProcess, SIGKILL) == 0) {
            ::waitpid(mProcess, nullptr, 0);
        }
    }
    /// Until the body has been run, or the process was killed.
    void Wait() const {
        siginfo_t state;
        auto const process = static_cast<id_t>(mProcess);
        ASSERT_EQ(0, ::waitid(P_PID, process, &state, WSTOPPED | WEXITED | WNOWAIT));
    }

private:
    pid_t const mProcess;
};

class SharedByName : public testing::Test {
protected:
    std::string Name(std::string const& inStart) const { return inStart + mSuffix; }

    static char* Text(MemoryMappedFile& ioFile) { return static_cast<char*>(ioFile.GetAddress()); }

    static bool Can(MemoryMappedFile& ioFile, std::string const& inName, std::uint32_t inFlags,
                    std::uint64_t inSize = 8) try {
        ioFile.Init(inName, inSize, inFlags);
        return true;
    } catch (std::int32_t error) {
        return error != MemoryMappedFile::kErrorMappedFileException;
    }

    /// Whether the system has memory of the size that this test alone gives.
    bool IsThereMemory() const {
        std::string const size = "' " + std::to_string(mSize) + " '";
        return std::system(("grep -q " + size + " /proc/sysvipc/shm").c_str()) == 0;
    }

    std::string const mSuffix = " of test " + std::to_string(::getpid());
    std::string const mName = Name("memory");
    std::size_t const mSize = 1'000'000 + static_cast<std::size_t>(::getpid());
    MemoryMappedFile mFile, mOther;
};

TEST_F(SharedByName, ViewsAreWhatTheFlagsAskFor) {
    mFile.Init(mName, 0x1'0000'1388, kCreate);
    EXPECT_TRUE(mFile.MappedMemoryIsWritable());
    Text(mFile)[4999] = 'x';
    mOther.Init(mName, 1, MemoryMappedFile::kMappedFileCreate);
    EXPECT_EQ('x', Text(mOther)[4999]) << "the size is that of the creation";
    EXPECT_DEATH(Text(mOther)[0] = 1, "") << "read-only";
    mFile.UnmapMemory();
    EXPECT_FALSE(mFile.MappedMemoryIsWritable());
    Text(mFile)[4999] = 'y';
    mFile.Reset();
    EXPECT_EQ('y', Text(mFile)[4999]) << "opened again by its name";
    EXPECT_FALSE(mFile.MappedMemoryIsWritable());
}

TEST_F(SharedByName, NamesAreExactAndWhatCannotBeIsRefused) {
    std::deque<MemoryMappedFile> files;
    for (std::string const name : {"a/b", "a", "../../../tmp/", "line\n\x01\\ ", "\xE9", "\xEA"}) {
        ASSERT_TRUE(Can(files.emplace_back(), Name(name), kCreate)) << name;
        EXPECT_EQ(0, Text(files.back())[0]++) << "is another's: " << name;
    }
    EXPECT_THROW(mFile.GetAddress(), std::int32_t);
    for (std::string const& name : {std::string(), std::string(256, 'n'), std::string("a\0b", 3)}) {
        EXPECT_FALSE(Can(mFile, name, kCreate)) << name;
    }
    EXPECT_FALSE(Can(mFile, mName, kCreate, 0x1'0000'0000)) << "the low 32 bits are 0";
    if (Can(mFile, mName, kCreate, 0xFFFFFFFF)) {
        Text(mFile)[0xFFFFFFFE] = 1; // what was promised is there
    }
    tests::OrdinaryUser const somebodyElse;
    EXPECT_FALSE(::geteuid() != ::getuid() && Can(mOther, mName, kOpen));
}

TEST_F(SharedByName, GoesWithItsLastHolderAlsoIfThatIsKilled) {
    std::optional<Holder> holder(std::in_place, [this] {
        mFile.Init(mName, mSize, kCreate);
        Text(mFile)[0] = 'x';
    });
    holder->Wait();
    ASSERT_TRUE(Can(mFile, mName, kOpen));
    holder.reset();
    EXPECT_EQ('x', Text(mFile)[0]++);
    mOther = mFile;
    MemoryMappedFile third(mOther);
    mFile.Reset();
    EXPECT_EQ('y', Text(third)[0]) << "copies let go in any order";
    mOther.Reset();
    holder.emplace([] {}); // a child holds what its parent does
    third.Reset();
    EXPECT_TRUE(Can(mOther, mName, kOpen) && IsThereMemory());
    mOther.Reset();
    holder.reset();
    EXPECT_FALSE(Can(mOther, mName, kOpen) || IsThereMemory());
    ASSERT_TRUE(Can(mOther, mName, kCreate));
    EXPECT_EQ(0, Text(mOther)[0]) << "the old content reappears";
}

TEST_F(SharedByName, AKillAtAnyStepOfACreationLeavesNothing) {
    for (int const step : {__NR_shmget, __NR_shmat, __NR_shmctl, __NR_pwrite64, __NR_flock}) {
        Holder const holder([this, step] {
            sock_filter steps[] = {{BPF_LD | BPF_W | BPF_ABS, 0, 0, 0},
                                   {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<unsigned>(step)},
                                   {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_KILL_PROCESS},
                                   {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW}};
            sock_fprog const program = {4, steps};
            ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
            ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
            mFile.Init(mName, mSize, kCreate);
        });
        holder.Wait();
        EXPECT_FALSE(Can(mFile, mName, kOpen)) << step;
        EXPECT_TRUE(Can(mOther, Name("another"), kCreate) && !IsThereMemory()) << step;
    }
}

TEST_F(SharedByName, WhoCreateTogetherMeetInOneMemory) {
    std::deque<MemoryMappedFile> files;
    auto const count = [&] {
        for (int i = 0; i < 100; ++i) {
            files.emplace_back().Init(Name(std::to_string(i)), sizeof(std::atomic<int>), kCreate);
            ++*static_cast<std::atomic<int>*>(files.back().GetAddress());
        }
    };
    Holder const first(count), second(count);
    first.Wait(), second.Wait();
    count();
    for (MemoryMappedFile& file : files) {
        EXPECT_EQ(3, *static_cast<std::atomic<int>*>(file.GetAddress()));
    }
}

TEST_F(SharedByName, AFullPlaceAndWhatOthersPutIntoItAreRefused) {
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0 ||
        ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("", "/dev/shm", "tmpfs", 0, "size=8k") != 0) {
        GTEST_SKIP() << "may not have a file system of its own";
    }
    EXPECT_TRUE(Can(mFile, mName, kCreate));
    for (std::string const words : {"ln -s new", "touch mine; ln mine", "mkfifo",
                                    "install -o 1 /dev/null", "head -c 64k /dev/zero >full; :"}) {
        std::string const command = "cd /dev/shm; rm brindle-*; " + words + " brindle-memory-0";
        ASSERT_EQ(0, std::system(command.c_str())) << words;
        EXPECT_FALSE(Can(mOther, Name("another"), kCreate)) << words;
    }
    EXPECT_NE(0, ::access("/dev/shm/new", F_OK));
    ::umount("/dev/shm");
}

} // namespace

} // namespace brindle
