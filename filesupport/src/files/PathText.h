#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>

namespace brindle::filesupport {

/// Converts a path to normal form.
void NormalizePath(UTF16String& ioPath);

/// Drops one trailing backslash.
void DropTrailingSeparator(UTF16String& ioPath);

/// The index of the last separator, `UTF16String::npos` if there is none.
std::size_t LastSeparator(UTF16String const& inPath) noexcept;

/// The part behind the last separator; the whole path if there is none.
UTF16String LastComponent(UTF16String const& inPath);

/// The part before the last separator; empty if there is none.
UTF16String BeforeLastComponent(UTF16String const& inPath);

/// Joins a directory and a name. No separator is added behind one, so that a path below the root is
/// not mistaken for a network path.
UTF16String JoinedPath(UTF16String const& inParent, UTF16String const& inName);

/// The path with its last component replaced.
UTF16String WithLastComponent(UTF16String const& inPath, UTF16String const& inName);

/// A path in normal form with the prefix that lifts the system's limit on its length.
UTF16String PrefixedPath(UTF16String const& inPath);

} // namespace brindle::filesupport
