#include "platform/volume.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::file;
using test::folder;
using test::link;
using test::TempTree;

class ReachTest : public testing::Test {
protected:
    /// Treats these places of the tree as separate volumes on servers.
    [[nodiscard]] Reach reach(const std::vector<std::string>& servers = {},
                              Reach::Others others = Reach::Others::prompt) const {
        std::vector<Mount> mounts = {{.path = "/", .volume = 1}, {.path = "/proc", .volume = 2}};
        for (const std::string& server : servers)
            mounts.push_back({.path = tree.path(server), .volume = 2 + mounts.size(), .mayHang = true});
        return {{&tree.path(), 1}, others, std::move(mounts)};
    }

    [[nodiscard]] bool leads(const std::string& name, const std::vector<std::string>& servers = {}) const {
        return reach(servers).follow(tree.path(name)).isThere;
    }

    TempTree tree{{folder("a", {folder("b", {file("file"), link("up", "../../file"), link("self", ".")}),
                                link("over", "b")}),
                   file("file")}};
};

TEST_F(ReachTest, LeadsWhereItsTargetIs) {
    tree.add({link("to-file", "file"), link("to-folder", "a/b"), link("dotted", "./a/.//b/./"),
              link("absolute", tree.path("a/b/file")), link("root", "/"), link("here", "."),
              link("nowhere", "absent"), link("below-nothing", "a/absent/file"),
              link("below-a-file", "file/x")});
    for (const char* name : {"to-file", "to-folder", "dotted", "absolute", "root", "here"})
        EXPECT_TRUE(leads(name)) << name;
    for (const char* name : {"nowhere", "below-nothing", "below-a-file", "absent"})
        EXPECT_FALSE(leads(name)) << name;
}

TEST_F(ReachTest, GoesUpAndThroughOtherLinks) {
    tree.add({link("up", "a/../file"), link("through", "a/over/file"), link("back", "a/over/up"),
              link("wide", "a/over/self/self/../b/up"), link("twice", "through"),
              link("not-up", "a/over/../file"),  // the target of `over` has another parent: a
              link("far-up", "../../../../../../../../../../../../../../.."),
              link("out-and-in", "../" + tree.path().substr(tree.path().rfind('/') + 1) + "/file")});
    for (const char* name : {"up", "through", "back", "wide", "twice", "far-up", "out-and-in"})
        EXPECT_TRUE(leads(name)) << name;
    EXPECT_FALSE(leads("not-up"));
}

TEST_F(ReachTest, EndsInALoopNowhere) {
    tree.add({link("loop", "loop"), link("one", "other"), link("other", "one"), link("deep", "a/../deep/x")});
    for (const char* name : {"loop", "one", "other", "deep"})
        EXPECT_FALSE(leads(name)) << name;
}

TEST_F(ReachTest, IsFollowedAsOftenAsTheKernelDoes) {
    tree.add({link("0", "file")});
    for (int i = 1; i < 60; ++i)
        tree.add({link(std::to_string(i), std::to_string(i - 1))});
    EXPECT_TRUE(leads("31"));
    EXPECT_FALSE(leads("59"));
}

TEST_F(ReachTest, EndsWhereAnotherVolumeBegins) {
    tree.add({link("at", "a"), link("below", "a/b/file"), link("absolute", tree.path("a/b/file")),
              link("through", "a/../file"), link("beside", "file")});
    for (const char* name : {"at", "below", "absolute", "through"})
        EXPECT_FALSE(leads(name, {"a"})) << name;
    EXPECT_TRUE(leads("at", {"a/b"})) << "what is mounted below is not in the way";
    EXPECT_FALSE(leads("below", {"a/b"}));
    EXPECT_FALSE(leads("below", {"x", "a/b/file"})) << "a file can be covered too";
    EXPECT_TRUE(leads("beside", {"a"}));
    EXPECT_TRUE(leads("below", {"a/b/f", "a/bb"})) << "only whole names count";
}

TEST_F(ReachTest, SaysWhereAPathLeads) {
    tree.add({link("up", "a/../file"), link("out", "a/b/../../a/over/file"), link("server", "a/b/x/../y")});
    const auto path = [&](const std::string& name, const std::vector<std::string>& servers = {}) {
        return reach(servers).follow(tree.path(name)).path;
    };
    EXPECT_EQ(path("up"), tree.path("file"));
    EXPECT_EQ(path("out"), tree.path("a/b/file"));
    EXPECT_EQ(path("a/./over//"), tree.path("a/b"));
    EXPECT_EQ(path("a/over/absent/x"), tree.path("a/b/absent/x"));
    EXPECT_EQ(path("server", {"a/b"}), tree.path("a/b/x/../y")) << "nobody knows what is there";
    EXPECT_EQ(reach().follow("/").path, "/");
    EXPECT_TRUE(reach().follow("/..").isThere);
    EXPECT_FALSE(reach().follow("relative").isThere);
    EXPECT_FALSE(reach().follow("").isThere);
}

TEST_F(ReachTest, AFileIsNoFolder) {
    EXPECT_TRUE(leads("file"));
    EXPECT_FALSE(leads("file/"));
    EXPECT_FALSE(leads("file/.."));
}

TEST_F(ReachTest, IncludesTheVolumesOfItsFoldersAndOthersThatAnswer) {
    const std::vector<std::string> folders = {"/home/ayse", "/scratch/t"};
    const std::vector<Mount> mounts = {{.path = "/", .volume = 1},
                                       {.path = "/home", .volume = 2, .mayHang = true},
                                       {.path = "/home/ayse", .volume = 3, .mayHang = true},
                                       {.path = "/home/ayse/nas", .volume = 4, .mayHang = true},
                                       {.path = "/home/ayse/disk", .volume = 5},
                                       {.path = "/again", .volume = 3, .mayHang = true},
                                       {.path = "/data", .volume = 6},
                                       {.path = "/data/nas", .volume = 7, .mayHang = true}};
    for (const Reach::Others others : {Reach::Others::none, Reach::Others::prompt}) {
        const Reach reach(folders, others, mounts);
        for (const char* path :
             {"/", "/usr", "/home", "/home/ayse", "/home/ayse/x", "/again/x", "/scratch/t"})
            EXPECT_TRUE(reach.includes(path)) << path;
        // The first is on a volume that is only on the way: anything else there may have to be mounted by a
        // service that is gone.
        for (const char* path : {"/home/ali", "/home/ayse/nas", "/home/ayse/nas/x", "/data/nas"})
            EXPECT_FALSE(reach.includes(path)) << path;
        for (const char* path : {"/home/ayse/disk", "/data/x"})
            EXPECT_EQ(reach.includes(path), others == Reach::Others::prompt) << path;
        EXPECT_EQ(reach.mountPointOf("/data/nas/x"), "/data/nas");
        EXPECT_EQ(reach.mountPointOf("/datum"), "/");
    }
}

TEST_F(ReachTest, WithoutAListNothingIsOutOfReach) {
    const Reach reach({&tree.path(), 1}, Reach::Others::none, {});
    EXPECT_TRUE(reach.includes("/anything"));
    EXPECT_TRUE(reach.follow(tree.path("a/over")).isThere);
}

}  // namespace
}  // namespace ulvak::platform
