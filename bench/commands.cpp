// A command that is looked up among a thousand and run, beside the standard map with the same
// comparison, which needs neither a line taken apart nor a lock.

#include <brindle/console/CommandRegistry.h>
#include <brindle/console/Console.h>
#include <brindle/utility/Numbers.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>

namespace {

using namespace brindle;

class Nothing : public console::Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream&) override {
        benchmark::DoNotOptimize(inArguments.data());
    }
};

console::Command* Create(UTF16String const& inName, UTF16String const& inHelp) {
    return new Nothing(inName, inHelp);
}

struct IsBefore {
    static std::uint16_t LowerCased(std::uint16_t inUnit) {
        return static_cast<std::uint16_t>(inUnit >= 'A' && inUnit <= 'Z' ? inUnit + 32 : inUnit);
    }
    bool operator()(UTF16String const& inLHS, UTF16String const& inRHS) const {
        return std::lexicographical_compare(
            inLHS.begin(), inLHS.end(), inRHS.begin(), inRHS.end(),
            [](auto lhs, auto rhs) { return LowerCased(lhs) < LowerCased(rhs); });
    }
};

constexpr int kCommands = 1000;

UTF16String NameOf(int inIndex) {
    return u"application.command."_utf16 + utility::NumberToString(inIndex);
}

void Run_Brindle(benchmark::State& ioState) {
    std::vector<UTF16String> lines;
    for (int i = 0; i < kCommands; ++i) {
        auto const name = NameOf(i);
        console::CommandRegistry::RegisterCommand(name, name, Create);
        lines.push_back(name + u" some arguments"_utf16);
    }
    UTF16OutputStream out;
    std::size_t next = 0;
    for (auto _ : ioState) {
        console::ExecuteCommand(lines[next], out);
        next = (next + 7) % lines.size();
    }
    for (int i = 0; i < kCommands; ++i) {
        std::unique_ptr<console::Command> const owned(
            console::CommandRegistry::UnregisterCommand(NameOf(i)));
    }
}

void Run_Map(benchmark::State& ioState) {
    std::map<UTF16String, std::unique_ptr<console::Command>, IsBefore> commands;
    std::vector<UTF16String> names;
    for (int i = 0; i < kCommands; ++i) {
        auto const name = NameOf(i);
        commands[name].reset(Create(name, name));
        names.push_back(name);
    }
    UTF16OutputStream out;
    auto const arguments = u"some arguments"_utf16;
    std::size_t next = 0;
    for (auto _ : ioState) {
        commands.find(names[next])->second->Execute(arguments, out);
        next = (next + 7) % names.size();
    }
}

BENCHMARK(Run_Brindle)->Name("command/brindle/among 1000");
BENCHMARK(Run_Map)->Name("command/std::map, split already/among 1000");

} // namespace
