#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <vector>

namespace brindle::arrange::impl {

/// Spans a call in which the engine measures or arranges, and may call the client. A group that the
/// client replaces meanwhile may still be in use further up the stack, wherever it stands in the
/// tree; it is kept until the outermost pass on the calling thread has ended.
class Pass {
public:
    Pass() noexcept;
    Pass(Pass const&) = delete;
    Pass& operator=(Pass const&) = delete;
    ~Pass();

    /// Keeps the object until the outermost pass on this thread has ended. Returns false, and keeps
    /// nothing, if none is under way. Throws nothing but `std::bad_alloc`.
    static bool Keep(boost::shared_ptr<void> const& inObject);

private:
    std::vector<boost::shared_ptr<void>> mKept; // used by the outermost pass only
};

} // namespace brindle::arrange::impl
