#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak::platform {

/// Bytes.
struct VolumeCapacity {
    std::int64_t total = 0;
    /// What this user can still write.
    std::int64_t available = 0;
};

/// The capacity of the volume that holds `path`; nullopt if the system does not say. Thread-safe; blocks on
/// that volume.
[[nodiscard]] std::optional<VolumeCapacity> volumeCapacity(const std::string& path);

/// A mounted volume.
struct Mount {
    std::string path;          ///< absolute, links resolved
    std::uint64_t volume = 0;  ///< the same for every place where one file system is mounted
    /// Whether accessing it may block forever: it is on another computer or served by a program, either of
    /// which may be gone. Never true for the volume at "/".
    bool mayHang = false;
};

/// The mounted volumes not hidden by others, in the system's order. Read without touching the volumes
/// themselves, so a dead server cannot block the caller. Empty if unknown. Thread-safe.
[[nodiscard]] std::vector<Mount> mounts();

/// The paths of `mounts()`.
[[nodiscard]] std::vector<std::string> mountPoints();

struct PromptVolumes {
    std::vector<std::string> places;
    bool isAll = true;  ///< whether there are no others on which a user keeps files
};

/// The mount points of volumes that never block and are not below one that may. Thread-safe.
[[nodiscard]] PromptVolumes promptVolumes();

/// Limits which paths may be accessed, so that no volume is waited for without need: a link, a setting or a
/// variable can lead anywhere, even to a server that has not answered for a week. The mount list is read
/// once, on construction. Paths are then followed name by name, and anything on a volume out of reach is
/// recognised by its path, without touching it. Immutable; thread-safe.
class Reach {
public:
    /// Which volumes are within reach besides those that hold the given folders.
    enum class Others : std::uint8_t {
        none,
        prompt,  ///< those that answer at once or fail
    };

    /// For accesses that concern these folders: the volumes that hold them may be waited for, wherever links
    /// in these paths lead. Other mount points of the same volumes are within reach too.
    Reach(std::span<const std::string> folders, Others others);
    /// The same, with a given list of volumes and folders without links.
    Reach(std::span<const std::string> folders, Others others, std::vector<Mount> mounts);

    /// Empty if the system does not say; then nothing is out of reach.
    [[nodiscard]] const std::vector<Mount>& mounts() const { return mounts_; }

    /// The mount point of the volume that contains an absolute path without links.
    [[nodiscard]] std::string_view mountPointOf(std::string_view path) const;

    /// Whether an absolute path without links may be accessed.
    [[nodiscard]] bool includes(std::string_view path) const;

    struct Target {
        /// Free of links and ".." as far as it could be followed; the rest as written.
        std::string path;
        bool isThere = false;  ///< whether it was followed to the end and something is there
    };

    /// Resolves an absolute path, following links.
    [[nodiscard]] Target follow(std::string_view path) const;

private:
    void findVolumes();
    [[nodiscard]] const Mount* mountOf(std::string_view path) const;

    std::vector<std::string> folders_;  ///< links resolved
    Others others_;
    std::vector<Mount> mounts_;
    std::vector<std::uint64_t> volumes_;  ///< those that hold the folders
};

}  // namespace ulvak::platform
