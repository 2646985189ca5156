#include <brindle/filesupport/RLEByteStream.h>

#include "filesupport/src/streams/StreamEnd.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace brindle::filesupport {

namespace {

using Word = std::uint64_t;

constexpr Word kOnes = 0x0101010101010101;

Word Load(std::uint8_t const* inSource) {
    Word word;
    std::memcpy(&word, inSource, sizeof word);
    return word;
}

/// Sets the top bit of each byte that is zero, and clears all other bits.
Word ZeroBytes(Word inWord) {
    constexpr Word kLowBits = kOnes * 0x7F;
    return ~(((inWord & kLowBits) + kLowBits) | inWord | kLowBits);
}

/// The index, in memory order, of the first byte that is not zero. `inWord` is not 0. Unlike a loop
/// over bytes this has no branch that the processor could mispredict.
std::uint32_t FirstByteSet(Word inWord) {
    int const bits = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? __builtin_ctzll(inWord)
                                                               : __builtin_clzll(inWord);
    return static_cast<std::uint32_t>(bits) / 8;
}

/// The number of bytes at the start that equal `inValue`.
std::uint32_t CountEqual(std::uint8_t const* inSource, std::uint32_t inCount,
                         std::uint8_t inValue) {
    std::uint32_t i = 0;
    for (; inCount - i >= sizeof(Word); i += sizeof(Word)) {
        if (Word const others = Load(inSource + i) ^ (kOnes * inValue)) {
            return i + FirstByteSet(others);
        }
    }
    while (i < inCount && inSource[i] == inValue) {
        ++i;
    }
    return i;
}

/// The number of bytes up to the first that equals both bytes before it. There are at least two
/// bytes before `inSource`.
std::uint32_t CountLiterals(std::uint8_t const* inSource, std::uint32_t inCount) {
    auto const before1 = inSource - 1;
    auto const before2 = inSource - 2;
    std::uint32_t i = 0;
    for (; inCount - i >= sizeof(Word); i += sizeof(Word)) {
        auto const before = Load(before1 + i);
        if (Word const thirds =
                ZeroBytes((Load(inSource + i) ^ before) | (Load(before2 + i) ^ before))) {
            return i + FirstByteSet(thirds);
        }
    }
    while (i < inCount && (inSource[i] != before1[i] || inSource[i] != before2[i])) {
        ++i;
    }
    return i;
}

} // namespace

IRLEByteStream::~IRLEByteStream() = default;

/// Reads the head of the next packet if the last one is used up. Returns false at the end of the
/// data.
bool IRLEByteStream::HasPacket() {
    if (mLiteralsLeft != 0 || mRepeatsLeft != 0) {
        return true;
    }
    constexpr std::uint32_t kNoOperation = 0x80;
    std::uint32_t control = kNoOperation;
    try {
        while (control == kNoOperation) {
            control = mSource.Get();
        }
    } catch (eof_error const&) {
        return false;
    }
    if (control < kNoOperation) {
        mLiteralsLeft = control + 1;
    } else {
        mRepeated = mSource.Get();
        mRepeatsLeft = 257 - control;
    }
    return true;
}

std::uint8_t IRLEByteStream::Get() {
    if (!HasPacket()) {
        impl::ThrowEnd(*this, config::FileOperation::kRead);
    }
    if (mLiteralsLeft != 0) {
        --mLiteralsLeft;
        return mSource.Get();
    }
    --mRepeatsLeft;
    return mRepeated;
}

void IRLEByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    if (ReadUpTo(outDestination, inCount) < inCount) {
        impl::ThrowEnd(*this, config::FileOperation::kRead);
    }
}

std::uint32_t IRLEByteStream::ReadUpTo(std::uint8_t* outDestination, std::uint32_t inCount) {
    std::uint32_t done = 0;
    while (done < inCount && HasPacket()) {
        std::uint32_t count;
        if (mLiteralsLeft != 0) {
            count = std::min(mLiteralsLeft, inCount - done);
            mLiteralsLeft -= count;
            mSource.ReadBlock(outDestination + done, count);
        } else {
            count = std::min(mRepeatsLeft, inCount - done);
            mRepeatsLeft -= count;
            std::memset(outDestination + done, mRepeated, count);
        }
        done += count;
    }
    return done;
}

void IRLEByteStream::CurPos(std::uint64_t) {
    throw byte_stream_exception();
}

std::uint64_t IRLEByteStream::CurPos() const {
    throw byte_stream_exception();
}

ORLEByteStream::~ORLEByteStream() = default;

/// Writes the first `inCount` pending bytes by the virtual `WritePacket`. Afterwards nothing is
/// pending, whatever an override did. If it throws, everything stays pending.
void ORLEByteStream::SendPacket(std::uint32_t inCount) {
    auto const before = std::exchange(mCount, inCount);
    try {
        WritePacket();
    } catch (...) {
        mCount = before;
        throw;
    }
    mCount = 0;
}

/// Adds the next `inCount` bytes of the packet buffer to the packet, and writes it if it is full.
void ORLEByteStream::Take(std::uint32_t inCount) {
    if (mCount + inCount == kPacketSize) {
        SendPacket(kPacketSize);
    } else {
        mCount += inCount;
    }
}

void ORLEByteStream::Put(std::uint8_t inValue) {
    if (mCount == 0) {
        mPacket[0] = inValue;
        mCount = 1;
        mIsRun = true;
        return;
    }
    if (mIsRun && inValue != mPacket[0]) {
        if (mCount == 1) {
            mIsRun = false;
        } else {
            SendPacket(mCount);
            mPacket[0] = inValue;
        }
    }
    if (mIsRun) {
        Take(1);
    } else if (mCount > 2 && inValue == mPacket[mCount - 1] && inValue == mPacket[mCount - 2]) {
        SendPacket(mCount - 2);
        mPacket[0] = inValue;
        mCount = 3;
        mIsRun = true;
    } else {
        mPacket[mCount] = inValue;
        Take(1);
    }
}

void ORLEByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    std::uint32_t done = 0;
    while (done < inCount) {
        auto const next = inSource + done;
        auto const room = std::min(inCount - done, kPacketSize - mCount);
        std::uint32_t count = 0;
        if (mIsRun && mCount != 0) {
            count = CountEqual(next, room, mPacket[0]);
        } else if (!mIsRun && mCount > 2 && done >= 2) {
            count = CountLiterals(next, room);
            std::memcpy(mPacket + mCount, next, count);
        }
        if (count != 0) {
            Take(count);
            done += count;
        } else {
            ORLEByteStream::Put(*next);
            ++done;
        }
    }
}

void ORLEByteStream::CurPos(std::uint64_t) {
    throw byte_stream_exception();
}

std::uint64_t ORLEByteStream::CurPos() const {
    throw byte_stream_exception();
}

void ORLEByteStream::Flush() {
    if (mCount != 0) {
        SendPacket(mCount);
    }
}

void ORLEByteStream::WritePacket() {
    auto const isRepeat = mIsRun && mCount > 1;
    mSink.Put(static_cast<std::uint8_t>(isRepeat ? 257 - mCount : mCount - 1));
    mSink.WriteBlock(mPacket, isRepeat ? 1 : mCount);
    mCount = 0;
}

} // namespace brindle::filesupport
