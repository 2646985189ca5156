#pragma once

#include <brindle/Export.h>

#include <memory>
#include <string>

namespace boost {
class barrier;
}

namespace brindle::threads {

/// A point where `inCount` threads wait for each other, any number of times.
///
/// A count of 0 throws `std::invalid_argument`. A lack of resources is reported through
/// `config::ThrowError`, and throws `boost::thread_resource_error` if the report returns.
///
/// Beside the standard library: as C++20's `std::barrier` without a completion function; `Wait` is
/// its `arrive_and_wait`.
class BRN_API Barrier {
public:
    ///@{
    /// The count is how many threads wait for each other. The name is kept for developers.
    explicit Barrier(unsigned int inCount);
    Barrier(std::string const& inName, unsigned int inCount);
    ///@}
    /// These take the source's barrier, and copy its name. From then on the source may only be
    /// destroyed or assigned to. No thread may wait at either meanwhile.
    Barrier(Barrier& ioSource);
    Barrier& operator=(Barrier& ioSource);
    virtual ~Barrier();

    /// Blocks until all threads have come. True for the last one, false for the others. What each
    /// thread did before is visible to all of them afterwards. The barrier must exist until all
    /// have returned. Boost's interruption ends the wait; the thread still counts as having come.
    bool Wait();

private:
    std::string mName;
    std::unique_ptr<boost::barrier> mBarrier;
};

} // namespace brindle::threads
