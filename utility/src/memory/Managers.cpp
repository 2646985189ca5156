#include "utility/src/memory/Managers.h"

#include "platform/Fork.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/memory/AllocatorManager.h"
#include "utility/src/memory/ChunkSource.h"
#include "utility/src/memory/TopChunks.h"

#include <exception>
#include <utility>

namespace brindle::utility {

namespace Managers {

std::atomic<State> S_state{State::kNotStarted};
std::array<Storage, SizeClasses::kCount> S_storage;
std::array<DepotStorage, SizeClasses::kStocked> S_depots;

namespace {

// Held while the managers are constructed and during a fork: a child finds all of them or none.
Mutex S_making;

template <std::size_t Class>
void Make() {
    constexpr ChunkPlan kPlan = SizeClasses::PlanOf(Class);
    using Manager = AllocatorManager<kPlan.blockSize, kPlan.firstChunkSize, kPlan.secondChunkSize,
                                     kPlan.keepOneChunk>;
    static_assert(sizeof(Manager) == sizeof(ChunkedAllocator));
    new (&S_storage[Class]) Manager;
}

template <std::size_t... Classes>
void MakeAll(std::index_sequence<Classes...>) {
    (Make<Classes>(), ...);
    for (std::size_t i = 0; i < SizeClasses::kStocked; ++i) {
        new (&S_depots[i]) Depot(SizeClasses::kBlockSizes[i]);
    }
}

bool IsReady() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady;
}

/// Calls the function for each in lock order: the depots, then the classes of requests, then those
/// of chunks.
template <typename Function>
void ForEach(Function inFunction) {
    if (!IsReady()) {
        return;
    }
    for (std::size_t i = 0; i < SizeClasses::kStocked; ++i) {
        inFunction(DepotOf(i));
    }
    for (std::size_t i = 0; i < SizeClasses::kCount; ++i) {
        inFunction(Of(i));
    }
}

// The locks of the managers are held from one of these functions to the next.

void CloseForFork() BRN_ACQUIRE(S_making) {
    S_making.Lock();
    ForEach([](auto& ioHolder) BRN_NO_THREAD_SAFETY_ANALYSIS { ioHolder.CloseForFork(); });
}

void OpenInParent() BRN_RELEASE(S_making) {
    ForEach([](auto& ioHolder) BRN_NO_THREAD_SAFETY_ANALYSIS { ioHolder.OpenInParent(); });
    S_making.Unlock();
}

void OpenInChild() BRN_RELEASE(S_making) {
    ForEach([](auto& ioHolder) BRN_NO_THREAD_SAFETY_ANALYSIS { ioHolder.OpenInChild(); });
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
        MutexLock const lock(S_making);
        MakeAll(std::make_index_sequence<SizeClasses::kCount>());
        if (!platform::OnFork(CloseForFork, OpenInParent, OpenInChild)) {
            return false;
        }
        S_state.store(State::kReady, std::memory_order_release);
        return true;
    } catch (std::exception const&) {
        return false;
    }
}

} // namespace Managers

void* AllocateChunkMemory(std::uint32_t inSize) {
    if (inSize == kLargeChunk) {
        return TopChunks::Allocate();
    }
    return Managers::Of(inSize == kSmallChunk ? SizeClasses::kOfSmallChunks
                                              : SizeClasses::kOfMiddleChunks)
        .Allocate(inSize);
}

void DisposeChunkMemory(void* inMemory, std::uint32_t inSize) noexcept {
    if (inSize == kLargeChunk) {
        TopChunks::Free(inMemory);
    } else {
        Managers::Of(inSize == kSmallChunk ? SizeClasses::kOfSmallChunks
                                           : SizeClasses::kOfMiddleChunks)
            .DisposeSeveral(&inMemory, 1);
    }
}

} // namespace brindle::utility
