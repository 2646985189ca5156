#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace brindle::utility {

/// Holds an object whose destructor never runs, so that static objects of clients may use it until
/// the process ends, in whatever order they are destroyed.
template <typename Object>
class NeverDestroyed {
public:
    template <typename... Arguments>
    explicit NeverDestroyed(Arguments&&... inArguments) {
        ::new (mStorage) Object(std::forward<Arguments>(inArguments)...);
    }
    NeverDestroyed(NeverDestroyed const&) = delete;
    NeverDestroyed& operator=(NeverDestroyed const&) = delete;

    [[nodiscard]] Object& Get() noexcept {
        return *std::launder(reinterpret_cast<Object*>(mStorage));
    }

private:
    alignas(Object) std::byte mStorage[sizeof(Object)];
};

} // namespace brindle::utility
