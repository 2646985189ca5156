#pragma once

#include <brindle/Export.h>
#include <brindle/threads/Barrier.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// A handle to a `Barrier`, for copying into threads and work items: all copies refer to the same
/// barrier, which exists as long as a handle does or a thread waits at it.
///
/// Beside the standard library: a `std::shared_ptr` to a barrier in one object.
class BRN_API SyncPoint {
public:
    /// As for `Barrier`: a count of 0 throws `std::invalid_argument`.
    explicit SyncPoint(unsigned int inCount);
    SyncPoint(std::string const& inName, unsigned int inCount);
    SyncPoint(SyncPoint const& inOther);
    SyncPoint& operator=(SyncPoint const& inOther);
    virtual ~SyncPoint();

    /// As `Barrier::Wait`; every handle may be destroyed meanwhile.
    bool Wait();

private:
    boost::shared_ptr<Barrier> mBarrier;
};

} // namespace brindle::threads
