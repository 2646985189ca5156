#pragma once

#include <brindle/Export.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <streambuf>
#include <string>

namespace brindle::debug {

/// Writes NUL-terminated text to the developer's debug channel. Any thread may call.
BRN_API void DebugTrace(char const* inText);

/// A buffer that hands its text to `Emit` in chunks of at most 255 units, when it is full and when
/// the stream is flushed. A surrogate pair across the border of two chunks becomes two surrogates
/// without partners. Used by one thread at a time.
///
/// `Emit` may write into its own stream. Up to 255 units written there are kept for the next flush;
/// more make the stream bad.
template <typename Unit, typename Traits = std::char_traits<Unit>>
class UTF16StreamBufferImpl : public std::basic_streambuf<Unit, Traits> {
public:
    UTF16StreamBufferImpl() { Restart(); }
    UTF16StreamBufferImpl(UTF16StreamBufferImpl const&) = delete;
    UTF16StreamBufferImpl& operator=(UTF16StreamBufferImpl const&) = delete;

protected:
    using typename std::basic_streambuf<Unit, Traits>::int_type;

    /// Emits what has been collected, and then collects the unit.
    int_type overflow(int_type inUnit = Traits::eof()) override {
        Flush();
        if (this->pptr() == this->epptr()) {
            return Traits::eof();
        }
        if (!Traits::eq_int_type(inUnit, Traits::eof())) {
            this->sputc(Traits::to_char_type(inUnit));
        }
        return Traits::not_eof(inUnit);
    }

    /// Emits what has been collected; never fails.
    int sync() override {
        Flush();
        return 0;
    }

    /// Receives a NUL-terminated chunk of at least one unit. A NUL inside the chunk ends it too.
    virtual void Emit(Unit const* inText) = 0;

    /// Every class that overrides `Emit` calls this in its destructor. What cannot be emitted at
    /// that point is lost.
    void FlushAtEnd() noexcept {
        try {
            Flush();
        } catch (...) {
            Restart();
        }
    }

private:
    static constexpr std::size_t kUnits = 256;

    void Flush() {
        if (mIsEmitting || this->pptr() == this->pbase()) {
            return;
        }
        // A copy, so that the array is free for what `Emit` writes into this stream.
        Unit chunk[kUnits];
        auto const count = this->pptr() - this->pbase();
        *std::copy_n(mUnits, count, chunk) = Unit();
        Restart();
        mIsEmitting = true;
        try {
            Emit(chunk);
        } catch (...) {
            mIsEmitting = false;
            if (this->pptr() == this->pbase()) {
                // The units are still in the array, and the next flush tries again.
                this->pbump(static_cast<int>(count));
            }
            throw;
        }
        mIsEmitting = false;
    }

    void Restart() noexcept { this->setp(mUnits, mUnits + kUnits - 1); }

    Unit mUnits[kUnits]; // the put area ends before the last unit
    bool mIsEmitting = false;
};

/// Passes chunks to `DebugTrace`, in UTF-8.
template <typename Unit, typename Traits = std::char_traits<Unit>>
class DebugStreamBuffer : public UTF16StreamBufferImpl<Unit, Traits> {
public:
    ~DebugStreamBuffer() override { this->FlushAtEnd(); }

protected:
    void Emit(Unit const* inText) override {
        DebugTrace(reinterpret_cast<char const*>(utility::UTF16to8(inText).c_str()));
    }
};

/// Writes chunks to standard output with `puts`, in UTF-8, so each becomes a line.
template <typename Unit, typename Traits = std::char_traits<Unit>>
class UTF16StdOutStreamBuffer : public UTF16StreamBufferImpl<Unit, Traits> {
public:
    ~UTF16StdOutStreamBuffer() override { this->FlushAtEnd(); }

protected:
    void Emit(Unit const* inText) override {
        std::puts(reinterpret_cast<char const*>(utility::UTF16to8(inText).c_str()));
    }
};

} // namespace brindle::debug
