#include "clean/guard_rails.h"

#include <gtest/gtest.h>

#include <string>

namespace ulvak {
namespace {

const UserFolders mac{.home = "/Users/ayşe",
                      .temp = "/var/folders/ab/xyz/T",
                      .cache = "/var/folders/ab/xyz/C",
                      .trash = "/Users/ayşe/.Trash"};

bool allows(std::string_view path) {
    return GuardRails(mac).isAllowed(path);
}

TEST(GuardRails, RefusesTheHomeFolderAndTheSystemsFolders) {
    for (const char* path : {"/", "/Applications", "/System", "/Users", "/private/var", "/opt/homebrew",
                             "/Users/ayşe", "/Users/ayşe/Library", "/Users/ayşe/Documents"})
        EXPECT_FALSE(allows(path)) << path;
    EXPECT_TRUE(allows("/Users/ayşe/Library/Caches/com.example.app"));
    EXPECT_TRUE(allows("/Users/ayşe/Documents/old.zip"));
}

TEST(GuardRails, ProtectsThirtyOnePlaces) {
    const GuardRails rails(mac);
    EXPECT_EQ(rails.protectedPaths().size(), 31U);
    for (const std::string& path : rails.protectedPaths())
        EXPECT_FALSE(rails.isAllowed(path)) << path;
}

TEST(GuardRails, EveryPrefixEndsAtAComponent) {
    const GuardRails rails(mac);
    for (const auto& list : {rails.forbiddenPrefixes(), rails.allowedPrefixes()}) {
        for (const std::string& prefix : list)
            EXPECT_TRUE(prefix.ends_with('/')) << prefix;
    }
    EXPECT_FALSE(allows("/Users/ayşegül/file"));
    EXPECT_FALSE(allows("/usrlocal/file"));
}

TEST(GuardRails, RefusesTheKeychainsThoughTheHomeFolderWouldAllowThem) {
    EXPECT_FALSE(allows("/Users/ayşe/Library/Keychains/login.keychain-db"));
    EXPECT_FALSE(allows("/Users/ayşe/Library/Keychains"));
    EXPECT_TRUE(allows("/Users/ayşe/Library/Keychains2"));
}

TEST(GuardRails, TheTemporaryFolderHasASecondName) {
    EXPECT_TRUE(allows("/private/var/folders/ab/xyz/T/thing"));
    EXPECT_FALSE(allows("/private/var/folders/ab/xyz/T"));
    EXPECT_FALSE(allows("/private/var/folders/ab/xyz/C/"));
    EXPECT_FALSE(allows("/private/var/folders/ab/other/T/thing"));
    EXPECT_EQ(GuardRails(mac).place("/private/var/folders/ab/xyz/T/a/b"),
              (CleanPlace{.anchor = "/var/folders/ab/xyz/T", .relative = "a/b"}));
}

TEST(GuardRails, AllowsWhatLiesInThePrefixesOnly) {
    EXPECT_FALSE(allows("/usr/local/bin/tool"));
    EXPECT_FALSE(allows("/opt/homebrew/Cellar/tool"));
    EXPECT_FALSE(allows("/private/var/vm/sleepimage"));
    EXPECT_TRUE(allows("/Applications/Editor.app"));
    EXPECT_FALSE(allows("/Users/Shared"));
    EXPECT_TRUE(allows("/Users/Shared/file"));
    EXPECT_FALSE(allows("/Volumes/Disk/file"));
}

TEST(GuardRails, LetterCaseIsPartOfAName) {
    EXPECT_TRUE(allows("/Users/ayşe/documents"));
    EXPECT_FALSE(allows("/users/ayşe/file"));
}

TEST(GuardRails, JudgesThePathThatDotsAndSlashesComeDownTo) {
    EXPECT_FALSE(allows("/Users/ayşe/a/.."));
    EXPECT_FALSE(allows("/Users/ayşe//Documents///"));
    EXPECT_FALSE(allows("/Users/ayşe/./Library/Keychains/../Keychains/x"));
    EXPECT_FALSE(allows("/Users/ayşe/../başkası/file"));
    EXPECT_FALSE(allows("/Applications/../System/x"));
    EXPECT_FALSE(allows("/../../.."));
    EXPECT_TRUE(allows("/usr/../Users/ayşe/file/"));
    EXPECT_EQ(GuardRails(mac).place("/x/../Users/ayşe//a/./b/"),
              (CleanPlace{.anchor = "/Users/ayşe", .relative = "a/b"}));
}

TEST(GuardRails, RefusesWhatIsNoPath) {
    EXPECT_FALSE(allows(""));
    EXPECT_FALSE(allows("Users/ayşe/file"));
    EXPECT_FALSE(allows("~/file"));
    EXPECT_FALSE(allows(std::string("/Users/ayşe/a\0/b", 17)));
}

TEST(GuardRails, NothingIsAllowedInAHomeThatIsTheRoot) {
    const GuardRails rails({.home = "/", .temp = "/tmp", .cache = "/C"});
    EXPECT_FALSE(rails.isAllowed("/etc"));
    EXPECT_FALSE(rails.isAllowed("//etc/passwd"));
    EXPECT_TRUE(rails.isAllowed("/tmp/x"));
}

TEST(GuardRails, WithoutACacheItsPlaceIsLikeAnyOther) {
    const UserFolders outside{.home = "/h", .temp = "/data/tmp", .cache = "/data/C"};
    EXPECT_TRUE(GuardRails(outside).isAllowed("/data/C/work"));
    EXPECT_FALSE(GuardRails(outside, false).isAllowed("/data/C/work"));
    EXPECT_TRUE(GuardRails(outside, false).isAllowed("/data/tmp/x"));
    const GuardRails inHome({.home = "/h", .temp = "/h/tmp", .cache = "/h/C"}, false);
    EXPECT_EQ(inHome.place("/h/C/work"), (CleanPlace{.anchor = "/h", .relative = "C/work"}));
    EXPECT_FALSE(inHome.isAllowed("/h/C"));
}

TEST(GuardRails, OfNestedFoldersTheInnermostIsTheAnchor) {
    const GuardRails rails({.home = "/h", .temp = "/h/tmp", .cache = "/h/C"});
    EXPECT_EQ(rails.place("/h/tmp/a/b"), (CleanPlace{.anchor = "/h/tmp", .relative = "a/b"}));
    EXPECT_EQ(rails.place("/h/tmpa/b"), (CleanPlace{.anchor = "/h", .relative = "tmpa/b"}));
}

TEST(CleanPlace, TellsTheFolderFromTheName) {
    const CleanPlace deep{.anchor = "/h", .relative = "a/b/c"};
    EXPECT_EQ(deep.folder(), "a/b");
    EXPECT_EQ(deep.name(), "c");
    EXPECT_EQ(deep.path(), "/h/a/b/c");
    const CleanPlace direct{.anchor = "/h", .relative = "c"};
    EXPECT_EQ(direct.folder(), "");
    EXPECT_EQ(direct.name(), "c");
}

}  // namespace
}  // namespace ulvak
