#include "core/disk_info.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "platform/volume.h"

namespace ulvak {
namespace {

TEST(DiskInfo, IsTheCapacityOfTheStartUpVolume) {
    constexpr std::int64_t ofOthers = 1'000'000'000;  // tolerance for concurrent writes by others
    const auto before = platform::volumeCapacity("/");
    const auto disk = DiskInfo::current();
    const auto after = platform::volumeCapacity("/");
    ASSERT_TRUE(disk);
    ASSERT_TRUE(before && after);
    EXPECT_EQ(disk->total, before->total);
    const auto [least, most] = std::minmax(before->available, after->available);
    EXPECT_GE(disk->available, least - ofOthers);
    EXPECT_LE(disk->available, most + ofOthers);
    EXPECT_LE(disk->available, disk->total);
}

TEST(DiskInfo, IsComparedFieldByField) {
    const DiskInfo disk{.total = 2, .available = 1};
    EXPECT_EQ(disk, (DiskInfo{.total = 2, .available = 1}));
    EXPECT_NE(disk, (DiskInfo{.total = 3, .available = 1}));
    EXPECT_NE(disk, (DiskInfo{.total = 2, .available = 2}));
}

}  // namespace
}  // namespace ulvak
