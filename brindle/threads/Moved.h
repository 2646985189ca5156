#pragma once

#include <boost/smart_ptr/make_shared_object.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <type_traits>
#include <utility>

namespace brindle::threads {

/// A function that can be copied, made of one that can only be moved: the copies share it, and the
/// last one destroys it. An executor that drops it thereby releases what it owns.
///
///     pool->Post(Moved([file = std::move(file)] { Write(*file); }), 0);
///
/// Throws `std::bad_alloc`.
template <typename Function>
[[nodiscard]] auto Moved(Function&& inFunction) {
    using Stored = std::decay_t<Function>;
    return [shared = boost::make_shared<Stored>(std::forward<Function>(inFunction))](
               auto&&... inArguments) -> decltype(auto) {
        return (*shared)(std::forward<decltype(inArguments)>(inArguments)...);
    };
}

} // namespace brindle::threads
