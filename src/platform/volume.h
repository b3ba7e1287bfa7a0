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

/// The absolute paths at which volumes are mounted, in the system's order, read without touching the
/// volumes themselves: a server that does not answer cannot hold the caller. Empty when unknown. Safe from
/// any thread.
[[nodiscard]] std::vector<std::string> mountPoints();

struct Volumes {
    std::vector<std::string> points;  ///< as `mountPoints`
    /// Whether there are no others that a user keeps files on.
    bool isAll = true;
};

/// Those on which nobody waits for more than a disk: no server's and no program's, nor any that lies below
/// one. What the kernel only shows, and what is kept in memory, is no volume. Read as `mountPoints`.
[[nodiscard]] Volumes promptVolumes();

}  // namespace ulvak::platform
