#pragma once

#include <functional>
#include <utility>

namespace brindle::tests {

/// Has the function called whenever this thread allocates, but not by the function itself, as long
/// as it lives. It stands for code of others that runs in the middle of the library's.
class AllocationHook {
public:
    explicit AllocationHook(std::function<void()> inFunction) : mFunction(std::move(inFunction)) {
        S_functionP = &mFunction;
    }
    AllocationHook(AllocationHook const&) = delete;
    AllocationHook& operator=(AllocationHook const&) = delete;
    ~AllocationHook() { S_functionP = nullptr; }

    static void Call() {
        if (auto* const function = std::exchange(S_functionP, nullptr)) {
            (*function)();
            S_functionP = function;
        }
    }

private:
    std::function<void()> mFunction;
    inline static thread_local std::function<void()>* S_functionP = nullptr;
};

} // namespace brindle::tests
