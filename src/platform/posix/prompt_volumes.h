#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/volume.h"

namespace ulvak::platform::posix {

struct PromptVolumes {
    std::vector<std::string> places;
    bool isAll = true;  ///< whether there are no others on which a user keeps files
};

/// Where volumes are mounted that keep nobody waiting, nor lie below one that may.
[[nodiscard]] inline PromptVolumes promptVolumes() {
    constexpr std::array<std::string_view, 5> systems = {"/dev/", "/proc/", "/run/user/", "/sys/",
                                                         "/System/"};
    const auto isWithin = [](std::string_view path, std::string_view folder) {
        return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
    };
    PromptVolumes volumes;
    const std::vector<Mount> all = mounts();
    for (const Mount& mount : all) {
        if (std::ranges::any_of(systems,
                                [&](std::string_view folder) { return mount.path.starts_with(folder); }))
            continue;
        const bool isPrompt = std::ranges::none_of(
            all, [&](const Mount& around) { return around.mayHang && isWithin(mount.path, around.path); });
        if (isPrompt)
            volumes.places.push_back(mount.path);
        else
            volumes.isAll = false;
    }
    return volumes;
}

}  // namespace ulvak::platform::posix
