#include <brindle/threads/CancelToken.h>

namespace brindle::threads {

char const* cancelled_exception::what() const noexcept {
    return "the work was cancelled";
}

} // namespace brindle::threads
