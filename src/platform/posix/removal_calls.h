#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <set>
#include <string>
#include <system_error>

#include "platform/posix/system.h"
#include "platform/removal.h"

/// The building blocks of a removal, for this folder and for tests that replace the system. Thread-safe.
namespace ulvak::platform::posix {

/// Replaceable system calls and limits of a removal. The calls concern dataless folders, which not every
/// system has.
struct RemovalCalls {
    /// As `EntryReader::readPiece`.
    std::function<std::expected<bool, std::error_code>(EntryReader&, const Directory&)> read =
        [](EntryReader& reader, const Directory& folder) { return reader.readPiece(folder); };
    std::function<int(int, const char*)> removePlaceholder = posix::removePlaceholder;
    /// Maximum threads. More than the cores, as removing folders is mostly waiting for the disk.
    std::size_t workers = 4;
    /// Folders that the calling thread enters before it starts helpers.
    std::size_t foldersAlone = 8;
};

/// Folders that one removal keeps open at a time; those further up are reached again through "..".
constexpr std::size_t maxOpenFolders = 64;

/// Like `removeEntry` in `platform/removal.h`, using these calls, which may be made from any thread.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const RemovalCalls& calls);

/// The same for one item. Once the first few folders show that there is enough to share, sub-folders are
/// removed by several threads, which end with the call. If a thread cannot be started, the others do its
/// work. Throws `std::bad_alloc` if memory runs out on any of them.
[[nodiscard]] std::expected<void, FileError> removeTree(const Directory& parent, const std::string& name,
                                                        const ItemIdentity& item,
                                                        const std::set<FileNumber>& kept,
                                                        const RemovalCalls& calls);

/// unlinkat(2) with these flags. Returns 0 or an errno value.
[[nodiscard]] int unlink(const Directory& parent, const char* name, int flags);

/// Unlinks the entry `name` with these unlinkat(2) flags, only if it is `item`. Returns 0 or an errno value.
/// Unlinking goes by name only, and others can give a name to something else at any moment; so the entry is
/// first moved to a name that nobody can guess, where it stays what it was checked to be.
[[nodiscard]] int unlinkItem(const Directory& parent, const std::string& name, const ItemIdentity& item,
                             int flags);

}  // namespace ulvak::platform::posix
