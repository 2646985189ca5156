#pragma once

#include <brindle/arrange/IArrangement.h>

#include <string>

namespace brindle::arrange::impl {

/// An alternative in words: how its node stands, and the groups inside in brackets, down to a few
/// levels and up to a limited length.
std::string FormOf(IArrangement const& inArrangement);

} // namespace brindle::arrange::impl
