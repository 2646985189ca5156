#include <brindle/console/CommandRegistry.h>

#include "tests/support/InThreads.h"
#include "tests/support/RecordingErrorManager.h"
#include "tests/support/Text.h"

#include <brindle/console/Console.h>
#include <brindle/debug/Contract.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <random>

namespace brindle::console {

namespace {

using namespace CommandRegistry;
using tests::Narrow;
using tests::Wide;

std::atomic<int> S_alive{0};
std::function<void()> S_work = [] {};

/// Does `S_work`, and prints its help and its arguments.
class Echo : public Command {
public:
    Echo(UTF16String const& inName, UTF16String const& inHelp) : Command(inName, inHelp) {
        ++S_alive;
    }
    ~Echo() override { --S_alive; }
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override {
        S_work();
        ioOut << GetName() << u'|' << GetHelp() << u'|' << inArguments;
    }
};

Command* Make(UTF16String const& inName, UTF16String const& inHelp) {
    return new Echo(inName, inHelp);
}

/// What a line prints; "-" if it is no command.
std::string Execute(std::string const& inLine) {
    std::basic_stringbuf<std::uint16_t> buffer;
    UTF16OutputStream out(&buffer);
    return ExecuteCommand(Wide(inLine), out) ? Narrow(buffer.str()) : "-" + Narrow(buffer.str());
}

/// True if the command had been executed.
bool Unregister(std::string const& inName) {
    return std::unique_ptr<Command>(UnregisterCommand(Wide(inName))) != nullptr;
}

void Forget(std::string const& inName) {
    Execute(inName);
    Unregister(inName);
}

TEST(CommandRegistry, AgreesWithAModel) {
    struct Entry {
        std::string name, help;
        bool isCreated;
    };
    std::map<std::string, Entry> model; // by lower-cased names
    // "[" and "_" lie between the upper and the lower case; the others are not of ASCII.
    std::string const names[] = {"a", "A", "ab", "aB", "a[", "a_", "Z", "\u00E9", "\u00C9"};
    auto const lowerCased = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), ::tolower);
        return text;
    };
    std::mt19937 random(1);
    for (int step = 0; step < 3000; ++step) {
        auto const& name = names[random() % std::size(names)];
        auto const found = model.find(lowerCased(name));
        auto const help = "help " + std::to_string(step);
        bool const isCreated = found != model.end() && found->second.isCreated;
        switch (random() % 4) {
        case 0:
            RegisterCommand(Wide(name), Wide(help), Make);
            model.insert({lowerCased(name), {name, help, false}});
            break;
        case 1:
            EXPECT_EQ(Unregister(name), isCreated);
            isCreated ? model.erase(found) : found;
            break;
        case 2:
            if (found == model.end()) {
                EXPECT_EQ(Execute(name), "-");
                break;
            }
            found->second.isCreated = true;
            EXPECT_EQ(Execute(name + "  x y "),
                      found->second.name + '|' + found->second.help + "|x y");
            break;
        default:
            std::string expected = "Currently installed commands.\r\n" + std::string(29, '-');
            for (auto const& [key, entry] : model) {
                expected += "\r\n" + entry.help;
            }
            std::basic_stringbuf<std::uint16_t> buffer;
            UTF16OutputStream out(&buffer);
            ListCommands(out);
            ASSERT_EQ(Narrow(buffer.str()), expected + "\r\n\r\n") << "step " << step;
        }
    }
    for (auto const& name : names) {
        Forget(name);
    }
    EXPECT_EQ(S_alive, 0);
}

TEST(CommandRegistry, SurvivesFactoriesThatCreateNothing) {
    debug::DisableContractDialog();
    tests::RecordingErrorManager errors;
    RegisterCommand(u"none"_utf16, u"none"_utf16, nullptr);
    debug::EnableContractDialog();
    EXPECT_EQ(errors.codes.size(), 1u);
    EXPECT_EQ(Execute("none"), "-");
    static int calls = 0;
    RegisterCommand(u"later"_utf16, u"help"_utf16, [](auto const& inName, auto const& inHelp) {
        return calls++ == 0 ? nullptr : Make(inName, inHelp);
    });
    EXPECT_EQ(Execute("later"), "-");
    EXPECT_FALSE(Unregister("later"));
    EXPECT_EQ(Execute("later"), "later|help|") << "it was still registered";
    EXPECT_TRUE(Unregister("later"));
}

TEST(CommandRegistry, KeepsACommandThatIsRemovedUntilItHasEnded) {
    auto const both = [] {
        RegisterCommand(u"outer"_utf16, u"first"_utf16, Make);
        RegisterCommand(u"inner"_utf16, u"inner"_utf16, Make);
    };
    both();
    int depth = 0;
    S_work = [&] {
        if (++depth == 1) {
            EXPECT_EQ(Execute("inner"), "inner|inner|") << "which removes both";
            EXPECT_EQ(S_alive, 1) << "the inner one has ended";
            both();
        } else {
            EXPECT_FALSE(Unregister("outer"));
            EXPECT_FALSE(Unregister("inner"));
            EXPECT_EQ(Execute("outer"), "-");
        }
    };
    EXPECT_EQ(Execute("outer"), "outer|first|");
    EXPECT_EQ(S_alive, 0);
    S_work = [] { throw std::runtime_error("broken"); };
    EXPECT_THROW(Execute("outer"), std::runtime_error);
    S_work = [] {};
    EXPECT_TRUE(Unregister("outer")) << "an exception ends the execution";
    Forget("inner");
}

TEST(CommandRegistry, IsSafeInThreads) {
    std::atomic<int> executed{0};
    S_work = [&executed] { ++executed; };
    tests::InThreads(4, [](unsigned inThread) {
        std::mt19937 random(inThread);
        for (int step = 0; step < 3000; ++step) {
            std::string const name = "shared" + std::to_string(random() % 3);
            auto const action = random() % 4;
            if (action == 0) {
                RegisterCommand(Wide(name), Wide(name), Make);
            } else if (action == 1) {
                Unregister(name);
            } else {
                auto const text = Execute(name);
                EXPECT_TRUE(text == "-" || text == name + '|' + name + '|') << text;
            }
        }
    });
    for (std::string const name : {"shared0", "shared1", "shared2"}) {
        Forget(name);
    }
    EXPECT_EQ(S_alive, 0);
    EXPECT_GT(executed, 0);
    S_work = [] {};
}

TEST(CommandRegistry, LeavesAClientsCommandOfABuiltInName) {
    RegisterCommand(u"debug.get"_utf16, u"mine"_utf16, Make);
    Initialize();
    EXPECT_EQ(Execute("debug.get"), "debug.get|mine|");
    Terminate();
    EXPECT_EQ(Execute("DEBUG.GET x"), "debug.get|mine|x");
    Forget("debug.get");
}

} // namespace

} // namespace brindle::console
