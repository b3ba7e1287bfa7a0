#include "core/disk_info.h"

#include "platform/volume.h"

namespace ulvak {

std::optional<DiskInfo> DiskInfo::current() {
    const auto capacity = platform::volumeCapacity("/");
    if (!capacity)
        return std::nullopt;
    return DiskInfo{.total = capacity->total, .available = capacity->available};
}

}  // namespace ulvak
