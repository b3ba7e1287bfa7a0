#include <gtest/gtest.h>

#include <string>

#include "scan/disk_walker.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using namespace test;

TEST(DeadMounts, ARootThereIsPassedOver) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home", {file("big", 1'000'000)}), folder("nas"), link("way", "nas"),
                         link("below", "nas/tmp")});
    withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        ScanProgress progress;
        const DiskWalker walker{.progress = progress, .home = tree.path("home")};
        const std::vector<std::string> roots = {tree.path("nas"), tree.path("way"), tree.path("below"),
                                                tree.path("home")};
        const auto nodes = walker.nodes(roots);
        for (const std::size_t dead : {0U, 1U, 2U})
            EXPECT_FALSE(nodes[dead]);
        ASSERT_TRUE(nodes[3]);
        EXPECT_EQ(nodes[3]->fileCount, 1);
        EXPECT_FALSE(nas.wasAsked());
    });
}

}  // namespace
}  // namespace ulvak
