// block_memory brindle|malloc CASE: prints the resident memory of the process at its peak and at
// the end of a case, in MiB above that at its start. To measure another allocator, preload its
// library and use `malloc`.

#include <brindle/utility/SmallBlockAllocator.h>

#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using brindle::utility::SmallBlockAllocator::Allocate;
using brindle::utility::SmallBlockAllocator::Dispose;

bool S_isBrindle = true;

struct Block {
    void* address;
    unsigned int size;
};

Block Take(unsigned int inSize) {
    void* const block = S_isBrindle ? Allocate(inSize) : std::malloc(inSize);
    std::memset(block, 1, inSize);
    return {block, inSize};
}
void Give(Block const& inBlock) {
    S_isBrindle ? Dispose(inBlock.address, inBlock.size) : std::free(inBlock.address);
}

double ResidentMiB() {
    std::ifstream file("/proc/self/statm");
    long size = 0;
    long resident = 0;
    file >> size >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1048576;
}

double S_start = 0;
double S_peak = 0;

void Sample() {
    S_peak = std::max(S_peak, ResidentMiB() - S_start);
}

using Blocks = std::vector<Block>;
using Random32 = std::minstd_rand;

void InThreads(unsigned int inCount, std::function<void(unsigned int)> const& inFunction) {
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < inCount; ++i) {
        threads.emplace_back(inFunction, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

constexpr unsigned int kPool = 4;

/// The number of blocks in a GiB, but at most 16 Mi, which limits the size of the list of blocks.
std::size_t CountOf(unsigned int inSize) {
    return std::min((std::size_t{1} << 30) / inSize, std::size_t{1} << 24);
}

/// Allocates a GiB of blocks of one size and frees them in random order.
void Random(unsigned int inSize) {
    // The list itself is freed before the final figure is taken.
    std::size_t const count = CountOf(inSize);
    Blocks* const blocks = new Blocks(count);
    for (Block& block : *blocks) {
        block = Take(inSize);
    }
    Sample();
    std::shuffle(blocks->begin(), blocks->end(), Random32(1));
    for (Block const& block : *blocks) {
        Give(block);
    }
    delete blocks;
}

/// The same in the threads of a pool. Each frees blocks that any of them allocated, and all threads
/// still exist when the final figure is taken.
void RandomInPool(unsigned int inSize) {
    std::size_t const count = CountOf(inSize) / kPool;
    Blocks* const blocks = new Blocks(count * kPool);
    std::mutex mutex;
    std::condition_variable changed;
    unsigned int arrived = 0;
    auto const meet = [&](std::function<void()> const& inLast) {
        std::unique_lock<std::mutex> lock(mutex);
        unsigned int const turn = arrived / (kPool + 1);
        if (++arrived % (kPool + 1) == 0) {
            inLast();
            changed.notify_all();
        }
        changed.wait(lock, [&] { return arrived / (kPool + 1) != turn; });
    };
    auto const shuffle = [&] {
        Sample();
        std::shuffle(blocks->begin(), blocks->end(), Random32(1));
    };
    auto const finish = [&] {
        delete blocks;
        std::printf("peak %.1f final %.1f\n", S_peak, ResidentMiB() - S_start);
        std::fflush(stdout);
        ::_exit(0);
    };
    std::thread main([&] {
        meet(shuffle);
        meet(finish);
    });
    InThreads(kPool, [&](unsigned int inThread) {
        for (std::size_t i = 0; i < count; ++i) {
            (*blocks)[inThread * count + i] = Take(inSize);
        }
        meet(shuffle);
        for (std::size_t i = 0; i < count; ++i) {
            Give((*blocks)[inThread * count + i]);
        }
        meet(finish);
    });
    main.join();
}

void Phases() {
    for (unsigned int size = 16; size <= 128; size += 8) {
        Blocks blocks((64U << 20) / size);
        for (Block& block : blocks) {
            block = Take(size);
        }
        Sample();
        std::shuffle(blocks.begin(), blocks.end(), Random32(size));
        for (Block const& block : blocks) {
            Give(block);
        }
    }
}

void Sawtooth() {
    Random32 random(1);
    Blocks blocks;
    for (int tooth = 0; tooth < 12; ++tooth) {
        while (blocks.size() < 400'000) {
            blocks.push_back(Take(8 + static_cast<unsigned int>(random()) % 500));
        }
        Sample();
        std::shuffle(blocks.begin(), blocks.end(), random);
        while (blocks.size() > 20'000) {
            Give(blocks.back());
            blocks.pop_back();
        }
    }
    for (Block const& block : blocks) {
        Give(block);
    }
}

void ProducerAndConsumer() {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Blocks> belt;
    InThreads(2, [&](unsigned int inThread) {
        Random32 random(inThread);
        for (int batch = 0; batch < 400; ++batch) {
            if (inThread == 0) {
                Blocks blocks(5000);
                for (Block& block : blocks) {
                    block = Take(16 + static_cast<unsigned int>(random()) % 240);
                }
                std::unique_lock<std::mutex> lock(mutex);
                changed.wait(lock, [&] { return belt.size() < 20; });
                belt.push_back(std::move(blocks));
                changed.notify_all();
                Sample();
            } else {
                std::unique_lock<std::mutex> lock(mutex);
                changed.wait(lock, [&] { return !belt.empty(); });
                Blocks const blocks = std::move(belt.front());
                belt.pop_front();
                changed.notify_all();
                lock.unlock();
                for (Block const& block : blocks) {
                    Give(block);
                }
            }
        }
    });
}

/// Short-lived threads that leave half of their blocks for another thread to free.
void ComeAndGo() {
    std::deque<Blocks> left;
    for (int round = 0; round < 60; ++round) {
        std::vector<Blocks> made(4);
        InThreads(4, [&](unsigned int inThread) {
            Random32 random(inThread + 4 * static_cast<unsigned int>(round));
            for (int i = 0; i < 10'000; ++i) {
                made[inThread].push_back(Take(8 + static_cast<unsigned int>(random()) % 500));
            }
            Blocks::iterator const half = made[inThread].begin() + 5'000;
            std::for_each(half, made[inThread].end(), Give);
            made[inThread].erase(half, made[inThread].end());
        });
        Sample();
        for (Blocks& blocks : made) {
            left.push_back(std::move(blocks));
        }
        while (left.size() > 40) {
            std::for_each(left.front().begin(), left.front().end(), Give);
            left.pop_front();
        }
    }
    for (Blocks const& blocks : left) {
        std::for_each(blocks.begin(), blocks.end(), Give);
    }
}

} // namespace

int main(int inCount, char** inArguments) {
    std::string const name = inCount == 3 ? inArguments[2] : "";
    std::map<std::string, std::function<void()>> cases{{"phases", Phases},
                                                       {"sawtooth", Sawtooth},
                                                       {"producer-consumer", ProducerAndConsumer},
                                                       {"come-and-go", ComeAndGo}};
    for (unsigned int const size : {8U, 32U, 64U, 144U, 512U, 1024U}) {
        cases["random-" + std::to_string(size)] = [size] { Random(size); };
        cases["pool-" + std::to_string(size)] = [size] { RandomInPool(size); };
    }
    auto const found = cases.find(name);
    if (found == cases.end()) {
        std::fputs("block_memory brindle|malloc CASE, where CASE is one of\n", stderr);
        for (auto const& each : cases) {
            std::fprintf(stderr, "  %s\n", each.first.c_str());
        }
        return 2;
    }
    S_isBrindle = std::strcmp(inArguments[1], "brindle") == 0;
    S_start = ResidentMiB();
    found->second();
    std::printf("peak %.1f final %.1f\n", S_peak, ResidentMiB() - S_start);
    return 0;
}
