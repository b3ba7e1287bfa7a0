#include "platform/volume.h"

#import <Foundation/Foundation.h>
#include <sys/mount.h>

#include <algorithm>

#include "platform/macos/text.h"

namespace ulvak::platform {
namespace {

std::vector<struct statfs> volumes() {
    // Others may mount meanwhile: with some room to spare, and again when that was not enough.
    constexpr std::size_t spare = 8;
    std::vector<struct statfs> volumes;
    int count = ::getfsstat(nullptr, 0, MNT_NOWAIT);
    while (count >= 0 && static_cast<std::size_t>(count) >= volumes.size()) {
        volumes.resize(static_cast<std::size_t>(count) + spare);
        count =
            ::getfsstat(volumes.data(), static_cast<int>(volumes.size() * sizeof(struct statfs)), MNT_NOWAIT);
    }
    volumes.resize(static_cast<std::size_t>(std::max(count, 0)));
    return volumes;
}

}  // namespace

std::optional<VolumeCapacity> volumeCapacity(const std::string& path) {
    // An empty path would be taken for the folder that the program works in.
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

std::vector<std::string> mountPoints() {
    std::vector<std::string> points;
    for (const struct statfs& volume : volumes())
        points.emplace_back(volume.f_mntonname);
    return points;
}

Volumes promptVolumes() {
    Volumes result;
    for (const struct statfs& volume : volumes()) {
        // What the system keeps out of people's sight holds no Trash of theirs.
        if ((volume.f_flags & MNT_LOCAL) != 0 && (volume.f_flags & MNT_DONTBROWSE) == 0)
            result.points.emplace_back(volume.f_mntonname);
        else if ((volume.f_flags & MNT_DONTBROWSE) == 0)
            result.isAll = false;
    }
    return result;
}

}  // namespace ulvak::platform
