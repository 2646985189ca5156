#pragma once

#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

namespace brindle::debug {

/// A small text file in the preference directory that holds a database of the developer's. Whoever
/// owns it serialises access.
class DatabaseFile {
public:
    /// `inName` is a literal.
    constexpr explicit DatabaseFile(char16_t const* inName) noexcept : mName(inName) {}

    /// The content up to the first NUL; nothing if there is no file. Takes no lock on the file,
    /// because every program replaces it as a whole. Throws what `Dir::PrefDir` throws, and
    /// `io_error` if the file cannot be read or is larger than any database (256 MiB).
    UTF8String Read();

    /// Replaces the file in one step, so that readers, a crash or a full disk meet the whole old or
    /// the whole new content. A failure of the system is silent, and leaves the old content.
    /// A file that the last `Read` failed on is not replaced, for nobody knows what it holds.
    /// Throws what `Dir::PrefDir` throws.
    void Write(UTF8String const& inContent) const;

private:
    char16_t const* mName;
    bool mIsUnread = false;
};

/// Takes a text apart into fields that end in a delimiter.
class FieldReader {
public:
    /// The text outlives the reader.
    explicit FieldReader(UTF8String const& inText) noexcept : mText(inText) {}

    /// Gives the text up to the delimiter, and moves behind it. Returns false, and gives nothing,
    /// if the text ends first.
    bool Next(std::uint8_t inDelimiter, UTF8String& outField);

private:
    UTF8String const& mText;
    std::size_t mPosition = 0;
};

/// Stores the entries of a debug database's text, of which each is a key, a tab, a value and a line
/// feed. Of several with one key the last one counts; what is not complete does not.
void ReadEntries(UTF8String const& inText, proplist::PropList& ioEntries);

} // namespace brindle::debug
