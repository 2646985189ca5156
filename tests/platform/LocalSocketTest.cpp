#include "platform/LocalSocket.h"

#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"

#include <csignal>
#include <memory>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

namespace brindle::platform {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class LocalSocket : public tests::InTemporaryDirectory {
protected:
    /// A process that listens under this name until it is killed.
    static pid_t ListenElsewhere(std::string const& inName) {
        pid_t const child = ::fork();
        if (child == 0) {
            auto const listener = LocalListener::Open(inName);
            ::pause();
        }
        while (!ConnectLocally(inName)) {
            ::usleep(100);
        }
        return child;
    }
    static void Kill(pid_t inProcess) {
        ::kill(inProcess, SIGKILL);
        ::waitpid(inProcess, nullptr, 0);
    }
    fs::path Socket(std::string const& inName) const { return Native("brindle/" + inName); }

    tests::Environment const mSettings{{{"XDG_RUNTIME_DIR", mTemporary.Native()}}};
};

/// Reads what comes until the other end is closed.
std::string ReadAll(LocalConnection& ioConnection) {
    std::string text;
    for (;;) {
        char bytes[100];
        auto const count = ioConnection.Read(bytes, sizeof(bytes));
        text.append(bytes, count.value);
        if (!count) {
            return text;
        }
        std::vector<AwaitedDescriptor> awaited(1);
        awaited[0].descriptor = ioConnection.Descriptor();
        awaited[0].awaitsInput = true;
        Await(awaited, -1);
    }
}

TEST_F(LocalSocket, IsTheUsersAloneWhateverTheUmask) {
    EXPECT_EQ(LocalListeners().error, kError_PathNotFound);
    EXPECT_FALSE(fs::exists(Native("brindle"))) << "looking creates nothing";
    for (mode_t const mask : {0u, 0777u}) {
        mode_t const old = ::umask(mask);
        auto const listener = LocalListener::Open("a");
        ::umask(old);
        ASSERT_TRUE(listener) << mask;
        EXPECT_EQ(fs::status(Native("brindle")).permissions(), fs::perms(0700));
        EXPECT_EQ(fs::status(Socket("a")).permissions(), fs::perms(0600));
        EXPECT_EQ(LocalListeners().value, Names{"a"});
    }
    EXPECT_EQ(EntryCount("brindle"), 0);
    EXPECT_EQ(LocalListener::Open("").error, kError_InvalidName);
    EXPECT_EQ(LocalListener::Open("a/b").error, kError_InvalidName);
    EXPECT_EQ(LocalListener::Open(".a").error, kError_InvalidName);
    EXPECT_EQ(LocalListener::Open(std::string(81, 'a')).error, kError_NameTooLong);
}

TEST_F(LocalSocket, NeedsADirectoryThatNobodyElseCanEnter) {
    struct Case {
        std::optional<std::string> variable;
        ErrorCode error;
    };
    fs::create_directory(Native("open"));
    fs::permissions(Native("open"), fs::perms(0750));
    Fill("file", "");
    for (auto const& [variable, error] : {Case{std::nullopt, kError_PathNotFound},
                                          {"", kError_PathNotFound},
                                          {"relative", kError_PathNotFound},
                                          {Native("missing"), kError_PathNotFound},
                                          {Native("file"), kError_PathNotFound},
                                          {Native("open"), kError_AccessDenied}}) {
        tests::Environment const settings({{"XDG_RUNTIME_DIR", variable}});
        EXPECT_EQ(LocalListener::Open("a").error, error) << variable.value_or("none");
        EXPECT_EQ(ConnectLocally("a").error, error);
        EXPECT_EQ(LocalListeners().error, error);
    }
    fs::create_directory_symlink(Native("open"), Native("brindle"));
    EXPECT_EQ(LocalListener::Open("a").error, kError_AccessDenied) << "a link leads elsewhere";
}

TEST_F(LocalSocket, PathMayBeLongerThanAnAddress) {
    auto const deep = Native(std::string(sizeof(sockaddr_un::sun_path), 'd'));
    fs::create_directory(deep);
    fs::permissions(deep, fs::perms(0700));
    tests::Environment const settings({{"XDG_RUNTIME_DIR", deep}});
    std::string const name(kLongestSocketName, 'a');
    auto listener = LocalListener::Open(name);
    ASSERT_TRUE(listener);
    EXPECT_EQ(LocalListeners().value, Names{name});
    listener.value.Remove();
    EXPECT_TRUE(fs::is_empty(deep + "/brindle"));
    EXPECT_EQ(ConnectLocally(name).error, kError_FileNotFound);
}

TEST_F(LocalSocket, OfAKilledProcessIsRemovedAndReplaced) {
    pid_t const killed = ListenElsewhere("a");
    pid_t const alive = ListenElsewhere("b");
    EXPECT_EQ(LocalListener::Open("a").error, kError_SharingViolation);
    Kill(killed);
    Fill("brindle/c", "no socket");
    EXPECT_TRUE(fs::exists(Socket("a")));
    EXPECT_EQ(LocalListeners().value, Names{"b"});
    {
        auto const other = LocalListener::Open("d");
        EXPECT_FALSE(fs::exists(Socket("a"))) << "nobody comes back for it";
        auto const listener = LocalListener::Open("a");
        EXPECT_TRUE(listener);
        EXPECT_EQ(LocalListeners().value, (Names{"a", "b", "d"}));
    }
    EXPECT_EQ(ContentOf("brindle/c"), "no socket");
    Kill(alive);
}

TEST_F(LocalSocket, ManyThatCreateAndCleanUpAtOnceRemoveNobodyElses) {
    for (int round = 0; round < 20; ++round) {
        for (char const* const name : {"x", "y", "z"}) {
            Kill(ListenElsewhere(name));
        }
        tests::InThreads(4, [](unsigned inThread) {
            for (int i = 0; i < 20; ++i) {
                std::string const name(1, static_cast<char>('w' + inThread));
                auto const listener = LocalListener::Open(name);
                ASSERT_TRUE(listener);
                EXPECT_TRUE(ConnectLocally(name)) << name;
            }
        });
        EXPECT_EQ(EntryCount("brindle"), 0);
    }
}

TEST_F(LocalSocket, OfAForkedProcessIsTheParentsAlone) {
    auto listener = std::make_unique<Result<LocalListener>>(LocalListener::Open("a"));
    auto client = ConnectLocally("a");
    auto server = std::make_unique<Result<LocalConnection>>(listener->value.Accept());
    ASSERT_TRUE(*server);
    pid_t const child = ::fork();
    if (child == 0) {
        static_cast<void>(server->value.Write("child", 5));
        listener.reset();
        ::raise(SIGSTOP); // and lives on
    }
    int status = 0;
    ::waitpid(child, &status, WUNTRACED);
    EXPECT_EQ(server->value.Write("parent", 6).value, 6u);
    server.reset();
    EXPECT_EQ(ReadAll(client.value), "parent");
    EXPECT_EQ(client.value.Write("x", 1).error, kError_GeneralFailure) << "and SIGPIPE is no end";
    EXPECT_TRUE(ConnectLocally("a")) << "the child has removed it";
    listener.reset();
    EXPECT_EQ(ConnectLocally("a").error, kError_FileNotFound);
    Kill(child);
}

TEST_F(LocalSocket, OtherUsersAreDisconnected) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    auto listener = LocalListener::Open("a");
    ASSERT_TRUE(listener);
    // Whatever somebody has made of the permissions.
    for (auto const& path : {mTemporary.Native(), Native("brindle"), Socket("a").string()}) {
        fs::permissions(path, fs::perms(0777));
    }
    pid_t const child = ::fork();
    if (child == 0) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        Socket("a").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
        int const socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        bool const isConnected =
            ::setuid(65534) == 0 &&
            ::connect(socket, reinterpret_cast<sockaddr const*>(&address), sizeof(address)) == 0;
        char byte = 0;
        bool const isClosed = isConnected && ::read(socket, &byte, 1) == 0;
        ::_exit(isClosed ? 0 : 1);
    }
    std::vector<AwaitedDescriptor> awaited(1);
    awaited[0].descriptor = listener.value.Descriptor();
    awaited[0].awaitsInput = true;
    Await(awaited, -1);
    EXPECT_EQ(listener.value.Accept().error, kError_FileNotFound);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace

} // namespace brindle::platform
