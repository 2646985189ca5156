#pragma once

#include <brindle/proplist/PropList.h>

#include <string>

namespace brindle::host {

/// Reads a property list from a file, or from standard input if the name is "-", into an empty
/// list. Throws `unreadable_error`, also for errors that the library reports to the error manager,
/// which is replaced meanwhile: no other thread may report errors during the call.
void LoadList(std::string const& inName, proplist::PropList& outList);

} // namespace brindle::host
