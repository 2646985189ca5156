#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ContainerByteStream.h>

#include <cstdint>
#include <string>

namespace brindle::filesupport {

extern template class IContainerByteStream<std::string>;
extern template class OContainerByteStream<std::string>;

/// Reads a string of bytes that the caller keeps alive.
///
/// Beside the standard library: as a `std::istringstream` that does not copy the string.
class BRN_API IStringByteStream : public IContainerByteStream<std::string> {
public:
    /// The string must outlive the stream.
    explicit IStringByteStream(std::string& inString) noexcept;
    explicit IStringByteStream(std::string const& inString) noexcept;
    /// It would be gone before it is read.
    explicit IStringByteStream(std::string const&& inString) = delete;
    ~IStringByteStream() override;
};

/// Appends to a string of bytes that the caller keeps alive.
///
/// Beside the standard library: as a `std::ostringstream` that fills a string of the caller.
class BRN_API OStringByteStream : public OContainerByteStream<std::string> {
public:
    /// The string must outlive the stream, and keeps what it has.
    explicit OStringByteStream(std::string& outString) noexcept;
    ~OStringByteStream() override;
};

} // namespace brindle::filesupport
