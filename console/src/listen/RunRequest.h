#pragma once

#include "console/src/listen/Protocol.h"

namespace brindle::console {

/// Does what a request asks for, on the calling thread, and returns what to reply. What a command
/// throws is described in the reply. Throws only `std::bad_alloc`.
Reply RunRequest(Request const& inRequest);

} // namespace brindle::console
