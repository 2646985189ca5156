#include <brindle/threads/TaskRefused.h>

namespace brindle::threads {

char const* task_refused_exception::what() const noexcept {
    return "the executor did not accept the function";
}

} // namespace brindle::threads
