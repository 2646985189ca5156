#pragma once

#include "platform/Errors.h"

namespace brindle::platform {

/// What a thread that opens a file asks of the other users of the library. Locks belong to the open
/// file description: they also hold between threads of one process, and end when the file is
/// closed, however that happens.
///
/// Only a descriptor that is open for writing can exclude readers, so a user who may only read a
/// file can keep nobody from reading it, appending to it or replacing it. A file system without
/// locks grants every one.
enum class FileLock {
    kNone,   ///< nothing: reads what is there
    kReader, ///< that nobody writes the file in place; error 32 if somebody does
    kWriter, ///< to be alone with the file in order to write it in place; error 32 if somebody
             ///< reads or writes it
    kTurn    ///< to append to the file, or to replace it, while nobody else does either: waits for
             ///< those who do, which takes them a moment; error 32 if somebody writes the file in
             ///< place
};

ErrorCode TakeLock(int inDescriptor, FileLock inLock) noexcept;

/// Marks a file, open for writing, as made by a save that is under way, until it is closed or the
/// mark is taken away through the same descriptor.
void MarkAsSaving(int inDescriptor) noexcept;
void UnmarkAsSaving(int inDescriptor) noexcept;

/// Marks a file as `MarkAsSaving` does. True only if the file system has locks and granted this
/// one, so that no save of the file is under way.
bool ClaimAsSaving(int inDescriptor) noexcept;

/// True if the file was marked through another descriptor than this one.
bool IsMarkedAsSaving(int inDescriptor) noexcept;

} // namespace brindle::platform
