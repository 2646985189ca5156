#pragma once

#include <brindle/filesupport/ByteStream.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brindle::filesupport {

/// The position and size of one transfer of a block.
using Transfer = std::pair<std::uint64_t, std::uint64_t>;

/// Data in memory that takes down every transfer, and fails every n-th call if told to.
struct Recorder {
    void FailInTurn() {
        if (failsEvery != 0 && ++calls % failsEvery == 0) {
            throw io_error();
        }
    }

    std::string data;
    std::vector<Transfer> transfers;
    std::uint64_t position = 0;
    int failsEvery = 0;
    int calls = 0;
};

template <typename Direction>
class RecordingStream : public Direction, public Recorder {
public:
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        position = inPosition;
    }
    std::uint64_t CurPos() const override { return position; }
};

class RecordingSource : public RecordingStream<IByteStream> {
public:
    std::uint8_t Get() override { throw io_error(); }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        FailInTurn();
        transfers.emplace_back(position, inCount);
        if (position > data.size() || inCount > data.size() - position) {
            throw eof_error();
        }
        data.copy(reinterpret_cast<char*>(outDestination), inCount, position);
        position += inCount;
    }
    std::uint64_t Length() const override { return data.size(); }
};

class RecordingSink : public RecordingStream<OByteStream> {
public:
    void Put(std::uint8_t inValue) override { WriteBlock(&inValue, 1); }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        FailInTurn();
        transfers.emplace_back(position, inCount);
        data.resize(std::max(data.size(), position + inCount));
        data.replace(position, inCount, reinterpret_cast<char const*>(inSource), inCount);
        position += inCount;
    }
};

inline std::uint8_t const* Bytes(std::string const& inText) {
    return reinterpret_cast<std::uint8_t const*>(inText.data());
}

} // namespace brindle::filesupport
