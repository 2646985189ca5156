#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <list>

/// @file
/// Diagnostic text for developers. Each message belongs to a category and has a volume. It is
/// wanted if its volume is not above that of its category, nor above the master volume, which caps
/// all categories at once. A developer changes the volumes from the console, and they are kept in
/// the file "Trace Database.txt" in the preference directory:
///
///     if (debug::TraceEnabled("decoder"_utf8, 3, true)) {
///         debug::TraceMessage("decoder"_utf8, 3, "a frame was dropped");
///     }
///
/// Where a question is asked often, ask it of a `TraceCategory`, or use `BRN_TRACE`, which formats
/// only what is wanted (brindle/debug/TraceCategory.h). Any thread may call any of these functions.

namespace brindle::debug {

/// Where the text goes.
class BRN_API TraceHandler {
public:
    /// Takes one text, on the thread that traces; several threads may call at once. It may itself
    /// trace: text is passed on to a depth of eight, and what is traced deeper is dropped, so that
    /// a handler that always traces ends. What it throws reaches the caller of `debug::Trace`.
    virtual void Trace(UTF8String const& inText) = 0;
    virtual ~TraceHandler();
};

/// Passes the NUL-terminated text, unchanged, to the master handler. Null counts as an empty text.
BRN_API void Trace(char const* inText);

/// Composes a line and passes it to `Trace`: "<thread id> <category> <volume> ", the text, CR LF.
/// What stands behind a NUL is cut off.
BRN_API void TraceMessage(UTF8String const& inCategory, std::int32_t inVolume,
                          UTF8String const& inText);
BRN_API void TraceMessage(UTF8String const& inCategory, std::int32_t inVolume, char const* inText);

/// Replaces the master handler, which the caller owns: it lives until another one is installed and
/// no thread traces through it any more. Null stands for the default handler.
BRN_API void InstallMasterTraceHandler(TraceHandler* inHandler) noexcept;
/// The handler; if there is none, the default handler, which writes to the console's log file, is
/// installed first.
BRN_API TraceHandler* GetMasterTraceHandler() noexcept;
/// The default handler applies from here on.
BRN_API void RemoveMasterTraceHandler() noexcept;

/// Whether a message of this category and volume is wanted. The last argument has no effect. A new
/// category is enabled at volume 5, and the master volume is 10 at first; the first question about
/// a category that the master lets through makes it known, and writes the file.
///
/// A question whose answer is known takes no lock. The first one of a category does; whatever is
/// asked while it is being answered, by this thread or another one, is answered no, so that code
/// that runs inside may trace. If it has to load the file and cannot, it throws `dir_exception` or
/// `io_error`, and later questions go on without what the file says.
[[nodiscard]] BRN_API bool TraceEnabled(UTF8String const& inCategory, std::int32_t inVolume,
                                        bool inUnused);
[[nodiscard]] inline bool TraceEnabled(UTF8String const& inCategory, std::int32_t inVolume) {
    return TraceEnabled(inCategory, inVolume, true);
}

/// The volume that every message has to pass besides that of its category.
///
/// Changing a volume, also that of a category, replaces the file by all that is known, in one step
/// and durably. Of two processes that share the preference directory the last one to write wins. A
/// file that cannot be written is no failure: the volume lasts for this process. Where there is no
/// preference directory, setting a volume and shutting down throw `dir_exception` after they have
/// done the rest.
[[nodiscard]] BRN_API std::int32_t GetMasterTraceVolume();
BRN_API void SetMasterTraceVolume(std::int32_t inVolume);
/// Makes the category known if it is not.
[[nodiscard]] BRN_API std::int32_t GetTraceVolume(UTF8String const& inCategory);
BRN_API void SetTraceVolume(UTF8String const& inCategory, std::int32_t inVolume);

/// Appends the names of the known categories, with that of the master, "Master", in the order of
/// their bytes.
BRN_API void GetTraceCategories(std::list<UTF8String>& ioNames);

/// Chooses whether the file is left alone; initially it is not.
BRN_API void SetDisableFileWrites(bool inDisable) noexcept;
[[nodiscard]] BRN_API bool GetDisableFileWrites() noexcept;

/// Writes the file and forgets the categories, which the next question loads again. The master
/// volume stays as it is.
BRN_API void ShutdownTraceManager();

} // namespace brindle::debug
