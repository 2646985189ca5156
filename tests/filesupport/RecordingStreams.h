#pragma once

#include <brindle/filesupport/ByteStream.h>

#include "tests/support/Text.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace brindle::filesupport {

/// The position and size of one transfer of a block.
using Transfer = std::pair<std::uint64_t, std::uint64_t>;

/// A stream on memory that records every transfer and fails every n-th call if `failsEvery` is n.
struct RecordingStream : IByteStream, OByteStream {
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        position = inPosition;
    }
    std::uint64_t CurPos() const override { return position; }
    std::uint64_t Length() const override { return data.size(); }
    std::uint8_t Get() override { throw io_error(); }
    void Put(std::uint8_t inValue) override { WriteBlock(&inValue, 1); }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        FailInTurn();
        if (position + inCount > data.size()) {
            throw eof_error();
        }
        transfers.emplace_back(position, inCount);
        position += data.copy(reinterpret_cast<char*>(outDestination), inCount, position);
    }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        FailInTurn();
        transfers.emplace_back(position, inCount);
        data.resize(std::max<std::size_t>(data.size(), position + inCount));
        std::copy_n(inSource, inCount, &data[position]);
        position += inCount;
    }
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

using tests::Bytes;

/// 1000 irregular bytes.
inline std::string SomeBytes() {
    std::string bytes;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        bytes += static_cast<char>(i * i * 2654435761u >> 24);
    }
    return bytes;
}

} // namespace brindle::filesupport
