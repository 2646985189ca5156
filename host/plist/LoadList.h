#pragma once

#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>

namespace brindle::host {

/// Reads a property list from a file into an empty list. Throws `unreadable_error`, also for errors
/// that the library reports to the error manager, which is replaced meanwhile: no other thread may
/// report errors during the call.
void LoadList(filesupport::File const& inFile, proplist::PropList& outList);

} // namespace brindle::host
