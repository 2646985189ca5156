#include <brindle/debug/TraceExecutorExceptions.h>

#include "threads/src/executors/DropException.h"

#include <brindle/debug/Trace.h>

#include <exception>
#include <string>

namespace brindle::debug {

namespace {

std::string Describe(std::exception_ptr const& inException) {
    try {
        std::rethrow_exception(inException);
    } catch (std::exception const& problem) {
        return problem.what();
    } catch (...) {
        return "not a std::exception";
    }
}

void TraceException(std::exception_ptr const& inException, char const* inExecutorName) {
    using namespace literals;
    constexpr std::int32_t kVolume = 6;
    auto const category = "Executors"_utf8;
    if (TraceEnabled(category, kVolume, true)) {
        std::string const name = *inExecutorName != '\0' ? inExecutorName : "an event loop";
        auto const text =
            "an exception left a function posted to " + name + ": " + Describe(inException);
        TraceMessage(category, kVolume, text.c_str());
    }
}

} // namespace

void TraceExecutorExceptions(bool inTrace) noexcept {
    threads::SetDroppedExceptionTrace(inTrace ? TraceException : nullptr);
}

} // namespace brindle::debug
