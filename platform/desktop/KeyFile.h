#pragma once

#include <string>
#include <string_view>

namespace brindle::platform {

/// A "key=value" line of a key file, without the blanks around key and value. The views refer to
/// the bytes that the reader was given.
struct KeyFileEntry {
    std::string_view group; ///< without its brackets; empty before the first group
    std::string_view key;
    std::string_view value; ///< as written in the file: see `UnescapedValue`
};

/// Reads the entries of a key file: group headings in brackets, and lines "key=value" below them.
/// Accepts any bytes, and skips lines that are neither.
class KeyFileReader {
public:
    /// `inBytes` outlives the reader and the entries.
    explicit KeyFileReader(std::string_view inBytes);

    /// Reads the next entry; false at the end.
    bool Next(KeyFileEntry& outEntry);

private:
    std::string_view mRest;
    std::string_view mGroup;
};

/// A value with the escapes of blanks, line ends and backslashes undone.
std::string UnescapedValue(std::string_view inValue);

} // namespace brindle::platform
