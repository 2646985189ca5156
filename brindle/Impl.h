#pragma once

#include <brindle/Export.h>

namespace brindle {

/// A base for clients' implementation classes that are held and deleted through one pointer type.
/// The library derives nothing from it.
struct BRN_API Impl {
    virtual ~Impl() = 0;
};

inline Impl::~Impl() = default;

} // namespace brindle
