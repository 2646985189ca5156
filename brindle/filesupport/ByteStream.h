#pragma once

#include <brindle/Export.h>

#include <cstdint>
#include <exception>
#include <vector>

namespace brindle::filesupport {

/// A stream cannot do what it was asked; the base of all exceptions of the byte streams.
class BRN_API byte_stream_exception : public std::exception {
public:
    byte_stream_exception() noexcept = default;
    byte_stream_exception(byte_stream_exception const&) noexcept = default;
    byte_stream_exception& operator=(byte_stream_exception const&) noexcept = default;
    ~byte_stream_exception() override;
};

/// Reading past the end, writing past the end of a fixed buffer, or seeking past the end.
class BRN_API eof_error : public byte_stream_exception {
public:
    eof_error() noexcept = default;
    eof_error(eof_error const&) noexcept = default;
    eof_error& operator=(eof_error const&) noexcept = default;
    ~eof_error() override;
};

/// A failure that the system's file services reported.
class BRN_API io_error : public byte_stream_exception {
public:
    io_error() noexcept = default;
    io_error(io_error const&) noexcept = default;
    io_error& operator=(io_error const&) noexcept = default;
    ~io_error() override;
};

/// What input and output streams have in common: slots in which clients keep data of their own, and
/// callbacks at the stream's end. There are no error flags: every failure is an exception. A stream
/// is not copied, and serves one thread at a time.
class BRN_API ByteStream_base {
public:
    enum event {
        erase_event = 0 ///< the stream is being destroyed; its derived parts are gone already
    };

    using event_callback = void (*)(event inEvent, ByteStream_base& inStream, int inData);

    ByteStream_base(ByteStream_base const&) = delete;
    ByteStream_base& operator=(ByteStream_base const&) = delete;

    /// Calls the callbacks, first registered first. What a callback throws is dropped, and what it
    /// registers is not called.
    virtual ~ByteStream_base();

    /// A new index for `iword` and `pword`, good for every stream of the process: 0, then 1, and so
    /// on. Any thread may call.
    static int xalloc() noexcept;

    /// The slot of index `inIndex`; a slot that is new is 0, or null. A reference holds until the
    /// next call with a higher index. Throws `byte_stream_exception` for a negative index, which
    /// `xalloc` never gives.
    std::int32_t& iword(int inIndex);
    void*& pword(int inIndex);

    /// Has `inCallback` called with `inData` at the stream's destruction, once for each
    /// registration. Null is ignored.
    void register_callback(event_callback inCallback, int inData);

protected:
    ByteStream_base() = default;

private:
    struct Callback {
        event_callback function;
        int data;
    };

    std::vector<std::int32_t> mIntegers;
    std::vector<void*> mPointers;
    std::vector<Callback> mCallbacks;
};

/// A source of bytes. Positions count bytes from the start of the data.
class BRN_API IByteStream : public ByteStream_base {
public:
    IByteStream() = default;
    ~IByteStream() override;

    /// The next byte. Throws `eof_error` at the end of the data.
    virtual std::uint8_t Get() = 0;

    /// Reads `inCount` bytes, as so many calls of `Get` would.
    virtual void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount);

    /// Sets and tells the position of the next byte.
    virtual void CurPos(std::uint64_t inPosition) = 0;
    virtual std::uint64_t CurPos() const = 0;

    /// The number of bytes from the start of the data to its end, wherever the position; 0 from a
    /// stream that is empty or does not know.
    virtual std::uint64_t Length() const;
};

/// A taker of bytes. Positions count bytes from the start of the data.
class BRN_API OByteStream : public ByteStream_base {
public:
    OByteStream() = default;
    ~OByteStream() override;

    virtual void Put(std::uint8_t inValue) = 0;

    /// Writes `inCount` bytes, as so many calls of `Put` would.
    virtual void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount);

    /// Sets and tells the position of the next byte.
    virtual void CurPos(std::uint64_t inPosition) = 0;
    virtual std::uint64_t CurPos() const = 0;
};

} // namespace brindle::filesupport
