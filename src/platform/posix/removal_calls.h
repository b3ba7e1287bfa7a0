#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <set>
#include <string>
#include <system_error>

#include "platform/posix/system.h"
#include "platform/removal.h"

/// The parts of a removal, for the code of this folder and for tests that take the place of the system. Safe
/// from any thread.
namespace ulvak::platform::posix {

/// What removing asks of the system about folders whose contents live elsewhere, as not every system has any,
/// and how many do it.
struct RemovalCalls {
    /// As `EntryReader::readPiece`.
    std::function<std::expected<bool, std::error_code>(EntryReader&, const Directory&)> read =
        [](EntryReader& reader, const Directory& folder) { return reader.readPiece(folder); };
    std::function<int(int, const char*)> removePlaceholder = posix::removePlaceholder;
    /// Threads at most. More than there are processors: taking folders away is mostly waiting for the disk.
    std::size_t workers = 4;
    /// Folders that the calling thread enters before it asks others for help.
    std::size_t foldersAlone = 8;
};

/// Folders that one removal holds open at a time; those further up are found again through "..".
constexpr std::size_t maxOpenFolders = 64;

/// As `removeEntry` of `platform/removal.h`, by these calls, which may come from any thread.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const RemovalCalls& calls);

/// The same for one item. Sub-folders are removed by several threads, which end with the call, once the first
/// few have shown that there are some to share; where a thread cannot be started the others do its work. When
/// memory runs out on any of them this throws `std::bad_alloc`.
[[nodiscard]] std::expected<void, FileError> removeTree(const Directory& parent, const std::string& name,
                                                        const ItemIdentity& item,
                                                        const std::set<FileNumber>& kept,
                                                        const RemovalCalls& calls);

/// Takes an entry out of a folder by these flags of unlinkat(2); 0, or the number of the error.
[[nodiscard]] int unlink(const Directory& parent, const char* name, int flags);

/// Unlinks the entry `name`, by these flags of unlinkat(2), only if it is `item`; 0, or the number of the
/// error. Nothing can be unlinked by anything but its name, which others can give to something else at any
/// moment. Under a name that nobody knows it stays what it was seen to be.
[[nodiscard]] int unlinkItem(const Directory& parent, const std::string& name, const ItemIdentity& item,
                             int flags);

}  // namespace ulvak::platform::posix
