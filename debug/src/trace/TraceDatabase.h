#pragma once

#include "debug/src/database/DatabaseFile.h"

#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <list>

namespace brindle::debug {

/// What a developer chose for a category.
struct TraceSetting {
    bool isEnabled = true;
    std::int32_t volume = 5;
};

/// The categories and their settings, in memory and in the file "Trace Database.txt", which has a
/// line for each category in the order of their names: name, tab, 1 or 0, tab, volume, line feed.
/// Callers serialise access.
class TraceDatabase {
public:
    /// Reads the file. Text that is no decimal number counts as 0, and of several lines with one
    /// name the last one counts. Throws as `DatabaseFile::Read`, and is then empty.
    void Load();

    /// Whether the category is known. What its entry does not say stays as it is in `ioSetting`.
    bool Read(UTF8String const& inCategory, TraceSetting& ioSetting) const;
    void Store(UTF8String const& inCategory, TraceSetting const& inSetting);
    void AppendNames(std::list<UTF8String>& ioNames) const;

    /// Replaces the file, as `DatabaseFile::Write`.
    void Save() const;

private:
    proplist::PropList mCategories; // each is a nested list
    DatabaseFile mFile{u"Trace Database.txt"};
};

} // namespace brindle::debug
