#include <gtest/gtest.h>

#include <string>

#include "clean_support.h"

// Folders that must stay although their path does not show it.

namespace ulvak {
namespace {

using namespace test;

void expectProtected(const TempTree& tree, const std::string& item, CleanMode mode = CleanMode::permanent) {
    const auto freed = cleaner().clean(finding({tree.path(item)}), mode);
    ASSERT_FALSE(freed) << item;
    EXPECT_TRUE(std::holds_alternative<CleanError>(freed.error())) << item << ": " << text(freed.error());
    EXPECT_TRUE(exists(tree.path(item)));
}

TEST(KeptFolders, AFolderToWhichAKeptLinkLeadsIsProtected) {
    TempTree tree(lifelike());
    tree.add("home",
             {folder("Cloud", {folder("Pictures", {textFile("p", "p")})}), link("Pictures", "Cloud/Pictures"),
              folder("safe", {folder("keys", {textFile("k", "k")})}), link(".gnupg", "safe/keys")});
    inHome(tree, [&] {
        expectProtected(tree, "home/Cloud/Pictures");
        expectProtected(tree, "home/Cloud");
        expectProtected(tree, "home/safe/keys/k");
        expectProtected(tree, "home/safe");
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/Cloud/Pictures/p")}), CleanMode::permanent));
    });
}

TEST(KeptFolders, AHomeMountedASecondTimeIsProtectedThereToo) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree(
        {folder("users", {folder("ayse", {folder("Music", {textFile("m", "m")}),
                                          folder(".ssh", {textFile("id", "k")}), textFile("x", "x")})}),
         folder("tmp")});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountAgain(tree.path("users"), tree.path("tmp")));
        const ScopedEnvironment environment({{"HOME", tree.path("users/ayse")},
                                             {"TMPDIR", tree.path("tmp")},
                                             {"XDG_DATA_HOME", std::nullopt}});
        for (const char* item : {"tmp/ayse", "tmp/ayse/Music", "tmp/ayse/.ssh", "tmp/ayse/.ssh/id"})
            expectProtected(tree, item);
        EXPECT_TRUE(cleaner().clean(finding({tree.path("tmp/ayse/x")}), CleanMode::permanent));
        EXPECT_FALSE(exists(tree.path("users/ayse/x")));
    });
}

TEST(KeptFolders, TheKeychainsOfAHomeReachedThroughALinkAreProtectedUnderBothNames) {
    const TempTree tree(
        {folder("tmp", {folder("u", {folder("Library", {folder("Keychains", {textFile("login", "k")})})})}),
         link("home", "tmp/u")});
    inHome(tree, [&] {
        expectProtected(tree, "tmp/u/Library/Keychains/login");
        expectProtected(tree, "tmp/u/Library/Keychains");
        expectProtected(tree, "tmp/u/Library");
    });
}

TEST(KeptFolders, OfAFindingWithSeveralItemsNoneIsTouchedWhenOneMustStay) {
    TempTree tree(lifelike());
    tree.add("home", {folder(".ssh", {textFile("id", "k")})});
    inHome(tree, [&] {
        for (const CleanMode mode : {CleanMode::trash, CleanMode::permanent}) {
            const auto freed =
                cleaner().clean(finding({tree.path("home/one"), tree.path("home/.ssh/id")}), mode);
            ASSERT_FALSE(freed);
            EXPECT_EQ(text(freed.error()), "~/.ssh/id korumalı bir konum; Ulvak burayı silmez.");
            EXPECT_TRUE(exists(tree.path("home/one")));
        }
    });
}

TEST(KeptFolders, ALinkThatLeadsToAKeptFolderMayGo) {
    TempTree tree(lifelike());
    tree.add("home", {link("way", "Documents")});
    inHome(tree, [&] {
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/way")}), CleanMode::permanent));
        EXPECT_FALSE(exists(tree.path("home/way")));
        EXPECT_TRUE(exists(tree.path("home/Documents/old.zip")));
    });
}

}  // namespace
}  // namespace ulvak
