#include "core/disk_info.h"

#include <gtest/gtest.h>

#include "platform/volume.h"

namespace ulvak {
namespace {

TEST(DiskInfo, IsTheCapacityOfTheStartUpVolume) {
    const auto disk = DiskInfo::current();
    const auto volume = platform::volumeCapacity("/");
    ASSERT_TRUE(disk);
    ASSERT_TRUE(volume);
    EXPECT_EQ(disk->total, volume->total);
    // Others write at the same time.
    EXPECT_NEAR(static_cast<double>(disk->available), static_cast<double>(volume->available), 1e9);
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
