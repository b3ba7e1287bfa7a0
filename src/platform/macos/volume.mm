#include "platform/volume.h"

#import <Foundation/Foundation.h>
#include <sys/mount.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/macos/text.h"

namespace ulvak::platform {

std::optional<VolumeCapacity> volumeCapacity(const std::string& path) {
    // An empty path would mean the current directory.
    if (path.empty())
        return std::nullopt;
    @autoreleasepool {
        NSURL* place = urlOf(path);
        if (place == nil)
            return std::nullopt;
        NSArray<NSURLResourceKey>* keys =
            @[ NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityForImportantUsageKey ];
        NSDictionary<NSURLResourceKey, id>* values = [place resourceValuesForKeys:keys error:nil];
        NSNumber* total = values[NSURLVolumeTotalCapacityKey];
        NSNumber* available = values[NSURLVolumeAvailableCapacityForImportantUsageKey];
        if (total == nil || available == nil)
            return std::nullopt;
        return VolumeCapacity{.total = total.longLongValue, .available = available.longLongValue};
    }
}

std::vector<Mount> mounts() {
    // More may be mounted meanwhile: leave some room, and retry if that was not enough.
    constexpr std::size_t spare = 8;
    std::vector<struct statfs> volumes;
    int count = ::getfsstat(nullptr, 0, MNT_NOWAIT);
    while (count >= 0 && static_cast<std::size_t>(count) >= volumes.size()) {
        volumes.resize(static_cast<std::size_t>(count) + spare);
        count =
            ::getfsstat(volumes.data(), static_cast<int>(volumes.size() * sizeof(struct statfs)), MNT_NOWAIT);
    }
    std::vector<Mount> mounts;
    for (int i = 0; i < count; ++i) {
        const struct statfs& volume = volumes[static_cast<std::size_t>(i)];
        const std::string_view type = volume.f_fstypename;
        const bool asksOthers =
            (volume.f_flags & MNT_LOCAL) == 0 || type == "autofs" || type.contains("fuse");
        mounts.push_back({.path = volume.f_mntonname,
                          .volume = static_cast<std::uint32_t>(volume.f_fsid.val[0]),
                          .mayHang = asksOthers && std::string_view(volume.f_mntonname) != "/"});
    }
    return mounts;
}

}  // namespace ulvak::platform
