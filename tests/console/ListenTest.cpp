#include <brindle/console/Listen.h>
#include <brindle/console/RemoteConsole.h>

#include "console/src/listen/Protocol.h"
#include "console/src/listen/SocketNames.h"
#include "platform/LocalSocket.h"

#include "tests/support/ChildProcess.h"
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
#include <fcntl.h>
#include <functional>
#include <future>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>

namespace brindle::console {

namespace {

namespace fs = std::filesystem;
using Outcome = RemoteAnswer::Outcome;
using Executor = boost::shared_ptr<threads::AsyncThreadedExecutor>;

/// What the command "test" does; set while none runs.
std::function<void(UTF16String const&, UTF16OutputStream&)> S_test;

struct TestCommand : Command {
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override {
        S_test(inArguments, ioOut);
    }
    static Command* Make(UTF16String const& inName, UTF16String const& inHelp) {
        return new TestCommand(inName, inHelp);
    }
};

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
        CommandRegistry::RegisterCommand(u"test"_utf16, u"test"_utf16, TestCommand::Make);
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
    S_test = [&](UTF16String const& inArguments, UTF16OutputStream& ioOut) {
        EXPECT_TRUE(pool->IsCurrentThreadExecutorThread());
        ioOut << inArguments << u'\n';
        if (inArguments == u"throw"_utf16) {
            throw std::runtime_error("it is\nbroken");
        }
        bool const isFlood = inArguments == u"flood"_utf16;
        EXPECT_TRUE(ioOut << UTF16String(isFlood ? 2 * kMostOutputUnits : 0, u'\u20AC'));
    };
    auto const big = "test " + std::string(kMostLineBytes - 9, 'x');
    auto const flood =
        tests::Narrow(u"flood\n"_utf16 + UTF16String(kMostOutputUnits - 6, u'\u20AC'));
    std::tuple<std::string, Outcome, std::string, std::string> const cases[] = {
        {std::string("test a\0caf\u00E9", 12), Outcome::kRan, std::string("a\0caf\u00E9\n", 8), ""},
        {"test a\nb", Outcome::kRan, "a b\n", ""},
        {big, Outcome::kRan, big.substr(5) + '\n', ""},
        {big + 'x', Outcome::kRefused, "", "the line is longer than 65536 bytes"},
        {std::string(1'000'000, 'x'), Outcome::kRefused, "", "the line is longer than 65536 bytes"},
        {"test throw", Outcome::kFailed, "throw\n", "it is\uFFFDbroken"},
        {"", Outcome::kNoCommand, "", ""},
        {"test \xFF", Outcome::kRefused, "", "the line is not UTF-8"},
        {"test flood", Outcome::kRan, flood, "the output was too long, and is cut"},
    };
    auto console = Attach();
    for (auto const& [line, outcome, output, note] : cases) {
        SCOPED_TRACE(line.substr(0, 80));
        auto const answer = console.ExecuteCommand(tests::AsUTF8(line));
        EXPECT_EQ(answer.outcome, outcome);
        EXPECT_TRUE(answer.output == tests::AsUTF8(output)) << answer.output.size();
        EXPECT_EQ(answer.note, note);
    }
    EXPECT_EQ(console.CompleteLine("tes and more"_utf8, 3).candidates, std::vector{"test"_utf8});
}

TEST_F(Listening, NamesOfAnyKindAreHarmlessAndFound) {
    auto const pool = Pool();
    auto const zero = u"a"_utf16 + UTF16String(1, 0) + u"b"_utf16;
    auto const longName = UTF16String(1000, u'\u20AC');
    std::vector<Listener> listeners;
    for (auto const& name : {u"../evil"_utf16, zero, u".hidden\n%41"_utf16, longName, u""_utf16}) {
        listeners.push_back(Listen(name, pool));
        EXPECT_TRUE(listeners.back().IsListening()) << listeners.back().Failure();
        auto const shown = name.empty() ? u"No Client Name"_utf16 : name.substr(0, 23);
        auto console = Attach(shown);
        ExpectEcho(console, "a");
        EXPECT_EQ(ListeningPrograms(shown).at(0).name, shown);
    }
    Fill("brindle/stranger", "");
    Fill("brindle/a%zz.5", "");
    EXPECT_EQ(ListeningPrograms().size(), listeners.size());
    EXPECT_EQ(Listen(zero, pool).Failure(), "this process listens under the same name already");
    tests::Environment const nowhere({{"XDG_RUNTIME_DIR", std::nullopt}});
    EXPECT_EQ(Listen(zero, pool).Failure(),
              "the user has no runtime directory: XDG_RUNTIME_DIR names none");
}

TEST_F(Listening, LinesThatComeAtOnceAreAnsweredInTheirOrder) {
    auto const listener = Listen(u"test"_utf16, Pool(4));
    RawClient client;
    std::string lines, answers;
    for (int i = 0; i < 100; ++i) {
        lines += "run test " + std::to_string(i) + "\r\n";
        answers += std::to_string(i) + '|';
    }
    client.Send(lines + "nonsense\n\n" + std::string(100'000, 'x') + "\nrun test last\nrun test");
    client.EndInput();
    std::string received;
    while (auto const reply = client.Receive()) {
        received += (reply->kind == ReplyKind::kRefused ? "refused" : reply->body) + '|';
    }
    EXPECT_EQ(received, "test|" + answers + "refused|refused|refused|last|")
        << "and a line without its end is no line";
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
    auto const program = ListeningPrograms(u"test"_utf16).at(0);
    ExpectEcho(more.back(), "a"); // who has gone, as the search for programs, is noticed by then
    EXPECT_EQ(RemoteConsole(program).Failure(),
              "the program does not accept: too many consoles are attached");
    more.pop_back();
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
        mRunsAtOnce ? inFunction() : mPosted.set_value(inFunction);
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
            auto const answer = asked.get();
            EXPECT_EQ(answer.outcome, Outcome::kRefused);
            EXPECT_EQ(answer.note, "the program does not run commands any more");
        } else {
            listener = Listener();
            EXPECT_EQ(asked.get().outcome, Outcome::kDisconnected);
            EXPECT_EQ(executor.use_count(), 1);
            waiting();
        }
    }
}

TEST_F(Listening, CommandMayCloseTheListenerThatRunsIt) {
    std::thread([] {}).join(); // beside the first thread a sanitizer starts one of its own
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
        EXPECT_EQ(Attach().ExecuteCommand("test"_utf8).outcome, Outcome::kDisconnected);
        isClosed.get_future().wait();
        EXPECT_TRUE(ListeningPrograms().empty());
    }
    while (ThreadCount() > threadsBefore) {
        std::this_thread::yield();
    }
}

#if !defined(__SANITIZE_THREAD__) // which allows no threads in such a child
TEST_F(Listening, ForkedChildCanListenAndLeavesTheParentAlone) {
    auto const pool = Pool();
    auto listener = Listen(u"test"_utf16, pool);
    auto console = Attach();
    tests::ChildProcess child([&] {
        bool isRight = !listener.IsListening();
        listener = Listener();
        auto const childs = Listen(u"child"_utf16, Pool());
        isRight &= Attach(u"child"_utf16).ExecuteCommand("test"_utf8).outcome == Outcome::kRan;
        Terminate();
        return isRight ? 0 : 1;
    });
    EXPECT_EQ(child.Wait(), 0);
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
                    EXPECT_FALSE(listener.IsListening());
                    EXPECT_TRUE(ListeningPrograms().empty());
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
