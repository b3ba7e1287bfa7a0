#pragma once

#include <expected>
#include <optional>
#include <set>
#include <string>

#include "platform/directory.h"
#include "platform/file_descriptor.h"
#include "platform/files.h"

/// Removing for good. Only `Cleaner` may ask for it: nothing here knows what must be kept.
/// Threads: blocks the caller for as long as it takes; several at once are independent.
namespace ulvak::platform {

/// Of the entry `name` of `parent`, a link's own. Absent when nothing is there or this user may not look.
[[nodiscard]] std::optional<ItemIdentity> entryIdentity(const Directory& parent, const std::string& name);

/// Keeps the number of an entry, a link's own, from being given to another while it lives, for file systems
/// that know no dates of birth. Move-only; holds a handle, or nothing where none is to be had, or where
/// numbers are never given twice.
class HeldEntry {
public:
    HeldEntry() = default;
    HeldEntry(const Directory& parent, const std::string& name);

private:
    FileDescriptor descriptor_;
};

/// Removes the entry `name` of `parent`, and if it is a folder everything in it first, however deep.
///
/// Whatever happens to the tree meanwhile, only what lies in it is removed: everything is reached from a
/// folder that is open already, links are removed and never followed, and a folder on which another volume
/// is mounted is not entered. Several threads remove a larger tree, up to four, and this one waits for them.
/// They stop at an entry that cannot be removed, with the system's error and the path of that entry from
/// `parent` on: the foremost in the order of the listings if there are several. What comes before it has gone
/// by then, and of what comes after it whatever was taken up already. Entries that others remove at the same
/// time are no failure, apart from `name` itself when it is missing from the start.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name);

/// As before, but only if the entry is still `item`: anything else that has taken its name stays (ESTALE).
/// A folder whose number is in `kept` is not entered wherever it turns up, and stays (ESTALE).
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const ItemIdentity& item,
                                                         const std::set<FileNumber>& kept = {});

/// Removes the folder `name` of `parent` if nothing is in it; whether it did.
[[nodiscard]] bool removeEmptyFolder(const Directory& parent, const std::string& name);

/// Of the entry `name` of `parent`, a link's own, as `FileInfo` has it. Absent when nothing is there or this
/// user may not look.
[[nodiscard]] std::optional<FileNumber> entryNumber(const Directory& parent, const std::string& name);

}  // namespace ulvak::platform
