#include "bench/property_entries.h"

#include <brindle/proplist/PropListUtils.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/xml_parser.hpp>
#include <malloc.h>

#include <algorithm>
#include <any>
#include <cstdint>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace brindle;
using namespace brindle::proplist;

void Write_Brindle(benchmark::State& ioState) {
    PropList list;
    AddEntries(list, Count(ioState));
    for (auto _ : ioState) {
        UTF8String text;
        utils::WritePropList(text, list);
        benchmark::DoNotOptimize(text.data());
    }
}

void Write_Plist(benchmark::State& ioState) {
    Plist const list = MakePlist(Count(ioState));
    for (auto _ : ioState) {
        char* text = nullptr;
        std::uint32_t length = 0;
        plist_to_xml(list.get(), &text, &length);
        benchmark::DoNotOptimize(text);
        plist_to_xml_free(text);
    }
}

void Write_Tree(benchmark::State& ioState) {
    auto const tree = MakeTree(Count(ioState));
    for (auto _ : ioState) {
        std::ostringstream text;
        boost::property_tree::write_xml(text, tree);
        benchmark::DoNotOptimize(text);
    }
}

/// The heap memory of a list, by entry. The row's time, which is not used, is that of filling and
/// destroying the list.
template <typename Make>
void Memory(benchmark::State& ioState, Make inMake) {
    int const count = Count(ioState);
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(inMake(count));
    }
    // Only once, because counting the free blocks of the heap takes a while.
    auto const before = mallinfo2();
    auto const list = inMake(count);
    auto const after = mallinfo2();
    auto const bytes = after.uordblks + after.hblkhd - before.uordblks - before.hblkhd;
    ioState.counters["bytes_each"] = static_cast<double>(bytes) / count;
}

void Memory_Brindle(benchmark::State& ioState) {
    Memory(ioState, [](int inCount) {
        auto list = std::make_unique<PropList>();
        AddEntries(*list, inCount);
        return list;
    });
}

void Memory_Plist(benchmark::State& ioState) {
    Memory(ioState, MakePlist);
}

void Memory_Tree(benchmark::State& ioState) {
    Memory(ioState, MakeTree);
}

/// A list as a client would write it with the standard library.
class AnyMap {
public:
    template <typename T>
    bool GetValue(std::string const& inKey, T& outValue) const {
        auto const found = mValues.find(inKey);
        auto const* const value =
            found == mValues.end() ? nullptr : std::any_cast<T>(&found->second);
        if (value == nullptr) {
            return false;
        }
        outValue = *value;
        return true;
    }

    template <typename T>
    void SetValue(std::string const& inKey, T const& inValue) {
        mValues[inKey] = inValue;
    }

private:
    std::map<std::string, std::any> mValues;
};

/// 100 keys of preferences in random order, each with a text of 9 or of 33 bytes.
template <typename String>
std::vector<std::pair<String, String>> const& Keys() {
    static auto const keys = [] {
        std::vector<std::pair<String, String>> result;
        for (std::string const section :
             {"window.main", "window.tools", "document", "export.video", "export.audio", "colours",
              "shortcuts", "network.proxy", "cache", "recent"}) {
            for (std::string const name : {"left", "top", "width", "height", "visible", "path",
                                           "interval", "quality", "last_used", "profile"}) {
                std::string const key = section + '.' + name;
                std::string const text =
                    result.size() % 2 == 0 ? "the value" : std::string(33, 'x');
                result.emplace_back(String(key.begin(), key.end()),
                                    String(text.begin(), text.end()));
            }
        }
        std::shuffle(result.begin(), result.end(), std::mt19937(1));
        return result;
    }();
    return keys;
}

/// Numbers of keys in a random order, too long for a branch predictor to learn.
std::vector<std::size_t> const& Order() {
    static auto const order = [] {
        std::mt19937 random(2);
        std::vector<std::size_t> result(10'000);
        std::generate(result.begin(), result.end(), [&random] { return random() % 100; });
        return result;
    }();
    return order;
}

template <typename List, typename String>
void SetOne(List& ioList, std::size_t inKey, int inValue) {
    auto const& [key, text] = Keys<String>()[inKey];
    switch (inKey % 4) {
    case 0:
        ioList.SetValue(key, std::int32_t{inValue});
        break;
    case 1:
        ioList.SetValue(key, inValue * 0.5);
        break;
    case 2:
        ioList.SetValue(key, inValue % 3 == 0);
        break;
    default:
        ioList.SetValue(key, text);
    }
}

template <typename List, typename String>
void SetAll(List& ioList) {
    for (std::size_t key = 0; key < Keys<String>().size(); ++key) {
        SetOne<List, String>(ioList, key, 1);
    }
}

template <typename List, typename String>
void Set(benchmark::State& ioState) {
    List list;
    SetAll<List, String>(list);
    for (auto _ : ioState) {
        int value = 0;
        for (std::size_t const key : Order()) {
            SetOne<List, String>(list, key, ++value);
        }
        benchmark::ClobberMemory();
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(Order().size()));
}

template <typename List, typename String>
void Get(benchmark::State& ioState) {
    List list;
    SetAll<List, String>(list);
    std::int32_t integer = 0;
    double number = 0;
    bool flag = false;
    String text;
    for (auto _ : ioState) {
        bool all = true;
        for (std::size_t const index : Order()) {
            String const& key = Keys<String>()[index].first;
            switch (index % 4) {
            case 0:
                all &= list.GetValue(key, integer);
                break;
            case 1:
                all &= list.GetValue(key, number);
                break;
            case 2:
                all &= list.GetValue(key, flag);
                break;
            default:
                all &= list.GetValue(key, text);
            }
            benchmark::ClobberMemory();
        }
        if (!all) {
            ioState.SkipWithError("not found");
        }
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(Order().size()));
}

BENCHMARK(Write_Brindle)->Name("WritePropList/brindle")->Arg(20)->Arg(100'000);
BENCHMARK(Write_Plist)->Name("WritePropList/libplist")->Arg(20)->Arg(100'000);
BENCHMARK(Write_Tree)->Name("WritePropList/Boost.PropertyTree")->Arg(20)->Arg(100'000);
BENCHMARK(Memory_Brindle)->Name("PropList, memory for each entry/brindle")->Arg(100'000);
BENCHMARK(Memory_Plist)->Name("PropList, memory for each entry/libplist")->Arg(100'000);
BENCHMARK(Memory_Tree)->Name("PropList, memory for each entry/Boost.PropertyTree")->Arg(100'000);
BENCHMARK(Get<PropList, UTF8String>)->Name("PropList::GetValue/brindle/of 100 keys");
BENCHMARK(Get<AnyMap, std::string>)->Name("PropList::GetValue/std::map of std::any/of 100 keys");
BENCHMARK(Set<PropList, UTF8String>)->Name("PropList::SetValue/brindle/of 100 keys");
BENCHMARK(Set<AnyMap, std::string>)->Name("PropList::SetValue/std::map of std::any/of 100 keys");

} // namespace
