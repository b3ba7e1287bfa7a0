#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_time.h"

/// Quick looks at single places. Nothing here writes, and nothing but folders is opened. Paths are bytes.
/// Safe from any thread; blocks while the disk answers.
namespace ulvak::platform {

/// The number of a volume, and that of a file or folder on it: two names with the same are one.
using FileNumber = std::pair<std::uint64_t, std::uint64_t>;

struct FileInfo {
    bool isDirectory = false;
    /// Bytes held on disk (not the length); 0 when the system does not say.
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
    FileNumber volumeAndNumber;
};

/// What is at `path`; a symbolic link is followed. Absent when nothing is there, when a link leads
/// nowhere, or when this user may not look.
[[nodiscard]] std::optional<FileInfo> fileInfo(const std::string& path);

/// Whether there is something named `name` in `folder`. A link there counts when what it leads to exists, but
/// not when that lies on another volume which may never answer: a server that is gone must not be waited for.
[[nodiscard]] bool existsIn(const std::string& folder, const std::string& name);

/// The names in a folder, in the system's order, hidden ones included. Empty when it cannot be listed.
[[nodiscard]] std::vector<std::string> listNames(const std::string& path);

/// `path` with every link on the way resolved; absent when nothing is there.
[[nodiscard]] std::optional<std::string> resolvedPath(const std::string& path);

}  // namespace ulvak::platform
