#include "platform/posix/near_link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temp_tree.h"

namespace ulvak::platform::posix {
namespace {

using test::file;
using test::folder;
using test::link;
using test::TempTree;

class NearLink : public testing::Test {
protected:
    /// Of a link in the tree's own folder, with other volumes at these places of the tree.
    [[nodiscard]] bool leads(const std::string& name, const std::vector<std::string>& volumes = {}) const {
        std::vector<std::string> mounted = {"/", "/proc"};
        for (const std::string& volume : volumes)
            mounted.push_back(tree.path(volume));
        return leadsToSomethingNear(tree.path(), name, mounted);
    }

    TempTree tree{{folder("a", {folder("b", {file("file"), link("up", "../../file"), link("self", ".")}),
                                link("over", "b")}),
                   file("file")}};
};

TEST_F(NearLink, LeadsWhereItsTargetIs) {
    tree.add({link("to-file", "file"), link("to-folder", "a/b"), link("dotted", "./a/.//b/./"),
              link("absolute", tree.path("a/b/file")), link("root", "/"), link("here", "."),
              link("nowhere", "absent"), link("below-nothing", "a/absent/file"),
              link("below-a-file", "file/x")});
    for (const char* name : {"to-file", "to-folder", "dotted", "absolute", "root", "here"})
        EXPECT_TRUE(leads(name)) << name;
    for (const char* name : {"nowhere", "below-nothing", "below-a-file", "absent"})
        EXPECT_FALSE(leads(name)) << name;
}

TEST_F(NearLink, GoesUpAndThroughOtherLinks) {
    tree.add({link("up", "a/../file"), link("through", "a/over/file"), link("back", "a/over/up"),
              link("wide", "a/over/self/self/../b/up"), link("twice", "through"),
              link("not-up", "a/over/../file"),  // what `over` leads to has another parent: a
              link("far-up", "../../../../../../../../../../../../../../.."),
              link("out-and-in", "../" + tree.path().substr(tree.path().rfind('/') + 1) + "/file")});
    for (const char* name : {"up", "through", "back", "wide", "twice", "far-up", "out-and-in"})
        EXPECT_TRUE(leads(name)) << name;
    EXPECT_FALSE(leads("not-up"));
}

TEST_F(NearLink, EndsInALoopNowhere) {
    tree.add({link("loop", "loop"), link("one", "other"), link("other", "one"), link("deep", "a/../deep/x")});
    for (const char* name : {"loop", "one", "other", "deep"})
        EXPECT_FALSE(leads(name)) << name;
}

TEST_F(NearLink, IsFollowedAsOftenAsTheKernelDoes) {
    tree.add({link("0", "file")});
    for (int i = 1; i < 60; ++i)
        tree.add({link(std::to_string(i), std::to_string(i - 1))});
    EXPECT_TRUE(leads("31"));
    EXPECT_FALSE(leads("59"));
}

TEST_F(NearLink, EndsWhereAnotherVolumeBegins) {
    tree.add({link("at", "a"), link("below", "a/b/file"), link("absolute", tree.path("a/b/file")),
              link("through", "a/../file"), link("beside", "file")});
    for (const char* name : {"at", "below", "absolute", "through"})
        EXPECT_FALSE(leads(name, {"a"})) << name;
    EXPECT_TRUE(leads("at", {"a/b"})) << "what is mounted below is not in the way";
    EXPECT_FALSE(leads("below", {"a/b"}));
    EXPECT_FALSE(leads("below", {"x", "a/b/file"})) << "a file can be covered too";
    EXPECT_TRUE(leads("beside", {"a"}));
    EXPECT_TRUE(leads("below", {"a/b/f", "a/bb"})) << "only whole names count";
    EXPECT_TRUE(leadsToSomethingNear("/", "proc/..", {})) << "a folder that is the root";
    EXPECT_FALSE(leadsToSomethingNear("/", "proc/..", std::vector<std::string>{"/proc"}));
    const std::vector<std::string> own = {"/", tree.path()};
    EXPECT_FALSE(leadsToSomethingNear(tree.path(), "absolute", own)) << "the root is on another volume";
    EXPECT_TRUE(leadsToSomethingNear(tree.path(), "beside", own));
}

}  // namespace
}  // namespace ulvak::platform::posix
