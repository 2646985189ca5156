#include <brindle/threads/Barrier.h>

#include "threads/src/locks/ThreadErrors.h"

#include <boost/thread/barrier.hpp>

#include <stdexcept>
#include <utility>

namespace brindle::threads {

Barrier::Barrier(unsigned int inCount) : Barrier(std::string(), inCount) {}

Barrier::Barrier(std::string const& inName, unsigned int inCount) : mName(inName) {
    if (inCount == 0) {
        throw std::invalid_argument("count cannot be zero.");
    }
    mBarrier = ReportingThreadErrors([&] { return std::make_unique<boost::barrier>(inCount); });
}

Barrier::Barrier(Barrier& ioSource)
    : mName(ioSource.mName), mBarrier(std::move(ioSource.mBarrier)) {}

Barrier& Barrier::operator=(Barrier& ioSource) {
    mName = ioSource.mName;
    mBarrier = std::move(ioSource.mBarrier);
    return *this;
}

Barrier::~Barrier() = default;

bool Barrier::Wait() {
    return ReportingThreadErrors([&] { return mBarrier->wait(); });
}

} // namespace brindle::threads
