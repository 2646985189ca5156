#pragma once

#include <brindle/Export.h>

namespace brindle {

/// A base for a client's implementation classes, so that one pointer type can hold and delete any
/// of them. The library itself derives nothing from it.
struct BRN_API Impl {
    virtual ~Impl() = 0;
};

inline Impl::~Impl() = default;

} // namespace brindle
