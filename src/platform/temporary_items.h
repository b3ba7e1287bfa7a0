#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// What tells whether an item in a temporary folder is still needed. Read-only; follows no link at the end of
/// a path. Threads: any; blocks on the disk.
namespace ulvak::platform {

/// Whether others may create items in a folder, as in "/tmp". Follows a link.
[[nodiscard]] bool isSharedFolder(const std::string& path);

/// Whether an item belongs to this user. nullopt if that cannot be learnt.
[[nodiscard]] std::optional<bool> isOwnItem(const std::string& path);

/// What an item is and holds at any depth.
struct ItemContents {
    /// When something was last created, written, renamed or moved there. What was copied or unpacked with the
    /// dates of its original is as new as the copy. The epoch if nothing could be read.
    std::chrono::system_clock::time_point changed;
    bool isAllOwn = true;      ///< this user owns all of it
    bool holdsSocket = false;  ///< or a FIFO: a running program waits there
    bool wasSeenWhole = true;  ///< false if there is too much, or something that could not be read
};

[[nodiscard]] ItemContents contentsOf(const std::string& path);

/// The paths below a folder that a process has open, mapped into memory or as its current folder. Covers the
/// processes that this user may look at.
[[nodiscard]] std::vector<std::string> openBelow(const std::string& folder);

}  // namespace ulvak::platform
