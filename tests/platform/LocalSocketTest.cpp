#include "platform/LocalSocket.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"

#include <optional>
#include <sys/socket.h>
#include <sys/un.h>

namespace brindle::platform {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class LocalSocket : public tests::InTemporaryDirectory {
protected:
    fs::path Socket(std::string const& inName) const { return Native("brindle/" + inName); }

    tests::Environment const mSettings{{{"XDG_RUNTIME_DIR", mTemporary.Native()}}};
};

/// A process that listens under this name until it is killed.
class Elsewhere : public tests::ChildProcess {
public:
    explicit Elsewhere(std::string const& inName)
        : ChildProcess([&] {
              auto const listener = LocalListener::Open(inName);
              return ::pause();
          }) {
        while (!ConnectLocally(inName)) {
            ::usleep(100);
        }
    }
};

void AwaitInput(int inDescriptor) {
    std::vector<AwaitedDescriptor> awaited(1);
    awaited[0].descriptor = inDescriptor;
    awaited[0].awaitsInput = true;
    Await(awaited, -1);
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
    }
    EXPECT_EQ(EntryCount("brindle"), 0);
    for (char const* const name : {"", "a/b", ".a"}) {
        EXPECT_EQ(LocalListener::Open(name).error, kError_InvalidName);
    }
    EXPECT_EQ(LocalListener::Open(std::string(kLongestSocketName + 1, 'a')).error,
              kError_NameTooLong);
}

TEST_F(LocalSocket, NeedsADirectoryThatNobodyElseCanEnter) {
    fs::create_directory(Native("open"));
    fs::permissions(Native("open"), fs::perms(0750));
    Fill("file", "");
    std::pair<std::optional<std::string>, ErrorCode> const cases[] = {
        {std::nullopt, kError_PathNotFound},   {"", kError_PathNotFound},
        {"relative", kError_PathNotFound},     {Native("missing"), kError_PathNotFound},
        {Native("file"), kError_PathNotFound}, {Native("open"), kError_AccessDenied},
    };
    for (auto const& [variable, error] : cases) {
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
    EXPECT_TRUE(ConnectLocally(name));
    EXPECT_EQ(LocalListeners().value, Names{name});
    listener.value.Remove();
    EXPECT_EQ(ConnectLocally(name).error, kError_FileNotFound);
}

TEST_F(LocalSocket, OfAKilledProcessIsRemovedAndReplaced) {
    Elsewhere killed("a");
    Elsewhere const alive("b");
    EXPECT_EQ(LocalListener::Open("a").error, kError_SharingViolation);
    killed.Kill();
    Fill("brindle/c", "no socket");
    EXPECT_TRUE(fs::exists(Socket("a")));
    EXPECT_EQ(LocalListeners().value, Names{"b"});
    auto const other = LocalListener::Open("d");
    EXPECT_FALSE(fs::exists(Socket("a"))) << "nobody comes back for it";
    auto const listener = LocalListener::Open("a");
    EXPECT_EQ(LocalListeners().value, (Names{"a", "b", "d"}));
    EXPECT_EQ(ContentOf("brindle/c"), "no socket");
}

TEST_F(LocalSocket, ManyThatCreateAndCleanUpAtOnceRemoveNobodyElses) {
    for (int round = 0; round < 20; ++round) {
        for (char const* const name : {"x", "y", "z"}) {
            Elsewhere const killed(name);
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
    auto listener = LocalListener::Open("a");
    auto client = ConnectLocally("a");
    auto server = listener.value.Accept();
    ASSERT_TRUE(server);
    tests::ChildProcess const child([&] {
        static_cast<void>(server.value.Write("child", 5));
        listener = {};
        return ::raise(SIGSTOP); // and lives on
    });
    ::waitpid(child.Id(), nullptr, WUNTRACED);
    EXPECT_EQ(server.value.Write("parent", 6).value, 6u);
    server = {};
    char text[20] = {};
    EXPECT_EQ(client.value.Read(text, sizeof text).value, 6u);
    EXPECT_STREQ(text, "parent");
    AwaitInput(client.value.Descriptor()); // the end, although the child lives
    EXPECT_EQ(client.value.Write("x", 1).error, kError_GeneralFailure) << "and SIGPIPE is no end";
    EXPECT_TRUE(ConnectLocally("a")) << "the child has removed it";
    listener = {};
    EXPECT_EQ(ConnectLocally("a").error, kError_FileNotFound);
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
    tests::ChildProcess child([this] {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        Socket("a").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
        int const socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        bool const isConnected =
            ::setuid(65534) == 0 &&
            ::connect(socket, reinterpret_cast<sockaddr const*>(&address), sizeof(address)) == 0;
        char byte = 0;
        return isConnected ? static_cast<int>(::read(socket, &byte, 1)) : 7;
    });
    AwaitInput(listener.value.Descriptor());
    EXPECT_EQ(listener.value.Accept().error, kError_FileNotFound);
    EXPECT_EQ(child.Wait(), 0) << "the connection is closed";
}

} // namespace

} // namespace brindle::platform
