#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ContainerByteStream.h>

#include <cstdint>
#include <string>

namespace brindle::filesupport {

extern template class IContainerByteStream<std::string>;
extern template class OContainerByteStream<std::string>;

/// Reads a string of bytes that the caller keeps alive.
class BRN_API IStringByteStream : public IContainerByteStream<std::string> {
public:
    explicit IStringByteStream(std::string& inString) noexcept;
    /// For a constant one, and for one that lives as long as the statement.
    explicit IStringByteStream(std::string const& inString) noexcept;
    ~IStringByteStream() override;
};

/// Appends to a string of bytes that the caller keeps alive.
class BRN_API OStringByteStream : public OContainerByteStream<std::string> {
public:
    explicit OStringByteStream(std::string& outString) noexcept;
    ~OStringByteStream() override;
};

} // namespace brindle::filesupport
