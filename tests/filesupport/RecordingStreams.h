#pragma once

#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brindle::filesupport {

/// The position and size of one transfer of a block.
using Transfer = std::pair<std::uint64_t, std::uint64_t>;

/// Data in memory that takes down which blocks it is asked for, and fails every n-th call if told
/// to.
class RecordingSource : public IByteStream {
public:
    explicit RecordingSource(std::string inData) : data(std::move(inData)) {}

    std::uint8_t Get() override {
        std::uint8_t value = 0;
        ReadBlock(&value, 1);
        return value;
    }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        FailInTurn();
        reads.emplace_back(mPosition, inCount);
        if (mPosition > data.size() || inCount > data.size() - mPosition) {
            throw eof_error();
        }
        data.copy(reinterpret_cast<char*>(outDestination), inCount, mPosition);
        mPosition += inCount;
    }
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        mPosition = inPosition;
    }
    std::uint64_t CurPos() const override { return mPosition; }
    std::uint64_t Length() const override { return data.size(); }

    std::string data;
    std::vector<Transfer> reads;
    int failsEvery = 0;

private:
    void FailInTurn() {
        if (failsEvery != 0 && ++mCalls % failsEvery == 0) {
            throw io_error();
        }
    }

    std::uint64_t mPosition = 0;
    int mCalls = 0;
};

/// Memory that grows where it is written, takes down the blocks it gets, and fails every n-th call
/// if told to.
class RecordingSink : public OByteStream {
public:
    void Put(std::uint8_t inValue) override { WriteBlock(&inValue, 1); }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        FailInTurn();
        writes.emplace_back(mPosition, inCount);
        if (data.size() < mPosition + inCount) {
            data.resize(mPosition + inCount);
        }
        data.replace(mPosition, inCount, reinterpret_cast<char const*>(inSource), inCount);
        mPosition += inCount;
    }
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        mPosition = inPosition;
    }
    std::uint64_t CurPos() const override { return mPosition; }

    std::string data;
    std::vector<Transfer> writes;
    int failsEvery = 0;

private:
    void FailInTurn() {
        if (failsEvery != 0 && ++mCalls % failsEvery == 0) {
            throw io_error();
        }
    }

    std::uint64_t mPosition = 0;
    int mCalls = 0;
};

} // namespace brindle::filesupport
