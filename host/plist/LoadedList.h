#pragma once

#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>

namespace brindle::host {

/// Reads a property list from a file into an empty list. Throws `unreadable_error`, also for what
/// the library would report. No other thread may report errors meanwhile.
void LoadList(filesupport::File const& inFile, proplist::PropList& outList);

} // namespace brindle::host
