#include <brindle/utility/Guid.h>

#include <benchmark/benchmark.h>
#include <uuid/uuid.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using brindle::UTF16String;
using brindle::utility::Guid;

/// As many as an index keeps in the cache, so that branches cannot learn their pattern.
constexpr std::size_t kCount = 1024;

struct Identifiers {
    std::vector<std::array<std::uint8_t, 16>> bytes;
    std::vector<std::string> texts;
    std::vector<Guid> guids;
};

/// The same values for both libraries.
Identifiers const& TheIdentifiers() {
    static Identifiers const identifiers = [] {
        Identifiers made;
        for (std::size_t i = 0; i < kCount; ++i) {
            std::array<std::uint8_t, 16> bytes{};
            char text[37];
            uuid_generate_random(bytes.data());
            uuid_unparse_lower(bytes.data(), text);
            made.bytes.push_back(bytes);
            made.texts.emplace_back(text);
            made.guids.emplace_back(made.texts.back());
        }
        return made;
    }();
    return identifiers;
}

void SetItems(benchmark::State& ioState) {
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(kCount));
}

void ToText_Brindle(benchmark::State& ioState) {
    for (auto _ : ioState) {
        for (Guid const& guid : TheIdentifiers().guids) {
            benchmark::DoNotOptimize(guid.AsString());
        }
    }
    SetItems(ioState);
}

/// Into a new string, because the peer returns one.
void ToText_Libuuid(benchmark::State& ioState) {
    for (auto _ : ioState) {
        for (auto const& bytes : TheIdentifiers().bytes) {
            char text[37];
            uuid_unparse_lower(bytes.data(), text);
            benchmark::DoNotOptimize(UTF16String(text, text + 36));
        }
    }
    SetItems(ioState);
}

void FromText_Brindle(benchmark::State& ioState) {
    for (auto _ : ioState) {
        for (std::string const& text : TheIdentifiers().texts) {
            benchmark::DoNotOptimize(Guid(text));
        }
    }
    SetItems(ioState);
}

void FromText_Libuuid(benchmark::State& ioState) {
    for (auto _ : ioState) {
        for (std::string const& text : TheIdentifiers().texts) {
            uuid_t bytes;
            if (uuid_parse(text.c_str(), bytes) != 0) {
                std::abort();
            }
            benchmark::DoNotOptimize(bytes);
        }
    }
    SetItems(ioState);
}

void Create_Brindle(benchmark::State& ioState) {
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(Guid::CreateUnique());
    }
}

void Create_Libuuid(benchmark::State& ioState) {
    for (auto _ : ioState) {
        uuid_t bytes;
        uuid_generate_random(bytes);
        benchmark::DoNotOptimize(bytes);
    }
}

BENCHMARK(ToText_Brindle)->Name("Guid to text/brindle/1,024 Guids");
BENCHMARK(ToText_Libuuid)->Name("Guid to text/libuuid/1,024 Guids");
BENCHMARK(FromText_Brindle)->Name("Guid from text/brindle/1,024 texts");
BENCHMARK(FromText_Libuuid)->Name("Guid from text/libuuid/1,024 texts");
BENCHMARK(Create_Brindle)->Name("Guid::CreateUnique/brindle/one");
BENCHMARK(Create_Libuuid)->Name("Guid::CreateUnique/libuuid/one");

} // namespace
