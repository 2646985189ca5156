#include <brindle/filesupport/ByteStream.h>

#include <brindle/config/ErrorCodes.h>

#include <atomic>
#include <cstddef>

namespace brindle::filesupport {

namespace {

std::atomic<int> S_nextIndex{0};

template <typename Slot>
Slot& SlotAt(std::vector<Slot>& ioSlots, int inIndex) {
    if (inIndex < 0) {
        throw byte_stream_exception();
    }
    auto const index = static_cast<std::size_t>(inIndex);
    if (index >= ioSlots.size()) {
        ioSlots.resize(index + 1);
    }
    return ioSlots[index];
}

} // namespace

byte_stream_exception::~byte_stream_exception() = default;
eof_error::~eof_error() = default;
io_error::~io_error() = default;

char const* byte_stream_exception::Key() const noexcept {
    return config::kKey_StreamUse;
}
char const* eof_error::Key() const noexcept {
    return config::kKey_StreamEnd;
}
char const* io_error::Key() const noexcept {
    return config::kKey_StreamFailure;
}

ByteStream_base::~ByteStream_base() {
    // A callback may register another one, which must neither invalidate the loop nor prolong it.
    std::vector<Callback> callbacks;
    callbacks.swap(mCallbacks);
    for (Callback const& callback : callbacks) {
        try {
            callback.function(erase_event, *this, callback.data);
        } catch (...) {
            // A destructor must not throw, and the other callbacks still have to be called.
        }
    }
}

int ByteStream_base::xalloc() noexcept {
    return S_nextIndex.fetch_add(1, std::memory_order_relaxed);
}

std::int32_t& ByteStream_base::iword(int inIndex) {
    return SlotAt(mIntegers, inIndex);
}

void*& ByteStream_base::pword(int inIndex) {
    return SlotAt(mPointers, inIndex);
}

void ByteStream_base::register_callback(event_callback inCallback, int inData) {
    if (inCallback != nullptr) {
        mCallbacks.push_back({inCallback, inData});
    }
}

IByteStream::~IByteStream() = default;

void IByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    for (std::uint32_t i = 0; i < inCount; ++i) {
        outDestination[i] = Get();
    }
}

std::uint64_t IByteStream::Length() const {
    return 0;
}

OByteStream::~OByteStream() = default;

void OByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    for (std::uint32_t i = 0; i < inCount; ++i) {
        Put(inSource[i]);
    }
}

} // namespace brindle::filesupport
