#pragma once

#include <brindle/Export.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropListLoadResult.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

namespace brindle::filesupport {
class File;
}

/// Property lists as XML documents, in memory and on disk; rectangles and points as properties.
/// Callers serialise access to a list and to a file.
namespace brindle::proplist::utils {

/// Replaces `outText` by the document of the list: UTF-8 without a byte-order mark, lines that end
/// with a line feed. Throws only `std::bad_alloc`.
BRN_API void WritePropList(UTF8String& outText, PropList const& inList);

/// How a document is written.
struct WriteOptions {
    /// `float` and `double` are written with the fewest digits that are read back as the same
    /// number, instead of six. Every reader of property lists takes them. Infinities and NaNs are
    /// read as 0 either way.
    bool exactNumbers = false;
};
/// For the argument of `WritePropList` and `SavePropList`.
inline constexpr WriteOptions kExactNumbers{true};

/// The same in the form that the options ask for.
BRN_API void WritePropList(UTF8String& outText, PropList const& inList,
                           WriteOptions const& inOptions);

/// Reads a document into the list. The list keeps its properties; where a key exists, the
/// document's value replaces it.
///
/// A document that is not well-formed is reported (`config::kError_PropListRead`), and the list
/// keeps what was read before the fault. Also reported are a document of a later version
/// (`kError_PropListVersion`) and a program that has installed no parser by
/// `xml::SetParserFactory` (`kError_PropListReadWithoutParser`).
BRN_API void ReadPropList(UTF8String const& inText, PropList& ioList);

/// The same from a file. A file that cannot be read, or is not well-formed, leaves the list empty
/// and is reported with its path. With `inRenameCorrupt`, a file that was read and is not
/// well-formed is renamed by appending ".old", in place of an older file of that name; the report
/// has both paths, and what it throws is dropped. A file that could not be read is not renamed, for
/// it may be intact.
BRN_API void LoadPropList(UTF16String const& inPath, PropList& ioList, bool inRenameCorrupt);
/// A path is a `UTF16String`, or a `filesupport::File` that `FileFromNative` makes.
void LoadPropList(char const* inPath, PropList& ioList, bool inRenameCorrupt) = delete;

/// Read as the two functions above do, but return how it went instead of reporting it. Only a
/// document of a later version is still reported.
///
///     if (TryLoadPropList(path, list, true).status == kPropListLoad_Unreadable) {
///         // The user's preferences exist, but somebody is just writing them, or the disk fails.
///     }
[[nodiscard]] BRN_API PropListLoadResult TryReadPropList(UTF8String const& inText,
                                                         PropList& ioList);
[[nodiscard]] BRN_API PropListLoadResult TryLoadPropList(UTF16String const& inPath,
                                                         PropList& ioList, bool inRenameCorrupt);

/// Whether `LoadPropList` takes a missing file for an empty one.
enum class MissingFile : std::uint8_t {
    kIsEmpty,  ///< it is as good as an empty list
    kIsFailure ///< the result is `kPropListLoad_Missing`
};

/// Whether `LoadPropList` renames a damaged file, as fits preferences, or leaves it, as fits a part
/// of the program.
enum class DamagedFile {
    kIsRenamed, ///< ".old" is appended to its name
    kStays      ///< it stays where it is
};

/// Reads a file as `TryLoadPropList` does; a damaged one is renamed by appending ".old". A file
/// that does not exist is like an empty list, and the status is `kPropListLoad_Done`:
///
///     proplist::PropList preferences;
///     LoadPropList(PreferencesFile(), preferences);
///     SavePropList(PreferencesFile(), preferences); // does not replace what could not be read
///
/// Also works in a program that has installed no parser. `ioList` keeps its properties if the file
/// is missing or read, and is cleared otherwise.
BRN_API PropListLoadResult LoadPropList(filesupport::File const& inFile, PropList& ioList,
                                        MissingFile inMissing = MissingFile::kIsEmpty,
                                        DamagedFile inDamaged = DamagedFile::kIsRenamed);

/// Replaces the file by the document of the list, atomically: whatever happens, the file has the
/// whole old content or the whole new one. It is durable when this returns.
///
/// The document is that of `WritePropList`, with carriage returns as references, because plain ones
/// are read as line feeds. A symbolic link stays a link, and an old file's mode and owner are kept.
///
/// Throws `filesupport::file_exception`, or `rename_file` derived from it, if that fails. Throws
/// it, and leaves the file alone, if a key or a text cannot be read back: if it has a control
/// character other than tab, line feed and carriage return, a surrogate without its partner, U+FFFE
/// or U+FFFF, or bytes that are not UTF-8.
///
/// A list does not replace the file that the last load of it could not read, or of which a load was
/// ended by an exception: what the list lacks would be lost. `SavePropList` throws then too, until
/// the file was loaded into the list or is gone.
BRN_API void SavePropList(filesupport::File& ioFile, PropList const& inList);
BRN_API void SavePropList(filesupport::File const& inFile, PropList const& inList);
BRN_API void SavePropList(filesupport::File const& inFile, PropList const& inList,
                          WriteOptions const& inOptions);
BRN_API void SavePropList(UTF16String const& inPath, PropList const& inList);

/// A rectangle is an array of x, y, width and height, a point an array of x and y. Readers take the
/// first elements, and return zeros if there is no array of that type or it has too few elements.
/// Writing to a null list does nothing; reading from one returns zeros.
BRN_API void WriteRectF32(UTF8String const& inKey, geom::RectT<float> const& inRect,
                          PropList* ioList);
BRN_API void WriteRect32(UTF8String const& inKey, geom::RectT<std::int32_t> const& inRect,
                         PropList& ioList);
BRN_API geom::RectT<float> ReadRectF32(UTF8String const& inKey, PropList const* inList);
BRN_API geom::RectT<std::int32_t> ReadRect32(UTF8String const& inKey, PropList const& inList);
BRN_API void WritePointF32(UTF8String const& inKey, geom::PointT<float> const& inPoint,
                           PropList* ioList);
BRN_API geom::PointT<float> ReadPointF32(UTF8String const& inKey, PropList const* inList);

} // namespace brindle::proplist::utils
