#include <brindle/filesupport/RLEByteStream.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace brindle::filesupport {

namespace {

using Word = std::uint64_t;

constexpr Word kOnes = 0x0101010101010101;

Word Load(std::uint8_t const* inSource) {
    Word word;
    std::memcpy(&word, inSource, sizeof word);
    return word;
}

bool HasZeroByte(Word inWord) {
    return ((inWord - kOnes) & ~inWord & (kOnes << 7)) != 0;
}

/// How many bytes from the start on equal `inValue`.
std::uint32_t CountEqual(std::uint8_t const* inSource, std::uint32_t inCount,
                         std::uint8_t inValue) {
    std::uint32_t i = 0;
    while (inCount - i >= sizeof(Word) && Load(inSource + i) == kOnes * inValue) {
        i += sizeof(Word);
    }
    while (i < inCount && inSource[i] == inValue) {
        ++i;
    }
    return i;
}

/// How many bytes from the start on do not equal both bytes before them, two of which must be
/// there.
std::uint32_t CountLiterals(std::uint8_t const* inSource, std::uint32_t inCount) {
    auto const before1 = inSource - 1;
    auto const before2 = inSource - 2;
    std::uint32_t i = 0;
    for (; inCount - i >= sizeof(Word); i += sizeof(Word)) {
        auto const before = Load(before1 + i);
        if (HasZeroByte((Load(inSource + i) ^ before) | (Load(before2 + i) ^ before))) {
            break;
        }
    }
    while (i < inCount && (inSource[i] != before1[i] || inSource[i] != before2[i])) {
        ++i;
    }
    return i;
}

} // namespace

IRLEByteStream::~IRLEByteStream() = default;

/// Reads the head of the next packet, if the last one is used up.
void IRLEByteStream::NeedPacket() {
    if (mLiteralsLeft != 0 || mRepeatsLeft != 0) {
        return;
    }
    constexpr std::uint32_t kNoOperation = 0x80;
    std::uint32_t control = kNoOperation;
    while (control == kNoOperation) {
        control = mSource.Get();
    }
    if (control < kNoOperation) {
        mLiteralsLeft = control + 1;
    } else {
        mRepeated = mSource.Get();
        mRepeatsLeft = 257 - control;
    }
}

std::uint8_t IRLEByteStream::Get() {
    NeedPacket();
    if (mLiteralsLeft != 0) {
        --mLiteralsLeft;
        return mSource.Get();
    }
    --mRepeatsLeft;
    return mRepeated;
}

void IRLEByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    while (inCount != 0) {
        NeedPacket();
        std::uint32_t count;
        if (mLiteralsLeft != 0) {
            count = std::min(mLiteralsLeft, inCount);
            mLiteralsLeft -= count;
            mSource.ReadBlock(outDestination, count);
        } else {
            count = std::min(mRepeatsLeft, inCount);
            mRepeatsLeft -= count;
            std::memset(outDestination, mRepeated, count);
        }
        outDestination += count;
        inCount -= count;
    }
}

void IRLEByteStream::CurPos(std::uint64_t) {
    throw byte_stream_exception();
}

std::uint64_t IRLEByteStream::CurPos() const {
    throw byte_stream_exception();
}

ORLEByteStream::~ORLEByteStream() = default;

void ORLEByteStream::Put(std::uint8_t inValue) {
    Encode(inValue);
}

/// Sends off a full packet that the sink refused before: there is no room behind it.
void ORLEByteStream::NeedRoom() {
    if (mCount == kPacketSize) {
        WritePacket();
        if (mCount == kPacketSize) {
            throw byte_stream_exception();
        }
    }
}

void ORLEByteStream::Encode(std::uint8_t inValue) {
    NeedRoom();
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
            WritePacket();
            mCount = 0;
            mPacket[0] = inValue;
        }
    }
    if (mIsRun) {
        ++mCount;
    } else if (mCount > 2 && inValue == mPacket[mCount - 1] && inValue == mPacket[mCount - 2]) {
        mCount -= 2;
        try {
            WritePacket();
        } catch (...) {
            mCount += 2;
            throw;
        }
        mPacket[0] = inValue;
        mCount = 3;
        mIsRun = true;
    } else {
        mPacket[mCount++] = inValue;
    }
    if (mCount == kPacketSize) {
        WritePacket();
    }
}

void ORLEByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    std::uint32_t done = 0;
    while (done < inCount) {
        NeedRoom();
        auto const next = inSource + done;
        auto const room = std::min(inCount - done, kPacketSize - mCount);
        std::uint32_t count = 0;
        if (mIsRun && mCount != 0) {
            count = CountEqual(next, room, mPacket[0]);
        } else if (!mIsRun && mCount > 2 && done >= 2) {
            count = CountLiterals(next, room);
            std::memcpy(mPacket + mCount, next, count);
        }
        if (count == 0) {
            Encode(*next);
            ++done;
            continue;
        }
        done += count;
        mCount += count;
        if (mCount == kPacketSize) {
            WritePacket();
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
        WritePacket();
    }
}

void ORLEByteStream::WritePacket() {
    auto const isRepeat = mIsRun && mCount > 1;
    mSink.Put(static_cast<std::uint8_t>(isRepeat ? 257 - mCount : mCount - 1));
    mSink.WriteBlock(mPacket, isRepeat ? 1 : mCount);
    mCount = 0;
}

} // namespace brindle::filesupport
