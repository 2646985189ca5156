#pragma once

#include "Offload.h"

#include <brindle/proplist/TableLocalizer.h>

#include <set>

namespace offload {

/// What the program has, which outlives the window.
struct Host {
    proplist::PropList& preferences;
    proplist::TableLocalizer& texts;
    Executor pool;
    Executor loop;
};

/// Shows the window in which the user offloads one card after the other, until it is closed. With
/// the options "--start" and "--quit-when-done" the first offload needs no user. Returns whether
/// the last one succeeded.
bool RunWindow(Host const& inHost, std::set<std::string> const& inOptions);

} // namespace offload
