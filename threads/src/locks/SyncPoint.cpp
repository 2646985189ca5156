#include <brindle/threads/SyncPoint.h>

#include <boost/smart_ptr/make_shared.hpp>

namespace brindle::threads {

SyncPoint::SyncPoint(unsigned int inCount) : mBarrier(boost::make_shared<Barrier>(inCount)) {}

SyncPoint::SyncPoint(std::string const& inName, unsigned int inCount)
    : mBarrier(boost::make_shared<Barrier>(inName, inCount)) {}

SyncPoint::SyncPoint(SyncPoint const& inOther) = default;

SyncPoint& SyncPoint::operator=(SyncPoint const& inOther) = default;

SyncPoint::~SyncPoint() = default;

bool SyncPoint::Wait() {
    boost::shared_ptr<Barrier> const barrier = mBarrier;
    return barrier->Wait();
}

} // namespace brindle::threads
