#include <brindle/threads/AsyncExecutor.h>

namespace brindle::threads {

AsyncExecutor::~AsyncExecutor() = default;

} // namespace brindle::threads
