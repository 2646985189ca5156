#include <brindle/console/Listen.h>
#include <brindle/console/RemoteConsole.h>

#include "console/src/listen/Protocol.h"
#include "console/src/listen/SocketNames.h"
#include "platform/LocalSocket.h"

#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"
#include "tests/support/Text.h"

#include <brindle/console/Command.h>
#include <brindle/console/CommandRegistry.h>
#include <brindle/console/Console.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <boost/smart_ptr/make_shared.hpp>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <future>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>

namespace brindle::console {

namespace {

namespace fs = std::filesystem;
using Outcome = RemoteAnswer::Outcome;
using Executor = boost::shared_ptr<threads::AsyncThreadedExecutor>;

/// What the command "test" does; set while none runs.
std::function<void(UTF16String const&, UTF16OutputStream&)> S_test;

class TestCommand : public Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override {
        S_test(inArguments, ioOut);
    }
};

Command* MakeTestCommand(UTF16String const& inName, UTF16String const& inHelp) {
    return new TestCommand(inName, inHelp);
}

Executor Pool(int inThreads = 1) {
    return threads::CreateAsyncThreadedExecutor("commands", inThreads,
                                                threads::kThreadPriorityNormal);
}

std::ptrdiff_t ThreadCount() {
    return std::distance(fs::directory_iterator("/proc/self/task"), {});
}

/// A client that keeps to no rules. Its operations block, except `Push`.
class RawClient {
public:
    RawClient()
        : mConnection(platform::ConnectLocally(SocketName(u"test"_utf16, ProcessId())).value) {
        ::fcntl(mConnection.Descriptor(), F_SETFL, 0);
    }
    static std::uint32_t ProcessId() { return static_cast<std::uint32_t>(::getpid()); }

    void Send(std::string const& inBytes) {
        EXPECT_EQ(mConnection.Write(inBytes.data(), inBytes.size()).value, inBytes.size());
    }
    /// Only what fits now. Returns how much.
    std::ptrdiff_t Push(std::string const& inBytes) {
        return ::send(mConnection.Descriptor(), inBytes.data(), inBytes.size(),
                      MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    void EndInput() { ::shutdown(mConnection.Descriptor(), SHUT_WR); }
    /// Nothing if the other end has closed.
    std::optional<Reply> Receive() {
        for (;;) {
            if (auto reply = mReplies.Take()) {
                return reply;
            }
            char bytes[4096];
            auto const count = mConnection.Read(bytes, sizeof(bytes));
            mReplies.Append(bytes, count.value);
            if (!count) {
                return {};
            }
        }
    }

private:
    platform::LocalConnection mConnection;
    ReplyReader mReplies;
};

class Listening : public tests::InTemporaryDirectory {
protected:
    void SetUp() override {
        CommandRegistry::RegisterCommand(u"test"_utf16, u"test"_utf16, MakeTestCommand);
        S_test = [](auto const& inArguments, auto& ioOut) { ioOut << inArguments; };
    }
    void TearDown() override {
        S_test = [](auto const&, auto&) {};
        UTF16OutputStream out;
        ExecuteCommand(u"test"_utf16, out); // a command that was never executed stays
        delete CommandRegistry::UnregisterCommand(u"test"_utf16);
    }
    static RemoteConsole Attach(UTF16String const& inName = u"test"_utf16) {
        return RemoteConsole(ListeningPrograms(inName).at(0));
    }
    /// A place is free as soon as the service has noticed that a client has gone.
    static RemoteConsole AttachWhenThereIsRoom() {
        for (;;) {
            auto console = Attach();
            if (console.IsAttached()) {
                return console;
            }
            std::this_thread::yield();
        }
    }
    static void ExpectEcho(RemoteConsole& ioConsole, std::string const& inText) {
        auto const answer = ioConsole.ExecuteCommand(tests::AsUTF8("test " + inText));
        EXPECT_EQ(answer.outcome, Outcome::kRan);
        EXPECT_EQ(answer.output, tests::AsUTF8(inText));
        EXPECT_EQ(answer.note, "");
    }

    tests::Environment const mSettings{{{"XDG_RUNTIME_DIR", mTemporary.Native()}}};
};

TEST_F(Listening, RunsLinesOnTheExecutorAndShowsWhatBecomesOfThem) {
    auto const pool = Pool();
    auto const listener = Listen(u"test"_utf16, pool);
    ASSERT_TRUE(listener.IsListening()) << listener.Failure();
    auto console = Attach();
    ASSERT_TRUE(console.IsAttached()) << console.Failure();
    std::atomic<bool> isOnExecutor{false};
    S_test = [&](UTF16String const& inArguments, UTF16OutputStream& ioOut) {
        isOnExecutor = pool->IsCurrentThreadExecutorThread();
        ioOut << inArguments << u'\n';
        if (inArguments == u"throw"_utf16) {
            throw std::runtime_error("it is\nbroken");
        }
        if (inArguments == u"flood"_utf16) {
            ioOut << UTF16String(2 * kMostOutputUnits, u'\u20AC');
            EXPECT_TRUE(ioOut.good());
        }
    };
    auto const big = "test " + std::string(kMostLineBytes - 9, 'x');
    auto const nul = "test a"_utf8 + UTF8String(1, 0) + "b"_utf8;
    struct Case {
        UTF8String line;
        Outcome outcome;
        std::string output;
        std::string note;
    };
    Case const cases[] = {
        {"test caf\u00E9"_utf8, Outcome::kRan, "caf\u00E9\n", ""},
        {nul, Outcome::kRan, std::string("a\0b\n", 4), ""},
        {"test a\nb"_utf8, Outcome::kRan, "a b\n", ""},
        {tests::AsUTF8(big), Outcome::kRan, big.substr(5) + '\n', ""},
        {tests::AsUTF8(big + 'x'), Outcome::kRefused, "", "the line is longer than 65536 bytes"},
        {tests::AsUTF8(std::string(1'000'000, 'x')), Outcome::kRefused, "",
         "the line is longer than 65536 bytes"},
        {"test throw"_utf8, Outcome::kFailed, "throw\n", "it is\uFFFDbroken"},
        {"missing"_utf8, Outcome::kNoCommand, "", ""},
        {""_utf8, Outcome::kNoCommand, "", ""},
        {"test \xFF"_utf8, Outcome::kRefused, "", "the line is not UTF-8"},
    };
    for (auto const& [line, outcome, output, note] : cases) {
        SCOPED_TRACE(std::string(line.begin(), line.end()).substr(0, 80));
        auto const answer = console.ExecuteCommand(line);
        EXPECT_EQ(answer.outcome, outcome);
        EXPECT_EQ(std::string(answer.output.begin(), answer.output.end()), output);
        EXPECT_EQ(answer.note, note);
    }
    EXPECT_TRUE(isOnExecutor);
    auto const flood = console.ExecuteCommand("test flood"_utf8);
    EXPECT_EQ(flood.outcome, Outcome::kRan);
    EXPECT_EQ(flood.output.size(), 6 + 3 * (kMostOutputUnits - 6));
    EXPECT_EQ(flood.note, "the output was too long, and is cut");
    auto const completions = console.CompleteLine("tes and more"_utf8, 3);
    EXPECT_EQ(completions.start, 0u);
    EXPECT_EQ(completions.candidates, std::vector<UTF8String>{"test"_utf8});
}

TEST_F(Listening, NamesOfAnyKindAreHarmlessAndFound) {
    auto const pool = Pool();
    auto const zero = u"a"_utf16 + UTF16String(1, 0) + u"b"_utf16;
    UTF16String const names[] = {u"../evil"_utf16, zero, u".hidden\n%41"_utf16,
                                 u"caf\u00E9 1.5"_utf16, u"12"_utf16};
    std::vector<Listener> listeners;
    for (auto const& name : names) {
        listeners.push_back(Listen(name, pool));
        ASSERT_TRUE(listeners.back().IsListening()) << listeners.back().Failure();
        auto const found = ListeningPrograms(name);
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].name, name);
        EXPECT_EQ(found[0].processId, RawClient::ProcessId());
        auto console = Attach(name);
        ExpectEcho(console, "a");
    }
    auto const longName = UTF16String(1000, u'\u20AC');
    listeners.push_back(Listen(longName, pool));
    EXPECT_EQ(ListeningPrograms(longName).at(0).name, longName.substr(0, 23));
    listeners.push_back(Listen(u""_utf16, pool));
    EXPECT_EQ(ListeningPrograms(u"No Client Name"_utf16).size(), 1u);
    auto const own = tests::Wide(std::to_string(RawClient::ProcessId()));
    EXPECT_EQ(ListeningPrograms(own).size(), listeners.size());
    Fill("brindle/stranger", "");
    Fill("brindle/a%zz.5", "");
    EXPECT_EQ(ListeningPrograms().size(), listeners.size());
    auto const twice = Listen(zero, pool);
    EXPECT_FALSE(twice.IsListening());
    EXPECT_EQ(twice.Failure(), "this process listens under the same name already");
    tests::Environment const nowhere({{"XDG_RUNTIME_DIR", std::nullopt}});
    EXPECT_EQ(Listen(zero, pool).Failure(),
              "the user has no runtime directory: XDG_RUNTIME_DIR names none");
}

#if !defined(__SANITIZE_THREAD__) // which allows no threads in such a child
TEST_F(Listening, ProgramsOfOneNameAreToldApartAndTheDeadAreForgotten) {
    pid_t const child = ::fork();
    if (child == 0) {
        auto const listener = Listen(u"test"_utf16, Pool());
        ::pause();
    }
    auto const listener = Listen(u"test"_utf16, Pool());
    while (ListeningPrograms(u"test"_utf16).size() < 2) {
        std::this_thread::yield();
    }
    auto console = Attach(tests::Wide(std::to_string(child)));
    ExpectEcho(console, "a");
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(console.ExecuteCommand("test a"_utf8).outcome, Outcome::kDisconnected);
    EXPECT_FALSE(console.IsAttached());
    EXPECT_EQ(ListeningPrograms(u"test"_utf16).size(), 1u);
}
#endif

TEST_F(Listening, LinesThatComeAtOnceAreAnsweredInTheirOrder) {
    auto const listener = Listen(u"test"_utf16, Pool(4));
    RawClient client;
    EXPECT_EQ(client.Receive()->body, "test");
    std::string lines;
    for (int i = 0; i < 100; ++i) {
        lines += "run test " + std::to_string(i) + "\r\n";
    }
    client.Send(lines + "nonsense\n\n" + std::string(100'000, 'x') + "\nrun test last\nrun test");
    client.EndInput();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(client.Receive()->body, std::to_string(i));
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(client.Receive()->kind, ReplyKind::kRefused) << i;
    }
    EXPECT_EQ(client.Receive()->body, "last");
    EXPECT_FALSE(client.Receive()) << "a line without its end is no line";
}

TEST_F(Listening, ClientsTakeTurns) {
    std::promise<void> hasBegun, mayEnd;
    std::string order;
    S_test = [&](UTF16String const& inArguments, auto&) {
        if (order.empty()) {
            hasBegun.set_value();
            mayEnd.get_future().wait();
        }
        order += tests::Narrow(inArguments);
    };
    auto const listener = Listen(u"test"_utf16, Pool());
    RawClient hasty, other;
    hasty.Send("run test a\nrun test b\nrun test c\n");
    hasBegun.get_future().wait();
    other.Send("run test x\n");
    auto const later = Attach(); // what was sent before is read by now
    mayEnd.set_value();
    for (int i = 0; i < 4; ++i) {
        hasty.Receive();
    }
    EXPECT_EQ(order, "axbc");
}

TEST_F(Listening, SlowAndHostileClientsHoldUpNobody) {
    S_test = [](auto const& inArguments, auto& ioOut) {
        ioOut << (inArguments == u"big"_utf16 ? UTF16String(kMostOutputUnits, u'x') : inArguments);
    };
    auto const pool = Pool();
    auto const listener = Listen(u"test"_utf16, pool);
    auto console = Attach();
    RawClient deaf, flooding, silent;
    auto broken = std::make_optional<RawClient>();
    deaf.Send("run test big\nrun test big\n");
    // As much as the system keeps for it, and a little that the process has read.
    std::string const flood(1 << 20, '\n');
    for (int i = 0; i < 20; ++i) {
        flooding.Push(flood);
        ExpectEcho(console, std::to_string(i));
    }
    broken->Send("run test");
    broken.reset();
    std::vector<RemoteConsole> more;
    for (std::size_t i = 4; i < kMostClients; ++i) {
        more.push_back(AttachWhenThereIsRoom());
    }
    EXPECT_EQ(Attach().Failure(), "the program does not accept: too many consoles are attached");
    more.pop_back();
    ExpectEcho(more.back(), "a");
    EXPECT_TRUE(AttachWhenThereIsRoom().IsAttached());
    EXPECT_EQ(flooding.Push(flood), -1) << "it has not read its replies";
    EXPECT_EQ(deaf.Receive()->kind, ReplyKind::kHello);
    EXPECT_EQ(deaf.Receive()->body.size(), kMostOutputUnits);
    EXPECT_EQ(deaf.Receive()->body.size(), kMostOutputUnits);
}

/// Keeps what is posted, or runs it at once.
class ManualExecutor : public threads::AsyncExecutor {
public:
    explicit ManualExecutor(bool inRunsAtOnce) : mRunsAtOnce(inRunsAtOnce) {}
    bool Post(boost::function0<void> const& inFunction, std::uint32_t) override {
        if (mRunsAtOnce) {
            inFunction();
        } else {
            mPosted.set_value(inFunction);
        }
        return true;
    }
    bool IsCurrentThreadExecutorThread() override { return false; }
    std::int32_t GetThreadCount() override { return 1; }
    boost::function0<void> Posted() { return mPosted.get_future().get(); }

private:
    bool const mRunsAtOnce;
    std::promise<boost::function0<void>> mPosted;
};

TEST_F(Listening, RequestThatTheExecutorDropsIsAnsweredAndOneThatOutlivesTheListenerDoesNothing) {
    S_test = [](auto const&, auto&) { FAIL() << "it is dropped or closed"; };
    for (bool const isDropped : {true, false}) {
        auto const executor = boost::make_shared<ManualExecutor>(false);
        auto listener = Listen(u"test"_utf16, executor);
        auto console = Attach();
        auto asked =
            std::async(std::launch::async, [&] { return console.ExecuteCommand("test a"_utf8); });
        auto waiting = executor->Posted();
        if (isDropped) {
            waiting.clear();
        }
        listener = isDropped ? std::move(listener) : Listener();
        auto const answer = asked.get();
        EXPECT_EQ(answer.outcome, isDropped ? Outcome::kRefused : Outcome::kDisconnected);
        EXPECT_EQ(answer.note, isDropped ? "the program does not run commands any more" : "");
        if (!isDropped) {
            EXPECT_EQ(executor.use_count(), 1);
            waiting();
        }
    }
    auto const pool = Pool();
    auto const listener = Listen(u"test"_utf16, pool);
    pool->Shutdown();
    EXPECT_EQ(Attach().ExecuteCommand("test a"_utf8).outcome, Outcome::kRefused);
}

TEST_F(Listening, CommandMayCloseTheListenerThatRunsIt) {
    auto const threadsBefore = ThreadCount();
    for (bool const runsAtOnce : {true, false}) {
        auto executor = runsAtOnce ? boost::shared_ptr<threads::AsyncExecutor>(
                                         boost::make_shared<ManualExecutor>(true))
                                   : Pool();
        auto listener = Listen(u"test"_utf16, executor);
        executor.reset(); // the listener has the last reference
        std::promise<void> isClosed;
        S_test = [&](auto const&, auto&) {
            listener = Listener();
            isClosed.set_value();
        };
        auto console = Attach();
        EXPECT_EQ(console.ExecuteCommand("test"_utf8).outcome, Outcome::kDisconnected);
        isClosed.get_future().wait();
        EXPECT_TRUE(ListeningPrograms().empty());
    }
    while (ThreadCount() > threadsBefore) {
        std::this_thread::yield();
    }
}

TEST_F(Listening, TerminateClosesAllAndEndsTheThread) {
    auto const pool = Pool();
    auto const threadsBefore = ThreadCount();
    for (int round = 0; round < 3; ++round) {
        Initialize();
        auto const one = Listen(u"test"_utf16, pool);
        auto const two = Listen(u"two"_utf16, pool);
        EXPECT_EQ(ThreadCount(), threadsBefore + 1);
        auto console = Attach();
        ExpectEcho(console, "a");
        Terminate();
        EXPECT_FALSE(one.IsListening());
        EXPECT_FALSE(two.IsListening());
        EXPECT_EQ(ThreadCount(), threadsBefore);
        EXPECT_TRUE(ListeningPrograms().empty());
        EXPECT_EQ(console.ExecuteCommand("test a"_utf8).outcome, Outcome::kDisconnected);
    }
}

#if !defined(__SANITIZE_THREAD__) // which allows no threads in such a child
TEST_F(Listening, ForkedChildCanListenAndLeavesTheParentAlone) {
    auto const pool = Pool();
    auto listener = Listen(u"test"_utf16, pool);
    auto console = Attach();
    pid_t const child = ::fork();
    if (child == 0) {
        bool isRight = !listener.IsListening();
        listener = Listener();
        auto const childs = Listen(u"child"_utf16, Pool());
        isRight &= childs.IsListening();
        isRight &= Attach(u"child"_utf16).ExecuteCommand("test"_utf8).outcome == Outcome::kRan;
        Terminate();
        ::_exit(isRight ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    ExpectEcho(console, "a");
    EXPECT_EQ(ListeningPrograms().size(), 1u);
}
#endif

TEST_F(Listening, ClosingWhileCommandsRunAndClientsComeAndGo) {
    std::atomic<int> running{0};
    S_test = [&](auto const& inArguments, auto& ioOut) {
        EXPECT_EQ(running.fetch_add(1), 0) << "one at a time";
        ioOut << inArguments;
        std::this_thread::yield();
        running.fetch_sub(1);
    };
    auto const pool = Pool(2);
    std::atomic<bool> isOver{false};
    std::atomic<int> answers{0};
    tests::InThreads(4, [&](unsigned inThread) {
        if (inThread == 0) {
            for (int i = 0; i < 60; ++i) {
                auto listener = Listen(u"test"_utf16, pool);
                auto const other = Listen(u"other"_utf16, pool);
                for (int const seen = answers; answers == seen && i % 2 == 0;) {
                    std::this_thread::yield();
                }
                if (i % 3 == 0) {
                    Terminate();
                }
                listener = Listener();
                pool->Synchronize(); // so that no command of this listener runs beside the next's
            }
            isOver = true;
        }
        while (!isOver) {
            for (auto const& program : ListeningPrograms(u"test"_utf16)) {
                RemoteConsole console(program);
                for (int i = 0; i < 5 && console.IsAttached(); ++i) {
                    auto const answer = console.ExecuteCommand("test a"_utf8);
                    answers += answer.outcome == Outcome::kRan ? 1 : 0;
                    EXPECT_NE(answer.outcome, Outcome::kNoCommand);
                }
                RawClient leaving;
                leaving.Push("run test x\nrun test y\n");
            }
        }
    });
    EXPECT_EQ(running, 0);
}

} // namespace

} // namespace brindle::console
