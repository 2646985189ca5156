#pragma once

#include "platform/Errors.h"

#include <string>
#include <string_view>

namespace brindle::platform {

/// Starts a program without arguments, sends it the request on its standard input, and returns the
/// line of at most 256 bytes that it writes back on that same descriptor, without its line feed.
/// Blocks as long as the program runs.
///
/// The program gets default signal dispositions, an empty signal mask, /dev/null as standard
/// output, the caller's standard error, and no other descriptor. The caller may block or ignore any
/// signal, and another thread may wait for all children; neither a zombie nor a descriptor is left.
/// If the program ends early, the result is what it wrote until then.
///
/// Errors: 2, 3, 5 there is no such program, or it may not be executed; every other one: it cannot
/// be started. Throws `std::bad_alloc`.
Result<std::string> AskProgram(std::string const& inNativePath, std::string_view inRequest);

} // namespace brindle::platform
