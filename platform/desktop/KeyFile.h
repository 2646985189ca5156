#pragma once

#include <string>
#include <string_view>

namespace brindle::platform {

/// A "key=value" line of a file of the desktop's, without the blanks round either. The texts lie in
/// the bytes that are read.
struct KeyFileEntry {
    std::string_view group; ///< without its brackets; empty before the first group
    std::string_view key;
    std::string_view value; ///< as it stands there: see `UnescapedValue`
};

/// Goes through the entries of a key file: groups in brackets, and lines "key=value" below them.
/// Takes any bytes, and passes over lines that are neither.
class KeyFileReader {
public:
    /// `inBytes` outlives the reader and the entries.
    explicit KeyFileReader(std::string_view inBytes);

    /// Goes on to the next entry; false at the end.
    bool Next(KeyFileEntry& outEntry);

private:
    std::string_view mRest;
    std::string_view mGroup;
};

/// A value with the escapes of blanks, line ends and backslashes undone.
std::string UnescapedValue(std::string_view inValue);

} // namespace brindle::platform
