#pragma once

#include <brindle/filesupport/ByteStream.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace brindle::filesupport {

/// The position and size of one transfer of a block.
using Transfer = std::pair<std::uint64_t, std::uint64_t>;

/// Data in memory. Takes down every transfer, and fails every n-th call if told to.
template <typename Direction>
class RecordingStream : public Direction {
public:
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        position = inPosition;
    }
    std::uint64_t CurPos() const override { return position; }

    std::string data;
    std::vector<Transfer> transfers;
    std::uint64_t position = 0;
    int failsEvery = 0;

protected:
    void FailInTurn() {
        if (failsEvery != 0 && ++mCalls % failsEvery == 0) {
            throw io_error();
        }
    }
    void Record(std::uint32_t inCount) {
        FailInTurn();
        transfers.emplace_back(position, inCount);
        position += inCount;
    }

private:
    int mCalls = 0;
};

class RecordingSource : public RecordingStream<IByteStream> {
public:
    std::uint8_t Get() override { throw io_error(); }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        if (position + inCount > data.size()) {
            throw eof_error();
        }
        Record(inCount);
        data.copy(reinterpret_cast<char*>(outDestination), inCount, position - inCount);
    }
    std::uint64_t Length() const override { return data.size(); }
};

class RecordingSink : public RecordingStream<OByteStream> {
public:
    void Put(std::uint8_t inValue) override { WriteBlock(&inValue, 1); }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        Record(inCount);
        data.resize(std::max<std::size_t>(data.size(), position));
        data.replace(position - inCount, inCount, reinterpret_cast<char const*>(inSource), inCount);
    }
};

inline std::uint8_t const* Bytes(std::string const& inText) {
    return reinterpret_cast<std::uint8_t const*>(inText.data());
}

} // namespace brindle::filesupport
