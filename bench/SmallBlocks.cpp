#include <brindle/utility/SmallBlockAllocator.h>

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <array>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

// The functions of the peer's library, which were renamed when it was linked in.
extern "C" {
void* jemalloc_malloc(std::size_t inSize);
void jemalloc_free(void* inBlock);
}

namespace {

using brindle::utility::SmallBlockAllocator::Allocate;
using brindle::utility::SmallBlockAllocator::Dispose;

struct Brindle {
    static void* Take(unsigned int inSize) { return Allocate(inSize); }
    static void Give(void* inBlock, unsigned int inSize) { Dispose(inBlock, inSize); }
};

struct Jemalloc {
    static void* Take(unsigned int inSize) { return jemalloc_malloc(inSize); }
    static void Give(void* inBlock, unsigned int) { jemalloc_free(inBlock); }
};

struct Glibc {
    static void* Take(unsigned int inSize) { return std::malloc(inSize); }
    static void Give(void* inBlock, unsigned int) { std::free(inBlock); }
};

/// An allocator from a library of its own, called through pointers, so that the program's own
/// allocator stays in place.
template <char const* const* kNames>
struct Loaded {
    inline static void* (*S_take)(std::size_t) = nullptr;
    inline static void (*S_give)(void*) = nullptr;

    static bool Load() {
        void* const library = ::dlopen(kNames[0], RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            return false;
        }
        S_take = reinterpret_cast<void* (*)(std::size_t)>(::dlsym(library, kNames[1]));
        S_give = reinterpret_cast<void (*)(void*)>(::dlsym(library, kNames[2]));
        return S_take != nullptr && S_give != nullptr;
    }
    static void* Take(unsigned int inSize) { return S_take(inSize); }
    static void Give(void* inBlock, unsigned int) { S_give(inBlock); }
};

constexpr char const* kMimalloc[] = {"libmimalloc.so.2", "mi_malloc", "mi_free"};
constexpr char const* kTcmalloc[] = {"libtcmalloc_minimal.so.4", "malloc", "free"};

/// Each thread allocates a block, writes to it and frees it.
template <typename Who>
void Pairs(benchmark::State& ioState) {
    for (auto _ : ioState) {
        void* const block = Who::Take(32);
        benchmark::DoNotOptimize(*static_cast<int*>(block) = 1);
        Who::Give(block, 32);
    }
}

/// Allocates `range` blocks, then frees them in the order in which they were allocated.
template <typename Who>
void Batches(benchmark::State& ioState) {
    std::vector<void*> blocks(static_cast<std::size_t>(ioState.range(0)));
    for (auto _ : ioState) {
        for (void*& block : blocks) {
            block = Who::Take(32);
            *static_cast<int*>(block) = 1;
        }
        for (void* const block : blocks) {
            Who::Give(block, 32);
        }
    }
    ioState.SetItemsProcessed(ioState.iterations() * ioState.range(0));
}

/// The sizes of all classes, whose figures are one row together.
std::vector<unsigned int> const& AllSizes() {
    static auto const sizes = [] {
        std::vector<unsigned int> result;
        for (unsigned int size = 1; size <= 8192; size = result.back() + 1) {
            result.push_back(brindle::utility::SmallBlockAllocator::GetActualAllocationSize(size));
        }
        return result;
    }();
    return sizes;
}

/// Batches of each class in turn.
template <typename Who>
void EveryClass(benchmark::State& ioState) {
    auto const& sizes = AllSizes();
    std::vector<void*> blocks(static_cast<std::size_t>(ioState.range(0)));
    for (auto _ : ioState) {
        for (unsigned int const size : sizes) {
            for (std::size_t repeat = 100 / blocks.size(); repeat + 1 != 0; --repeat) {
                for (void*& block : blocks) {
                    block = Who::Take(size);
                    *static_cast<int*>(block) = 1;
                }
                for (void* const block : blocks) {
                    Who::Give(block, size);
                }
            }
        }
    }
}

using Sizes = std::array<std::uint16_t, 4096>;

template <unsigned int kUpTo>
Sizes const& RandomSizes() {
    static auto const sizes = [] {
        Sizes result{};
        std::uint32_t random = 1;
        for (auto& size : result) {
            random = random * 1664525U + 1013904223U;
            size = static_cast<std::uint16_t>((random >> 8) % kUpTo + 1);
        }
        return result;
    }();
    return sizes;
}

/// `range` blocks of random sizes live at once; the oldest goes, a new one comes.
template <typename Who, unsigned int kUpTo>
void Random(benchmark::State& ioState) {
    auto const& sizes = RandomSizes<kUpTo>();
    struct Block {
        void* address;
        std::uint16_t size;
    };
    std::vector<Block> blocks(static_cast<std::size_t>(ioState.range(0)));
    std::size_t next = 0;
    for (auto& block : blocks) {
        block.size = sizes[next++ % sizes.size()];
        block.address = Who::Take(block.size);
    }
    std::size_t oldest = 0;
    for (auto _ : ioState) {
        Block& block = blocks[oldest];
        oldest = oldest + 1 == blocks.size() ? 0 : oldest + 1;
        Who::Give(block.address, block.size);
        block.size = sizes[next++ % sizes.size()];
        block.address = Who::Take(block.size);
        *static_cast<char*>(block.address) = 1;
    }
    for (auto const& block : blocks) {
        Who::Give(block.address, block.size);
    }
}

/// Passes pages of blocks from one thread to another; at most sixteen are under way.
class Belt {
public:
    static constexpr std::size_t kPage = 256;
    using Page = std::array<void*, kPage>;

    Page& ToWrite() {
        std::unique_lock<std::mutex> lock(mMutex);
        mChanged.wait(lock, [this] { return mWritten - mRead < mPages.size(); });
        return mPages[mWritten % mPages.size()];
    }
    void Written() { Count(mWritten); }
    Page& ToRead() {
        std::unique_lock<std::mutex> lock(mMutex);
        mChanged.wait(lock, [this] { return mRead != mWritten; });
        return mPages[mRead % mPages.size()];
    }
    void Read() { Count(mRead); }

private:
    void Count(std::size_t& ioPages) {
        std::lock_guard<std::mutex> const lock(mMutex);
        ++ioPages;
        mChanged.notify_one();
    }

    std::mutex mMutex;
    std::condition_variable mChanged;
    std::size_t mWritten = 0;
    std::size_t mRead = 0;
    alignas(64) std::array<Page, 16> mPages{};
};

/// The first thread allocates blocks, the other frees them.
template <typename Who>
void HandOver(benchmark::State& ioState) {
    static Belt S_belt;
    for (auto _ : ioState) {
        if (ioState.thread_index() == 0) {
            for (void*& block : S_belt.ToWrite()) {
                block = Who::Take(32);
                *static_cast<int*>(block) = 1;
            }
            S_belt.Written();
        } else {
            for (void* const block : S_belt.ToRead()) {
                Who::Give(block, 32);
            }
            S_belt.Read();
        }
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(Belt::kPage) / 2);
}

template <typename Who>
void Register(std::string const& inName) {
    auto const name = [&](char const* inCase) { return "small blocks/" + inName + "/" + inCase; };
    using benchmark::RegisterBenchmark;
    RegisterBenchmark(name("32 bytes, one thread").c_str(), Pairs<Who>);
    RegisterBenchmark(name("32 bytes, two threads").c_str(), Pairs<Who>)->Threads(2)->UseRealTime();
    RegisterBenchmark(name("32 bytes in hundreds, one thread").c_str(), Batches<Who>)->Arg(100);
    RegisterBenchmark(name("32 bytes in thousands, one thread").c_str(), Batches<Who>)->Arg(1000);
    RegisterBenchmark(name("32 bytes in thousands, two threads").c_str(), Batches<Who>)
        ->Arg(1000)
        ->Threads(2)
        ->UseRealTime();
    RegisterBenchmark(name("32 bytes, one thread to another").c_str(), HandOver<Who>)
        ->Threads(2)
        ->UseRealTime();
    RegisterBenchmark(name("every class, one at a time").c_str(), EveryClass<Who>)->Arg(1);
    RegisterBenchmark(name("every class, in hundreds").c_str(), EveryClass<Who>)->Arg(100);
    RegisterBenchmark(name("every class, in thousands").c_str(), EveryClass<Who>)->Arg(1000);
    RegisterBenchmark(name("every class, in hundreds, two threads").c_str(), EveryClass<Who>)
        ->Arg(100)
        ->Threads(2)
        ->UseRealTime();
    RegisterBenchmark(name("up to 512 bytes, one at a time").c_str(), Random<Who, 512>)->Arg(1);
    RegisterBenchmark(name("up to 512 bytes, a thousand held").c_str(), Random<Who, 512>)
        ->Arg(1000);
    RegisterBenchmark(name("up to 8192 bytes, a thousand held").c_str(), Random<Who, 8192>)
        ->Arg(1000);
    RegisterBenchmark(name("up to 512 bytes, a thousand held, two threads").c_str(),
                      Random<Who, 512>)
        ->Arg(1000)
        ->Threads(2)
        ->UseRealTime();
}

template <typename Who>
void RegisterLoaded(std::string const& inName) {
    if (Who::Load()) {
        Register<Who>(inName);
    }
}

bool const S_areRegistered = [] {
    Register<Brindle>("brindle");
    Register<Glibc>("glibc malloc");
    RegisterLoaded<Loaded<kMimalloc>>("mimalloc");
    Register<Jemalloc>("jemalloc");
    RegisterLoaded<Loaded<kTcmalloc>>("tcmalloc");
    return true;
}();

} // namespace
