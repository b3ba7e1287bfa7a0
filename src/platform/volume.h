#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ulvak::platform {

/// Bytes.
struct VolumeCapacity {
    std::int64_t total = 0;
    /// What this user can still write.
    std::int64_t available = 0;
};

/// The capacity of the volume that holds `path`; absent when the system does not say. Safe from any thread;
/// blocks while that volume answers.
[[nodiscard]] std::optional<VolumeCapacity> volumeCapacity(const std::string& path);

/// A volume that is mounted somewhere.
struct Mount {
    std::string path;          ///< absolute, without links
    std::uint64_t volume = 0;  ///< the same for each place at which one file system is mounted
    /// Whether a look at it may never return: it lies on another computer or is served by a program, which
    /// may be gone. Never so for that at "/".
    bool mayHang = false;
};

/// The volumes that are mounted and not covered by others, in the system's order, read without touching the
/// volumes themselves: a server that does not answer cannot hold the caller. Empty when unknown. Safe from
/// any thread.
[[nodiscard]] std::vector<Mount> mounts();

/// Their places.
[[nodiscard]] std::vector<std::string> mountPoints();

}  // namespace ulvak::platform
