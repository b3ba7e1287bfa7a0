#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "ai/fact_world.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"

// Describing a folder must not wait for a server while it checks places elsewhere.

namespace ulvak {
namespace {

using namespace test;
using testing::HasSubstr;

TEST(DeadMounts, NobodyLooksThereForSourcesOrApplications) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    FactWorld world({folder("nas"), folder("Developer"), link("GitHub", "nas/GitHub"),
                     link("code", "Developer"),
                     folder("src", {link("editor", "../nas/editor"), folder("server")}),
                     folder(".editor", {textFile("a.txt", "a")}), folder(".server", {textFile("b.txt", "b")}),
                     folder("repos", {folder("editor", {folder(".git")})})});
    world.tree.add({link("far-apps", "home/nas/apps")});
    world.around.applications = world.tree.path("far-apps");
    withPrivateMounts([&] {
        const DeadMount nas(world.home("nas"));
        const DeadMount developer(world.home("Developer"));
        const DeadMount server(world.home("src/server"));
        ASSERT_TRUE(nas.isMounted() && developer.isMounted() && server.isMounted());
        EXPECT_THAT(world.build(world.finding(".editor")), HasSubstr("~/repos/editor"))
            << "found behind them";
        EXPECT_THAT(world.build(world.finding(".server")), HasSubstr("no app named"));
        EXPECT_FALSE(nas.wasAsked());
        EXPECT_FALSE(developer.wasAsked());
        EXPECT_FALSE(server.wasAsked());
    });
}

}  // namespace
}  // namespace ulvak
