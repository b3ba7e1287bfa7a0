#include "support/temp_tree.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "platform/files.h"
#include "support/environment.h"
#include "support/isolation.h"

namespace ulvak::test {
namespace {

using namespace std::chrono_literals;

struct stat lookAt(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
}

TEST(TempTree, MakesEveryKindOfEntry) {
    const TempTree tree({folder("a", {file("b", 5'000'000)}), sparseFile("hole", 1'000'000'000),
                         textFile("t", "abc"), link("l", "a/b"), hardLink("h", "a/b"), fifo("f"),
                         socket("s")});

    EXPECT_TRUE(S_ISDIR(lookAt(tree.path("a")).st_mode));
    EXPECT_GE(tree.allocated("a/b"), 5'000'000);
    EXPECT_LT(tree.allocated("a/b"), 5'000'000 + 1'000'000);
    EXPECT_EQ(lookAt(tree.path("hole")).st_size, 1'000'000'000);
    EXPECT_LT(tree.allocated("hole"), 1'000'000);
    EXPECT_EQ(lookAt(tree.path("t")).st_size, 3);
    EXPECT_TRUE(S_ISLNK(lookAt(tree.path("l")).st_mode));
    EXPECT_EQ(lookAt(tree.path("h")).st_ino, lookAt(tree.path("a/b")).st_ino);
    EXPECT_TRUE(S_ISFIFO(lookAt(tree.path("f")).st_mode));
    EXPECT_TRUE(S_ISSOCK(lookAt(tree.path("s")).st_mode));
}

TEST(TempTree, SetsModesAndDatesAfterTheChildrenAreMade) {
    const FileTime date = std::chrono::sys_days{std::chrono::year{1999} / 12 / 31} + 1s;
    const TempTree tree(
        {folder("old", {file("child")}).modifiedAt(date), folder("locked", {file("child")}).withMode(0)});
    EXPECT_EQ(platform::fileInfo(tree.path("old"))->modified, date);
    EXPECT_EQ(lookAt(tree.path("locked")).st_mode & 0777U, 0U);
}

TEST(TempTree, RemovesEverythingThatHasComeToLieInIt) {
    auto tree = std::make_unique<TempTree>(std::vector{
        folder("removed-1", {folder("removed-2", {file("x")})}), folder("empty"), link("loop", ".")});
    const std::string path = tree->path();
    ASSERT_EQ(::mkdir(tree->path("removed-1/later").c_str(), 0755), 0);
    tree.reset();
    EXPECT_FALSE(exists(path));
}

TEST(TempTree, RemovesNamesOfEveryByte) {
    auto tree = std::make_unique<TempTree>();
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            tree->add({folder(std::string("x") + static_cast<char>(byte), {file("y")})});
    }
    const std::string path = tree->path();
    tree.reset();
    EXPECT_FALSE(exists(path));
}

TEST(TempTree, RemovesFiveThousandNestedFolders) {
    auto tree = std::make_unique<TempTree>();
    const std::string path = tree->path();
    const std::string bottom = tree->addChain("a name of some length", 5000, {file("last")});
    EXPECT_GT(bottom.size(), 100'000U);
    tree.reset();
    EXPECT_FALSE(exists(path));
}

TEST(TempTree, RemovesUnreadableFoldersOfAnUnprivilegedUser) {
    const TempTree outer({}, TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(outer.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const ScopedEnvironment environment({{"TMPDIR", outer.path()}});
        auto tree = std::make_unique<TempTree>(
            std::vector{folder("a", {folder("b", {file("c")}).withMode(0)}).withMode(0500)});
        const std::string path = tree->path();
        tree.reset();
        EXPECT_FALSE(exists(path));
    });
}

TEST(TempTree, RemovesALinkAndNotWhereItLeads) {
    const TempTree other({file("kept"), folder("inner", {file("kept")})});
    {
        const TempTree tree({link("out", other.path()), folder("a", {link("out", other.path("inner"))})});
    }
    EXPECT_TRUE(exists(other.path("kept")));
    EXPECT_TRUE(exists(other.path("inner/kept")));
}

TEST(TempTree, NeverEntersAMount) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree other({file("kept")});
    auto tree = std::make_unique<TempTree>(std::vector{folder("a", {folder("point")}), folder("point")});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountAgain(other.path(), tree->path("point")));
        ASSERT_TRUE(mountAgain(other.path(), tree->path("a/point")));
        EXPECT_NONFATAL_FAILURE(tree.reset(), "was not removed");
        EXPECT_TRUE(exists(other.path("kept")));
    });
}

TEST(TempTree, BelongsToAnUnprivilegedUserOnRequest) {
    const TempTree tree({folder("a", {file("b"), link("c", "b")})}, TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        EXPECT_EQ(::unlink(tree.path("a/b").c_str()), 0);
        EXPECT_EQ(::unlink(tree.path("a/c").c_str()), 0);
        EXPECT_EQ(::rmdir(tree.path("a").c_str()), 0);
    });
}

}  // namespace
}  // namespace ulvak::test
