#pragma once

#include "host/Diagnostics.h"

#include <brindle/proplist/PropList.h>

#include <string>

namespace brindle::host {

/// Reads a property list from the file at a native path. False if there is none that is whole: the
/// reason is reported, and the list is empty. A list of a newer version is reported too, but the
/// result is true, and the list holds what could be understood.
bool LoadPropListFile(std::string const& inPath, proplist::PropList& outList,
                      Diagnostics& ioDiagnostics);

} // namespace brindle::host
