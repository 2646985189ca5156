#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// Stores nothing and counts what would be written.
class BRN_API OCountingByteStream : public OByteStream {
public:
    OCountingByteStream() = default;
    ~OCountingByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;

    /// Accepts any position. Moving forward alone does not count as writing.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

    /// The position behind the furthest byte written. Overwriting earlier bytes does not raise it.
    [[nodiscard]] std::uint64_t Count() const noexcept { return mCount; }

private:
    std::uint64_t mCount = 0;
    std::uint64_t mPosition = 0;
};

} // namespace brindle::filesupport
