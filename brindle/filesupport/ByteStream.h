#pragma once

#include <brindle/Export.h>
#include <brindle/config/FileFailure.h>

#include <cstdint>
#include <exception>
#include <vector>

namespace brindle::filesupport {

/// The stream does not support the operation. Also the base of all exceptions of the byte streams.
/// The streams that work on a file record which one, the operation and the system's reason.
///
/// Beside the standard library: as `std::ios_base::failure`; but the streams have no state to ask
/// instead.
class BRN_API byte_stream_exception : public std::exception, public config::FileFailure {
public:
    byte_stream_exception() noexcept = default;
    byte_stream_exception(byte_stream_exception const&) noexcept = default;
    byte_stream_exception& operator=(byte_stream_exception const&) noexcept = default;
    ~byte_stream_exception() override;
    char const* Key() const noexcept override;
};

/// An attempt to read or seek past the end, or to write past the end of a fixed buffer.
class BRN_API eof_error : public byte_stream_exception {
public:
    eof_error() noexcept = default;
    eof_error(eof_error const&) noexcept = default;
    eof_error& operator=(eof_error const&) noexcept = default;
    ~eof_error() override;
    char const* Key() const noexcept override;
};

/// A failure of the operating system's file operations.
class BRN_API io_error : public byte_stream_exception {
public:
    io_error() noexcept = default;
    io_error(io_error const&) noexcept = default;
    io_error& operator=(io_error const&) noexcept = default;
    ~io_error() override;
    char const* Key() const noexcept override;
};

namespace impl {
struct BlockStream;
}

/// The common base of input and output streams: slots for data of the client, and callbacks at the
/// stream's destruction. There are no error flags; every failure is an exception. A stream cannot
/// be copied and is used by one thread at a time.
///
/// Beside the standard library: as `std::ios_base` without its flags: `xalloc`, `iword`, `pword`
/// and callbacks are the same.
class BRN_API ByteStream_base {
public:
    /// Why a callback is called.
    enum event {
        erase_event = 0 ///< the stream is being destroyed; its derived classes already are
    };

    /// Called with the event, the stream and the number that was registered. The stream must not be
    /// read or written: what derived classes hold is gone.
    using event_callback = void (*)(event inEvent, ByteStream_base& inStream, int inData);

    ByteStream_base(ByteStream_base const&) = delete;
    ByteStream_base& operator=(ByteStream_base const&) = delete;

    /// Calls the callbacks in the order of their registration. An exception of a callback is
    /// dropped, and a callback that is registered by another one is not called.
    virtual ~ByteStream_base();

    /// Returns a new index for `iword` and `pword` that is valid for every stream of the process:
    /// 0, then 1, and so on. Any thread may call.
    [[nodiscard]] static int xalloc() noexcept;

    /// The slot with the index `inIndex`, initially 0 or null. The reference is valid until the
    /// next call with a higher index. Throws `byte_stream_exception` if the index is negative.
    std::int32_t& iword(int inIndex);
    void*& pword(int inIndex);

    /// Makes the destructor call `inCallback` with `inData`, once for each registration. Null is
    /// ignored.
    void register_callback(event_callback inCallback, int inData);

protected:
    ByteStream_base() = default;
    /// For the classes of the library: what the copying operator may rely on.
    void SetBlocks(impl::BlockStream const& inBlocks) noexcept { mBlocks = &inBlocks; }
    /// For filters: the stream that this one reads or writes, so that failures can name its file.
    void SetFiltered(ByteStream_base const& inStream) noexcept { mFiltered = &inStream; }

private:
    friend struct impl::BlockStream;
    struct Callback {
        event_callback function;
        int data;
    };

    std::vector<std::int32_t> mIntegers;
    std::vector<void*> mPointers;
    std::vector<Callback> mCallbacks;
    impl::BlockStream const* mBlocks = nullptr;
    ByteStream_base const* mFiltered = nullptr;
};

/// A source of bytes. Positions count bytes from the start of the data.
///
/// Beside the standard library: as the reading half of a `std::streambuf`, which throws instead of
/// returning `eof`; `IStdByteStream` reads a `std::istream`.
class BRN_API IByteStream : public ByteStream_base {
public:
    IByteStream() = default;
    ~IByteStream() override;

    /// The next byte. Throws `eof_error` at the end of the data.
    virtual std::uint8_t Get() = 0;

    /// Reads `inCount` bytes, like that many calls of `Get`.
    virtual void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount);

    /// Sets or returns the position of the next byte.
    virtual void CurPos(std::uint64_t inPosition) = 0;
    [[nodiscard]] virtual std::uint64_t CurPos() const = 0;

    /// The number of bytes from the start of the data to its end, whatever the position is. 0 if
    /// the stream is empty or does not know its length.
    [[nodiscard]] virtual std::uint64_t Length() const;
};

/// A sink of bytes. Positions count bytes from the start of the data.
///
/// Beside the standard library: as the writing half of a `std::streambuf`, which throws instead of
/// returning `eof`; `OStdByteStream` writes to a `std::ostream`.
class BRN_API OByteStream : public ByteStream_base {
public:
    OByteStream() = default;
    ~OByteStream() override;

    /// Writes one byte at the position, which advances.
    virtual void Put(std::uint8_t inValue) = 0;

    /// Writes `inCount` bytes, like that many calls of `Put`.
    virtual void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount);

    /// Sets or returns the position of the next byte.
    virtual void CurPos(std::uint64_t inPosition) = 0;
    [[nodiscard]] virtual std::uint64_t CurPos() const = 0;
};

} // namespace brindle::filesupport
