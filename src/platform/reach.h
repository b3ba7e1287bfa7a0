#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/volume.h"

namespace ulvak::platform {

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

    struct Place {
        /// Without links and "..", up to where it could be followed; what came after that, as it was written.
        std::string path;
        bool isThere = false;  ///< whether it was followed to its end, and something is there
    };

    /// Where an absolute path leads, links followed.
    [[nodiscard]] Place follow(std::string_view path) const;

private:
    void findVolumes();
    [[nodiscard]] const Mount* mountOf(std::string_view path) const;

    std::vector<std::string> folders_;  ///< without links
    Others others_;
    std::vector<Mount> mounts_;
    std::vector<std::uint64_t> volumes_;  ///< that hold the folders
};

}  // namespace ulvak::platform
