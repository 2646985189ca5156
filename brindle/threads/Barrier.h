#pragma once

#include <brindle/Export.h>

#include <boost/thread/barrier.hpp>

#include <memory>
#include <string>

namespace brindle::threads {

/// A meeting point of `inCount` threads, any number of times over.
///
/// A count of 0 is a `std::invalid_argument`. That the system has no more resources is reported
/// through `config::ThrowError`, and is a `boost::thread_resource_error` if the report returns.
class BRN_API Barrier {
public:
    explicit Barrier(unsigned int inCount);
    Barrier(std::string const& inName, unsigned int inCount);
    /// Take the barrier of the source and a copy of its name. The source may only be destroyed or
    /// assigned to from then on. Nobody may wait at either meanwhile.
    Barrier(Barrier& ioSource);
    Barrier& operator=(Barrier& ioSource);
    virtual ~Barrier();

    /// Blocks until the last of the threads has come. True for that one, false for the others. What
    /// any of them did before is visible to all of them afterwards. The barrier stays until all
    /// have returned. Boost's interruption ends a wait; the thread still counts as one that has
    /// come.
    bool Wait();

private:
    std::string mName;
    std::unique_ptr<boost::barrier> mBarrier;
};

} // namespace brindle::threads
