#include "platform/volume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::file;
using test::folder;
using test::TempTree;
using testing::Contains;

TEST(Volume, CapacityOfTheStartUpVolume) {
    const auto capacity = volumeCapacity("/");
    ASSERT_TRUE(capacity);
    EXPECT_GT(capacity->total, 0);
    EXPECT_GE(capacity->available, 0);
    EXPECT_LE(capacity->available, capacity->total);
}

TEST(Volume, CapacityIsAbsentWhereNothingIs) {
    const TempTree tree;
    EXPECT_FALSE(volumeCapacity(tree.path("absent")));
    EXPECT_FALSE(volumeCapacity(""));
    EXPECT_FALSE(volumeCapacity(std::string(10'000, 'x')));
}

TEST(Volume, CapacityCountsBytesOfTheVolumeThatHoldsThePath) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree({folder("volume")});
    test::withPrivateMounts([&] {
        constexpr std::int64_t size = 8 * 1024 * 1024;
        ASSERT_TRUE(test::mountMemory(tree.path("volume"), "size=8m"));
        const auto empty = volumeCapacity(tree.path("volume"));
        ASSERT_TRUE(empty);
        EXPECT_EQ(empty->total, size);
        EXPECT_EQ(empty->available, size);

        tree.add("volume", {folder("deep", {file("held", 1024 * 1024)})});
        const auto used = volumeCapacity(tree.path("volume/deep"));
        ASSERT_TRUE(used);
        EXPECT_EQ(used->total, size);
        EXPECT_EQ(used->available, size - 1024 * 1024);
    });
}

TEST(Volume, MountPointsHoldTheRootAndAreAbsolute) {
    const auto points = mountPoints();
    EXPECT_THAT(points, Contains("/"));
    EXPECT_TRUE(std::ranges::all_of(points, [](const std::string& point) { return point.starts_with('/'); }));
}

TEST(Volume, MountPointsAreReadWhateverTheirNames) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const std::vector<std::string> names = {
        "boş luk",  "ters\\bölü",   "\\040",       "sekme\t",     "satır\nsonu", "kare#", "çğıöşüÇĞİÖŞÜ",
        "\xff\xfe", "dikey\vsekme", "sayfa\fsonu", "satır\rbaşı", " önde",       "sonda "};
    TempTree tree;
    for (const std::string& name : names)
        tree.add({folder(name)});
    test::withPrivateMounts([&] {
        for (const std::string& name : names)
            ASSERT_TRUE(test::mountMemory(tree.path(name)));
        const auto points = mountPoints();
        for (const std::string& name : names)
            EXPECT_THAT(points, Contains(tree.path(name)));
    });
}

TEST(Volume, AMountThatIsCoveredByAnotherIsNone) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree({folder("a", {folder("b"), folder("c")}), folder("d"), folder("ab")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("a/b")));
        ASSERT_TRUE(test::mountMemory(tree.path("ab")));
        EXPECT_THAT(mountPoints(), Contains(tree.path("a/b")));

        ASSERT_TRUE(test::mountMemory(tree.path("a")));
        tree.add("a", {folder("b"), folder("c")});
        ASSERT_TRUE(test::mountMemory(tree.path("a/c")));
        EXPECT_THAT(mountPoints(), Contains(tree.path("a")));
        EXPECT_THAT(mountPoints(), testing::Not(Contains(tree.path("a/b")))) << "a folder like others now";
        EXPECT_THAT(mountPoints(), Contains(tree.path("a/c")));
        EXPECT_THAT(mountPoints(), Contains(tree.path("ab"))) << "beside it";
        EXPECT_THAT(mountPoints(), Contains("/"));
    });
}

TEST(Volume, APlaceMountedTwiceIsOneMountPoint) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("a")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("a")));
        ASSERT_TRUE(test::mountMemory(tree.path("a")));
        const auto points = mountPoints();
        EXPECT_EQ(std::ranges::count(points, tree.path("a")), 1);
    });
}

TEST(Volume, AFolderShownASecondTimeIsAMountPointToo) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("original"), folder("again")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountAgain(tree.path("original"), tree.path("again")));
        EXPECT_THAT(mountPoints(), Contains(tree.path("again")));
        EXPECT_THAT(mountPoints(), testing::Not(Contains(tree.path("original"))));
    });
}

}  // namespace
}  // namespace ulvak::platform
