#pragma once

#include <brindle/Export.h>

#include <exception>

namespace brindle::threads {

/// An executor did not accept a function, usually because it was shut down, or it released a
/// function that it had accepted without calling it.
class BRN_API task_refused_exception : public std::exception {
public:
    char const* what() const noexcept override; ///< in English, for developers
};

} // namespace brindle::threads
