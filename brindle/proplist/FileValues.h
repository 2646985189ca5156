#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>
#include <brindle/proplist/Values.h>

/// Files and directories as values of a property list:
///
///     list.Set("last opened", file);
///     auto const last = list.Get<filesupport::File>("last opened");
///
/// The value is the native path as a text, in which bytes that a document cannot hold, and "%", are
/// written as "%" and two hexadecimal digits (`utility::PercentEncoded`), so that every path comes
/// back. A text that is not so encoded is read as a plain path. A path that the system cannot have,
/// on a drive that is not mapped, is kept in the library's form.
namespace brindle::proplist {

/// A file as its native path, with percent signs where a document needs them.
template <>
struct PropertyValue<filesupport::File> {
    /// What is stored: the encoded path.
    using Stored = UTF8String;
    /// Encodes the native path.
    BRN_API static Stored ToStored(filesupport::File const& inFile);
    /// Always succeeds: every text is a path.
    BRN_API static bool FromStored(Stored const& inStored, filesupport::File& outFile);
};

/// A directory as a value, in the form of a file.
template <>
struct PropertyValue<filesupport::Dir> {
    /// What is stored: the encoded path.
    using Stored = UTF8String;
    /// Encodes the native path.
    BRN_API static Stored ToStored(filesupport::Dir const& inDir);
    /// Always succeeds: every text is a path.
    BRN_API static bool FromStored(Stored const& inStored, filesupport::Dir& outDir);
};

} // namespace brindle::proplist
