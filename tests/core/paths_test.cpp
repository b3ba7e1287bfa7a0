#include "core/paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/user_folders.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::folder;
using test::link;
using test::ScopedEnvironment;
using test::TempTree;

const UserFolders ayse{.home = "/home/ayse",
                       .temp = "/var/folders/ab/cd/T",
                       .cache = "/var/folders/ab/cd/C",
                       .trash = "/home/ayse/.local/share/Trash"};

/// The folders in a given environment.
UserFolders foldersIn(const char* home, const char* temp, std::optional<std::string> data = std::nullopt) {
    const ScopedEnvironment environment(
        {{"HOME", home}, {"TMPDIR", temp}, {"XDG_DATA_HOME", std::move(data)}});
    return UserFolders::ofCurrentUser();
}

TEST(UserFolders, HaveNoSlashAtTheEndAndNoneTwice) {
    for (const char* home : {"/home/ayse", "/home/ayse/", "/home/ayse///", "//home//ayse", "///home/ayse//"})
        EXPECT_EQ(foldersIn(home, "/tmp").home, "/home/ayse") << home;
    for (const char* temp : {"/var/tmp", "/var/tmp/", "//var//tmp//"})
        EXPECT_EQ(foldersIn("/home/ayse", temp).temp, "/var/tmp") << temp;
    EXPECT_EQ(foldersIn("/home/ayse//", "/tmp").trash, "/home/ayse/.local/share/Trash");
    EXPECT_EQ(foldersIn("/home/ayse", "/tmp", "/data//").trash, "/data/Trash");
}

TEST(UserFolders, ApplicationsFoldersAreWhereTheEnvironmentMovedThem) {
    const auto with = [](const char* variable, const char* value) {
        const ScopedEnvironment environment({{"HOME", "/home/ayse"},
                                             {"TMPDIR", "/tmp"},
                                             {"XDG_CACHE_HOME", std::nullopt},
                                             {"XDG_CONFIG_HOME", std::nullopt},
                                             {"XDG_DATA_HOME", std::nullopt},
                                             {"XDG_STATE_HOME", std::nullopt},
                                             {variable, value}});
        return UserFolders::ofCurrentUser();
    };
    EXPECT_EQ(with("XDG_CACHE_HOME", "/data//cache/").userCache, "/data/cache");
    EXPECT_EQ(with("XDG_CONFIG_HOME", "/home/ayse/.c").userConfig, "/home/ayse/.c");
    EXPECT_EQ(with("XDG_DATA_HOME", "/d").userData, "/d");
    EXPECT_EQ(with("XDG_STATE_HOME", "/s").userState, "/s");
    EXPECT_EQ(with("XDG_STATE_HOME", "/s").userCache, "");
    for (const char* nowhere :
         {"", "relative/cache", "/", "/home", "/home/ayse", "/home/ayse/", "/home/./ayse"})
        EXPECT_EQ(with("XDG_CACHE_HOME", nowhere).userCache, "") << nowhere;
}

TEST(UserFolders, HaveNoDotsInThem) {
    for (const char* home : {"/home/ayse/.", "/home/./ayse", "/./home/ayse/./"})
        EXPECT_EQ(foldersIn(home, "/tmp").home, "/home/ayse") << home;
    EXPECT_EQ(foldersIn("/home/.ayse/..b/c..", "/tmp").home, "/home/.ayse/..b/c..") << "those are names";
}

TEST(UserFolders, TwoDotsLeadWhereTheDiskSaysTheyDo) {
    const TempTree tree({folder("a", {folder("b")}), folder("c"), link("l", "a/b")});
    EXPECT_EQ(foldersIn(tree.path("c/../a").c_str(), "/tmp").home, tree.path("a"));
    EXPECT_EQ(foldersIn(tree.path("l/..").c_str(), "/tmp").home, tree.path("a"))
        << "not where the text would lead";
    EXPECT_EQ(foldersIn("/home/ayse", tree.path("a/b/../..").c_str()).temp, tree.path());
}

TEST(HasOwnCache, ACacheFolderInsideTheHomeFolderIsNone) {
    EXPECT_FALSE(Paths::hasOwnCache({.home = "/home/ayse", .temp = "/tmp", .cache = "/C"}))
        << "a disk of somebody's may be mounted there";
    EXPECT_TRUE(Paths::hasOwnCache({.home = "/home/ayse", .temp = "/home/T", .cache = "/home/C"}));
    EXPECT_FALSE(
        Paths::hasOwnCache({.home = "/home/ayse", .temp = "/home/ayse/tmp", .cache = "/home/ayse/C"}));
    EXPECT_FALSE(Paths::hasOwnCache({.home = "/home/ayse", .temp = "/x", .cache = "/home/ayse"}));
    EXPECT_FALSE(Paths::hasOwnCache({.home = "/", .temp = "/tmp", .cache = "/C"}));
}

TEST(HasOwnCache, LinksDoNotHideThatItLiesInTheHomeFolder) {
    const TempTree tree({folder("home", {folder("work"), folder("tmp"), link("outwards", "../outside")}),
                         folder("outside", {link("C", "../home/work"), folder("real")}),
                         link("home-link", "home"), link("inside", "home/tmp")});
    const auto has = [&](const char* home, const char* cache) {
        return Paths::hasOwnCache({.home = tree.path(home), .temp = "/tmp", .cache = tree.path(cache)});
    };
    EXPECT_TRUE(has("home", "outside/real"));
    EXPECT_FALSE(has("home", "outside/C")) << "a link to somebody's work";
    EXPECT_FALSE(has("home", "inside/C")) << "missing, but its folder lies there";
    EXPECT_FALSE(has("home-link", "home/C")) << "the home folder by another name";
    EXPECT_FALSE(has("home", "home-link/C"));
    EXPECT_FALSE(has("home", "home/outwards/real")) << "as it is written";
}

/// With these two in `tree` and the home folder elsewhere.
bool believesIn(const TempTree& tree, const char* temp, const char* cache) {
    return Paths::hasOwnCache(
        {.home = "/home/ayse", .temp = tree.path(temp), .cache = tree.path(cache), .trash = {}});
}

TEST(HasOwnCache, OfAGuessOnlyBesideATemporaryFolderNamedT) {
    if (platform::cacheDirectory())
        GTEST_SKIP() << "here the system names its cache";
    const TempTree tree(
        {folder("tmp"), folder("t"), folder("T"), folder("C"), folder("outer", {folder("T")})});
    EXPECT_TRUE(believesIn(tree, "T", "C"));
    EXPECT_TRUE(believesIn(tree, "outer/T", "outer/C")) << "missing, and so nobody's";
    for (const char* temp : {"tmp", "t", "missing"})
        EXPECT_FALSE(believesIn(tree, temp, "C")) << temp;
}

TEST(HasOwnCache, OfAGuessOnlyWhereBothAreFolders) {
    if (platform::cacheDirectory())
        GTEST_SKIP() << "here the system names its cache";
    const TempTree tree({folder("work"), folder("a", {folder("T"), link("C", "../work")}),
                         folder("b", {link("T", "../work"), folder("C")}),
                         folder("c", {folder("T"), test::file("C", 1)})});
    for (const char* name : {"a", "b", "c"})
        EXPECT_FALSE(believesIn(tree, (std::string(name) + "/T").c_str(), (std::string(name) + "/C").c_str()))
            << name;
}

TEST(HasOwnCache, OfAGuessOnlyWhereBothAreThisUsers) {
    if (platform::cacheDirectory())
        GTEST_SKIP() << "here the system names its cache";
    const TempTree tree({folder("a", {folder("T"), folder("C")}), folder("b", {folder("T"), folder("C")})});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    if (::chown(tree.path("a/T").c_str(), test::unprivilegedId, test::unprivilegedId) != 0)
        GTEST_SKIP() << "only root can have folders that are somebody else's";
    ASSERT_EQ(::chown(tree.path("b/C").c_str(), test::unprivilegedId, test::unprivilegedId), 0);
    EXPECT_FALSE(believesIn(tree, "a/T", "a/C"));
    EXPECT_FALSE(believesIn(tree, "b/T", "b/C"));
    ASSERT_EQ(::chown(tree.path("a/C").c_str(), test::unprivilegedId, test::unprivilegedId), 0);
    test::asUnprivileged([&] {
        EXPECT_TRUE(believesIn(tree, "a/T", "a/C"));
        EXPECT_FALSE(believesIn(tree, "b/T", "b/C"));
    });
}

TEST(UserFolders, TheRootFolderIsASlash) {
    for (const char* home : {"/", "//", "///", "/.", "/./", "/.."}) {
        const UserFolders folders = foldersIn(home, "/tmp");
        EXPECT_EQ(folders.home, "/") << home;
        EXPECT_EQ(folders.trash, "/.local/share/Trash") << home;
    }
}

TEST(UserFolders, KeepBytesThatAreNoText) {
    EXPECT_EQ(foldersIn("/home/\xff\n", "/\xfe").home, "/home/\xff\n");
}

TEST(UserFolders, CacheLiesBesideTheTemporaryFolderWhereTheSystemHasNone) {
    EXPECT_EQ(foldersIn("/home/ayse", "/var/folders/ab/cd/T").cache, "/var/folders/ab/cd/C");
    EXPECT_EQ(foldersIn("/home/ayse", "/var/folders/ab/cd/T/").cache, "/var/folders/ab/cd/C");
    EXPECT_EQ(foldersIn("/home/ayse", "/tmp").cache, "/C");
    EXPECT_EQ(foldersIn("/home/ayse", "/home/ayse/tmp").cache, "/home/ayse/C");
}

TEST(Expand, TildeAloneIsTheHomeFolder) {
    EXPECT_EQ(Paths::expand("~", ayse), "/home/ayse");
}

TEST(Expand, TildeAndASlashIsTheHomeFolderAndASlash) {
    EXPECT_EQ(Paths::expand("~/", ayse), "/home/ayse/");
}

TEST(Expand, TokenAloneIsItsFolderWithoutASlash) {
    EXPECT_EQ(Paths::expand("$T", ayse), "/var/folders/ab/cd/T");
    EXPECT_EQ(Paths::expand("$C", ayse), "/var/folders/ab/cd/C");
}

TEST(Expand, TokenBeforeASlashIsReplaced) {
    EXPECT_EQ(Paths::expand("~/Library/Caches/*", ayse), "/home/ayse/Library/Caches/*");
    EXPECT_EQ(Paths::expand("$T/x", ayse), "/var/folders/ab/cd/T/x");
    EXPECT_EQ(Paths::expand("$C/x", ayse), "/var/folders/ab/cd/C/x");
    EXPECT_EQ(Paths::expand("~//x", ayse), "/home/ayse//x");
    EXPECT_EQ(Paths::expand("$T/$C/~", ayse), "/var/folders/ab/cd/T/$C/~") << "only at the beginning";
}

TEST(Expand, AnythingElseComesBackUnchanged) {
    for (const std::string text : {"/usr", "", "/", "$X/a", "$X", "$Tx", "$Cx/y", "a/~/b", "~ayse", "~ayse/x",
                                   "/~", " ~", "$", "$t/x", "T/x", "\xff", "~\n/x"})
        EXPECT_EQ(Paths::expand(text, ayse), text);
}

TEST(Expand, AHomeFolderThatIsTheRootGivesNoDoubledSlash) {
    const UserFolders folders{.home = "/", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(Paths::expand("~", folders), "/");
    EXPECT_EQ(Paths::expand("~/Library", folders), "/Library");
}

TEST(Display, TemporaryFolderUnderPrivateIsRecognised) {
    EXPECT_EQ(Paths::display("/private/var/folders/ab/cd/T/x", ayse), "Geçici klasör/x");
    EXPECT_EQ(Paths::display("/private/var/folders/ab/cd/C/x", ayse), "Sistem önbelleği/x");
}

TEST(Display, PrivateGoesOnlyBeforeVarFolders) {
    EXPECT_EQ(Paths::display("/private/var/folders/zz/x", ayse), "/var/folders/zz/x");
    for (const std::string path : {"/private/var/folders", "/private/var/vm", "/private/tmp", "/private",
                                   "/x/private/var/folders/ab/cd/T", "/Private/var/folders/ab/cd/T"})
        EXPECT_EQ(Paths::display(path, ayse), path);
}

TEST(Display, TheTemporaryFolderItselfIsNamed) {
    EXPECT_EQ(Paths::display("/var/folders/ab/cd/T", ayse), "Geçici klasör");
    EXPECT_EQ(Paths::display("/var/folders/ab/cd/C", ayse), "Sistem önbelleği");
}

TEST(Display, WhatBeginsLikeTheTemporaryOrCacheFolderIsShownAsPartOfIt) {
    EXPECT_EQ(Paths::display("/var/folders/ab/cd/Temporary/x", ayse), "Geçici klasöremporary/x");
    EXPECT_EQ(Paths::display("/var/folders/ab/cd/Cx", ayse), "Sistem önbelleğix");
}

TEST(Display, TheHomeFolderIsATilde) {
    EXPECT_EQ(Paths::display("/home/ayse", ayse), "~");
    EXPECT_EQ(Paths::display("/home/ayse/", ayse), "~/");
    EXPECT_EQ(Paths::display("/home/ayse/Library", ayse), "~/Library");
}

TEST(Display, AFolderWhoseNameBeginsLikeTheHomeFoldersIsShownAsItIs) {
    for (const std::string path :
         {"/home/aysegul", "/home/ayse2/x", "/home/ayse ", "/home/ays", "/home", "/HOME/AYSE"})
        EXPECT_EQ(Paths::display(path, ayse), path);
}

TEST(Display, TemporaryAndCacheFolderComeBeforeTheHomeFolder) {
    const UserFolders nested{.home = "/h", .temp = "/h/tmp", .cache = "/h/C"};
    EXPECT_EQ(Paths::display("/h/tmp/x", nested), "Geçici klasör/x");
    EXPECT_EQ(Paths::display("/h/C/x", nested), "Sistem önbelleği/x");
    EXPECT_EQ(Paths::display("/h/x", nested), "~/x");
    const UserFolders inCache{.home = "/h", .temp = "/c/T", .cache = "/c"};
    EXPECT_EQ(Paths::display("/c/T/x", inCache), "Geçici klasör/x") << "the temporary folder is asked first";
}

TEST(Display, AHomeFolderThatIsTheRootHidesNothing) {
    const UserFolders folders{.home = "/", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(Paths::display("/", folders), "~");
    EXPECT_EQ(Paths::display("/usr", folders), "/usr");
}

TEST(Display, KeepsTheBytesOfAPath) {
    EXPECT_EQ(Paths::display("/home/ayse/\xff\n", ayse), "~/\xff\n");
    EXPECT_EQ(Paths::display("", ayse), "");
}

TEST(Join, PutsOneSlashBetween) {
    EXPECT_EQ(Paths::join("/a", "b"), "/a/b");
    EXPECT_EQ(Paths::join("/a/", "b"), "/a/b");
    EXPECT_EQ(Paths::join("/", "b"), "/b");
    EXPECT_EQ(Paths::join("/a", ""), "/a/");
}

TEST(LastComponent, IsWhatFollowsTheLastSlash) {
    EXPECT_EQ(Paths::lastComponent("/a/b"), "b");
    EXPECT_EQ(Paths::lastComponent("/a"), "a");
    EXPECT_EQ(Paths::lastComponent("a"), "a");
    EXPECT_EQ(Paths::lastComponent("/"), "/");
    EXPECT_EQ(Paths::lastComponent(""), "");
    EXPECT_EQ(Paths::lastComponent("/a/."), ".");
}

TEST(Extension, IsWhatFollowsTheLastDot) {
    const std::pair<std::string, std::string> cases[] = {
        {"a.txt", "txt"}, {"a.tar.gz", "gz"}, {"a", ""},    {".gitignore", ""},
        {"a.", ""},       {".a.b", "b"},      {"..", ""},   {"", ""},
        {"A.TXT", "TXT"}, {"a. b", " b"},     {"a.İ", "İ"},
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(Paths::extension(name), expected) << name;
}

TEST(IsWithin, ComparesComponentByComponent) {
    EXPECT_TRUE(Paths::isWithin("/a", "/a"));
    EXPECT_TRUE(Paths::isWithin("/a/b", "/a"));
    EXPECT_TRUE(Paths::isWithin("/a/b", "/a/"));
    EXPECT_TRUE(Paths::isWithin("/a", "/"));
    EXPECT_TRUE(Paths::isWithin("/", "/"));
    EXPECT_FALSE(Paths::isWithin("/ab", "/a"));
    EXPECT_FALSE(Paths::isWithin("/a", "/a/b"));
    EXPECT_FALSE(Paths::isWithin("/A/b", "/a"));
    EXPECT_FALSE(Paths::isWithin("/", "/a"));
}

TEST(WithoutPrivate, CutsExactlyThePrefix) {
    EXPECT_EQ(Paths::withoutPrivate("/private/var/folders/x"), "/var/folders/x");
    EXPECT_EQ(Paths::withoutPrivate("/private/var/folders/"), "/var/folders/");
    EXPECT_EQ(Paths::withoutPrivate("/private/var/folders"), "/private/var/folders");
    EXPECT_EQ(Paths::withoutPrivate("/var/folders/x"), "/var/folders/x");
}

}  // namespace
}  // namespace ulvak
