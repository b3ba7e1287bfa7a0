#pragma once

#include <expected>
#include <optional>
#include <set>
#include <string>

#include "platform/directory.h"
#include "platform/file_descriptor.h"
#include "platform/files.h"

/// Permanent removal. Only `Cleaner` may call it: nothing here knows what must be kept.
///
/// Threads: blocks the caller; concurrent calls are independent.
namespace ulvak::platform {

/// The identity of the entry `name` of `parent`, not following a link. nullopt if nothing is there or this
/// user has no permission to look.
[[nodiscard]] std::optional<ItemIdentity> entryIdentity(const Directory& parent, const std::string& name);

/// Keeps an entry's inode number (a link's own) from being reused while this lives, for file systems without
/// creation dates. Move-only. Holds a handle, or nothing if none is available or inode numbers are never
/// reused.
class HeldEntry {
public:
    HeldEntry() = default;
    HeldEntry(const Directory& parent, const std::string& name);

private:
    FileDescriptor descriptor_;
};

/// Removes the entry `name` of `parent`, recursively, however deep.
///
/// Whatever happens to the tree meanwhile, only its contents are removed: everything is reached from a folder
/// that is already open, links are removed but never followed, and a folder on which another volume is
/// mounted is not entered. A larger tree is removed by up to four threads, including the caller, which waits
/// for the rest. They stop at an entry that cannot be removed, with the system's error and that entry's path
/// relative to `parent`; if there are several, the first one in listing order. By then everything before it
/// is gone, and of what comes after it, whatever was already in progress. Entries removed by others at the
/// same time are not a failure, except for `name` itself if it is missing from the start.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name);

/// The same, only if the entry is still `item`; anything else that has taken its name is kept (ESTALE). A
/// folder whose number is in `kept` is never entered, wherever it turns up, and is kept (ESTALE).
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const ItemIdentity& item,
                                                         const std::set<FileNumber>& kept = {});

/// Removes the folder `name` of `parent` if it is empty. Returns whether it did.
[[nodiscard]] bool removeEmptyFolder(const Directory& parent, const std::string& name);

/// The file number of the entry `name` of `parent`, not following a link; as in `FileInfo`. nullopt if
/// nothing is there or this user has no permission to look.
[[nodiscard]] std::optional<FileNumber> entryNumber(const Directory& parent, const std::string& name);

}  // namespace ulvak::platform
