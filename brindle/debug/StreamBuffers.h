#pragma once

#include <brindle/Export.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <streambuf>
#include <string>

namespace brindle::debug {

/// Sends NUL-terminated text to the developer's debug channel. Any thread may call.
BRN_API void DebugTrace(char const* inText);

/// A buffer that gives its text away in chunks of at most 255 units: when it is full, and when the
/// stream is flushed. A surrogate pair that a chunk's end divides is two lone surrogates. One
/// thread at a time.
template <typename Unit, typename Traits = std::char_traits<Unit>>
class UTF16StreamBufferImpl : public std::basic_streambuf<Unit, Traits> {
public:
    UTF16StreamBufferImpl() { Restart(); }
    UTF16StreamBufferImpl(UTF16StreamBufferImpl const&) = delete;
    UTF16StreamBufferImpl& operator=(UTF16StreamBufferImpl const&) = delete;

protected:
    using typename std::basic_streambuf<Unit, Traits>::int_type;

    int_type overflow(int_type inUnit = Traits::eof()) override {
        Flush();
        if (!Traits::eq_int_type(inUnit, Traits::eof())) {
            this->sputc(Traits::to_char_type(inUnit));
        }
        return Traits::not_eof(inUnit);
    }

    int sync() override {
        Flush();
        return 0;
    }

    /// Receives a NUL-terminated chunk; a NUL inside it ends it too. Not called without text.
    virtual void Emit(Unit const* inText) = 0;

    /// For the destructor of a class that is derived from this and has the final `Emit`. What
    /// cannot be emitted any more is lost.
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
        if (this->pptr() == this->pbase()) {
            return;
        }
        // The put area leaves the last unit free for this.
        *this->pptr() = Unit();
        Emit(mUnits);
        Restart();
    }

    void Restart() noexcept { this->setp(mUnits, mUnits + kUnits - 1); }

    Unit mUnits[kUnits];
};

/// Sends chunks to `DebugTrace`, in UTF-8.
template <typename Unit, typename Traits = std::char_traits<Unit>>
class DebugStreamBuffer : public UTF16StreamBufferImpl<Unit, Traits> {
public:
    ~DebugStreamBuffer() override { this->FlushAtEnd(); }

protected:
    void Emit(Unit const* inText) override {
        DebugTrace(reinterpret_cast<char const*>(utility::UTF16to8(inText).c_str()));
    }
};

/// Writes chunks to standard output with `puts`, in UTF-8: each is a line of its own.
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
