#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

#include <atomic>
#include <cstdint>
#include <list>

namespace brindle::debug {

/// Named texts by which a developer changes what a program does, from the console or by editing the
/// file "Debug Database.txt" in the preference directory:
///
///     auto& database = debug::DebugDatabase::Instance();
///     bool const isSlow = database.GetEntry("decoder.slow"_utf8, "false"_utf8) == "true"_utf8;
///
/// The file has a line for each entry, in the order of their keys: key, tab, value, line feed.
/// So a key can hold no tab and a value no line feed, or they are taken apart elsewhere at the next
/// start; what follows a NUL is not read at all, nor is a last line without its line feed.
///
/// Any thread may call the operations of this class. Those that it inherits take no lock: they are
/// for a moment when no other thread uses the database.
class BRN_API DebugDatabase : public proplist::PropList {
public:
    /// The default of most switches, as a NUL-terminated text.
    static constexpr std::uint8_t sFalseText[] = {'f', 'a', 'l', 's', 'e', 0};

    /// The one database, which the first call makes and loads. A missing file is an empty database.
    /// Throws `dir_exception` if there is no preference directory, and `io_error` if the file
    /// cannot be read; later calls then return an empty database, which does not replace that file.
    /// Never destroyed.
    static DebugDatabase& Instance();

    /// Whether the key holds a text.
    [[nodiscard]] bool HasEntry(UTF8String const& inKey) const;

    /// The text under the key. If there is none, stores the default in memory, so that the key is
    /// listed, and returns it. The file is not written.
    UTF8String GetEntry(UTF8String const& inKey, UTF8String const& inDefault);

    /// Stores the value and replaces the file by all entries, in one step and durably; of two
    /// processes that do so the last one wins. Throws `dir_exception` if there is no preference
    /// directory. A file that cannot be written is no failure: the value lasts for this process.
    void SetEntry(UTF8String const& inKey, UTF8String const& inValue);

    /// Appends the keys in the order of their bytes.
    void GetDebugKeys(std::list<UTF8String>& ioKeys);

    /// Removes all entries from memory. The file keeps them until the next `SetEntry`.
    void Clear() override;

    /// Chooses whether the file is left alone; initially it is not.
    static void SetDisableFileWrites(bool inDisable) noexcept;
    [[nodiscard]] static bool GetDisableFileWrites() noexcept;

private:
    DebugDatabase() = default;
    ~DebugDatabase() override = default;

    void Load();
    void Save();

    static std::atomic<bool> mDisableFileWritesB;
};

} // namespace brindle::debug
