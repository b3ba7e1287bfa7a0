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

struct PromptVolumes {
    std::vector<std::string> places;
    bool isAll = true;  ///< whether there are no others on which a user keeps files
};

/// Where volumes are mounted that keep nobody waiting, nor lie below one that may. Safe from any thread.
[[nodiscard]] PromptVolumes promptVolumes();

/// How far looks may go, so that no volume is waited for that nobody has asked about: a link, a setting or a
/// variable can lead anywhere, also to a server that has not answered for a week. The list of what is mounted
/// is read once, when this is made; paths are then followed name by name, and whatever lies on a volume out
/// of reach is told by its path, without a look. Immutable; safe from any thread.
class Reach {
public:
    /// What of the volumes is within reach besides those that hold the given folders.
    enum class Others : std::uint8_t {
        none,
        prompt,  ///< those that answer at once or fail
    };

    /// Looks that are about these folders: the volumes that hold them are waited for, wherever links lead
    /// from these paths. Other places at which such a volume is mounted are within reach too.
    Reach(std::span<const std::string> folders, Others others);
    /// The same with another list of volumes, and folders without links.
    Reach(std::span<const std::string> folders, Others others, std::vector<Mount> mounts);

    /// Empty when the system does not say, and then nothing is out of reach.
    [[nodiscard]] const std::vector<Mount>& mounts() const { return mounts_; }

    /// Where the volume is mounted that an absolute path without links is on.
    [[nodiscard]] std::string_view mountPointOf(std::string_view path) const;

    /// Whether the place of an absolute path without links may be looked at.
    [[nodiscard]] bool includes(std::string_view path) const;

    struct Target {
        /// Without links and "..", up to where it could be followed; what came after that, as it was written.
        std::string path;
        bool isThere = false;  ///< whether it was followed to its end, and something is there
    };

    /// Where an absolute path leads, links followed.
    [[nodiscard]] Target follow(std::string_view path) const;

private:
    void findVolumes();
    [[nodiscard]] const Mount* mountOf(std::string_view path) const;

    std::vector<std::string> folders_;  ///< without links
    Others others_;
    std::vector<Mount> mounts_;
    std::vector<std::uint64_t> volumes_;  ///< that hold the folders
};

}  // namespace ulvak::platform
