#pragma once

#include <brindle/Export.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

namespace brindle::filesupport {
class File;
}

/// Property lists as XML documents, in memory and on disk; rectangles and points as properties.
/// Callers serialise access to a list and to a file.
namespace brindle::proplist::utils {

/// Replaces `outText` by the document of the list: UTF-8 without a byte-order mark, lines that end
/// in a line feed. Only `std::bad_alloc` is thrown.
BRN_API void WritePropList(UTF8String& outText, PropList const& inList);

/// Reads a document into the list. What the list holds stays; where a key exists, the document's
/// value wins.
///
/// A document that is not well-formed is reported (`config::kError_PropListRead`), and the list
/// keeps what was read until then. Also reported are a document of a later version
/// (`kError_PropListVersion`) and a program that has installed no parser by
/// `xml::SetParserFactory` (`kError_PropListReadWithoutParser`).
BRN_API void ReadPropList(UTF8String const& inText, PropList& ioList);

/// The same from a file, where a document that is not well-formed, or a file that cannot be read,
/// leaves the list empty. With `inRenameCorrupt` the file is then renamed by adding ".old", in
/// place of an older file of that name, and the report tells both paths and is not passed on,
/// whatever it throws; a file that is missing or cannot be renamed is reported as it is.
BRN_API void LoadPropList(UTF16String const& inPath, PropList& ioList, bool inRenameCorrupt);

/// Writes the document to the file so that the old document or the new one is there, whole,
/// whatever happens.
///
/// The document is that of `WritePropList`, with carriage returns as references, since plain ones
/// are read as line feeds. It is on the disk when this returns. A link stays a link, and an old
/// file's mode and owner are kept.
///
/// Throws `filesupport::file_exception`, `rename_file` among them, if that fails, and before
/// anything is touched if a key or a text holds what no reader would give back: a control character
/// other than tab, line feed and carriage return, a surrogate without its partner, U+FFFE or
/// U+FFFF, or bytes that are not UTF-8.
BRN_API void SavePropList(filesupport::File& ioFile, PropList const& inList);
BRN_API void SavePropList(UTF16String const& inPath, PropList const& inList);

// A rectangle is an array of x, y, width and height, a point one of x and y. Readers take the first
// elements of an array and give zeros if there is no array of that type, or it has too few. A null
// list reads as an empty one, and takes nothing.

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
