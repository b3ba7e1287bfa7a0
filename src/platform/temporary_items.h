#pragma once

#include <optional>
#include <string>
#include <vector>

/// What tells whether an item in a temporary folder is still needed. Read-only; follows no link at the end of
/// a path. Threads: any; blocks on the disk.
namespace ulvak::platform {

/// Whether everybody may create items in a folder, and only their owners may remove them, as in "/tmp".
[[nodiscard]] bool isSharedFolder(const std::string& path);

/// Whether an item belongs to this user. nullopt if that cannot be learnt.
[[nodiscard]] std::optional<bool> isOwnItem(const std::string& path);

/// Whether an item is a socket or a FIFO, or holds one directly: a running program waits there.
[[nodiscard]] bool holdsSocket(const std::string& path);

/// The paths below a folder that a process has open, mapped into memory or as its current folder. Covers the
/// processes that this user may look at.
[[nodiscard]] std::vector<std::string> openBelow(const std::string& folder);

}  // namespace ulvak::platform
