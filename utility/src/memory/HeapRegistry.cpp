#include "utility/src/memory/HeapRegistry.h"

#include "platform/AlignedMemory.h"
#include "platform/Barrier.h"
#include "platform/Fork.h"
#include "platform/ThreadEnd.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/base/ThreadAnnotations.h"
#include "utility/src/memory/RegionStore.h"

#include <exception>
#include <new>
#include <type_traits>
#include <utility>

namespace brindle::utility::HeapRegistry {

std::atomic<State> S_state{State::kNotStarted};

namespace {

using RegistryLock = threads::FreezableMutexLock;

struct Registry {
    threads::FreezableMutex mutex;
    ThreadHeap* all = nullptr;       // guarded by the mutex
    ThreadHeap* abandoned = nullptr; // guarded by the mutex
    RegionStore store;
};

// Held during construction and across a fork, so that a child never has half a registry.
Mutex S_making;
std::aligned_storage_t<sizeof(Registry), 64> S_storage;

Registry& The() noexcept {
    return *std::launder(reinterpret_cast<Registry*>(&S_storage));
}

bool IsMade() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady;
}

/// Adopts an abandoned heap, or creates one; null without memory.
ThreadHeap* Acquire() noexcept {
    ThreadHeap* abandoned = nullptr;
    {
        RegistryLock const lock(The().mutex);
        abandoned = The().abandoned;
        if (abandoned != nullptr) {
            The().abandoned = std::exchange(abandoned->nextAbandoned, nullptr);
        }
    }
    if (abandoned != nullptr) {
        abandoned->Adopt();
        return abandoned;
    }
    void* const memory = platform::AllocateAligned(sizeof(ThreadHeap), alignof(ThreadHeap));
    if (memory == nullptr) {
        return nullptr;
    }
    auto* const heap = new (memory) ThreadHeap(The().store);
    RegistryLock const lock(The().mutex);
    heap->nextOfAll = std::exchange(The().all, heap);
    return heap;
}

void Abandon(ThreadHeap& ioHeap) noexcept {
    ioHeap.Abandon();
    RegistryLock const lock(The().mutex);
    ioHeap.nextAbandoned = std::exchange(The().abandoned, &ioHeap);
}

void EndThread(void* inHeap) {
    // What the thread allocates or frees after this, it does without a heap of its own.
    ThreadSlots::t_mineP = &ThreadSlots::S_ended;
    Abandon(*static_cast<ThreadHeap*>(inHeap));
}

void CloseForFork() BRN_NO_THREAD_SAFETY_ANALYSIS {
    S_making.Lock();
    if (IsMade()) {
        The().mutex.Freeze();
        for (ThreadHeap* heap = The().all; heap != nullptr; heap = heap->nextOfAll) {
            heap->CloseForFork();
        }
        The().store.CloseForFork();
    }
}

void OpenInParent() BRN_NO_THREAD_SAFETY_ANALYSIS {
    if (IsMade()) {
        The().store.OpenInParent();
        for (ThreadHeap* heap = The().all; heap != nullptr; heap = heap->nextOfAll) {
            heap->OpenInParent();
        }
        The().mutex.Thaw();
    }
    S_making.Unlock();
}

void OpenInChild() BRN_NO_THREAD_SAFETY_ANALYSIS {
    if (IsMade()) {
        The().store.OpenInChild();
        The().mutex.ThawInChild();
        The().abandoned = nullptr;
        for (ThreadHeap* heap = The().all; heap != nullptr; heap = heap->nextOfAll) {
            heap->OpenInChild();
            if (heap != MineOrNull()) {
                // Its owner does not exist in the child. The blocks of that thread stay in use.
                heap->nextAbandoned = std::exchange(The().abandoned, heap);
            }
        }
    }
    S_making.Unlock();
}

} // namespace

bool Initialize() noexcept {
    State state = State::kNotStarted;
    if (!S_state.compare_exchange_strong(state, State::kInProgress, std::memory_order_acq_rel,
                                         std::memory_order_acquire)) {
        return state == State::kReady;
    }
    try {
        utility::MutexLock const lock(S_making);
        new (&S_storage) Registry;
        platform::PrepareBarriers();
        if (!platform::SetThreadEndCall(EndThread) ||
            !platform::OnFork(CloseForFork, OpenInParent, OpenInChild)) {
            return false;
        }
        S_state.store(State::kReady, std::memory_order_release);
        return true;
    } catch (std::exception const&) {
        return false;
    }
}

ThreadHeap* MineOrNull() noexcept {
    ThreadSlots& slots = ThreadSlots::Mine();
    bool const isHeap = &slots != &ThreadSlots::S_notMade && &slots != &ThreadSlots::S_ended;
    return isHeap ? static_cast<ThreadHeap*>(&slots) : nullptr;
}

ThreadHeap* MineOrMade() noexcept {
    if (&ThreadSlots::Mine() != &ThreadSlots::S_notMade) {
        return MineOrNull();
    }
    ThreadHeap* const heap = Acquire();
    if (heap == nullptr) {
        return nullptr;
    }
    if (!platform::CallAtThreadEnd(heap)) {
        Abandon(*heap);
        return nullptr;
    }
    ThreadSlots::t_mineP = heap;
    return heap;
}

void* AllocateWithoutHeap(std::size_t inClass) {
    ThreadHeap* const heap = Acquire();
    if (heap == nullptr) {
        throw std::bad_alloc();
    }
    struct Keeper {
        ThreadHeap& heap;
        ~Keeper() { Abandon(heap); }
    } const keeper{*heap};
    return heap->AllocateSlowly(inClass);
}

Total Count() {
    ThreadHeap* const mine = MineOrNull();
    RegistryLock const lock(The().mutex);
    Total total;
    for (ThreadHeap* heap = The().all; heap != nullptr; heap = heap->nextOfAll) {
        heap == mine ? heap->CountMine(total.classes) : heap->CountOthers(total.classes);
        total.bytesFromSystem += heap->Regions() * Region::kSize;
    }
    // After the heaps, as draining them may have moved regions to the store.
    total.bytesFromSystem += The().store.Kept();
    return total;
}

void Release() {
    if (ThreadHeap* const mine = MineOrNull()) {
        mine->Release();
    }
    The().store.ReleaseAll();
}

} // namespace brindle::utility::HeapRegistry
