#pragma once

#include <brindle/Export.h>
#include <brindle/threads/Barrier.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// A `Barrier` that is copied freely into threads and work items: all copies meet at one barrier.
/// It stays for who waits at it when every handle has gone.
class BRN_API SyncPoint {
public:
    /// As for `Barrier`: a count of 0 is a `std::invalid_argument`.
    explicit SyncPoint(unsigned int inCount);
    SyncPoint(std::string const& inName, unsigned int inCount);
    SyncPoint(SyncPoint const& inOther);
    SyncPoint& operator=(SyncPoint const& inOther);
    virtual ~SyncPoint();

    /// As `Barrier::Wait`, but every handle may go meanwhile.
    bool Wait();

private:
    boost::shared_ptr<Barrier> mBarrier;
};

} // namespace brindle::threads
