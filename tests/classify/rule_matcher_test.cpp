#include "classify/rule_matcher.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "classify/rule_book.h"
#include "node.h"
#include "support/isolation.h"
#include "support/temp_tree.h"
#include "support/turkish_locale.h"

namespace ulvak {
namespace {

using test::ayse;
using test::file;
using test::folder;
using test::link;
using test::TempTree;

/// The position in the rule book, counted from 1, of the rule for a path; 0 for none.
std::size_t rowOf(std::string_view path, const UserFolders& folders = ayse, bool isDirectory = true,
                  ScanContext context = ScanContext::normal) {
    const auto& rules = RuleBook::all();
    const Rule* rule = RuleMatcher(rules, folders).match(path, isDirectory, context);
    return rule == nullptr ? 0 : static_cast<std::size_t>(rule - rules.data()) + 1;
}

std::size_t rowOfFile(std::string_view path) {
    return rowOf(path, ayse, false);
}

std::size_t rowAmongPersonal(std::string_view path) {
    return rowOf(path, ayse, true, ScanContext::personal);
}

const std::string home = ayse.home;
const std::string temp = ayse.temp;
const std::string cache = ayse.cache;

TEST(RuleMatcher, ATraceDirectlyInTheTemporaryFolderIsNoMereTemporaryFile) {
    EXPECT_EQ(rowOfFile(temp + "/instruments5.ktrace"), 2U);
    EXPECT_EQ(rowOf(temp + "/instruments5.ktrace"), 2U) << "a folder too";
    EXPECT_EQ(rowOfFile(temp + "/xrgpu_1"), 3U);
    for (const std::string name :
         {"instruments5.ktrace2", "xinstruments5.ktrace", "instruments", "xrgpu", "a", ".a", "logs"})
        EXPECT_EQ(rowOfFile(temp + "/" + name), 4U) << name;
    EXPECT_EQ(rowOfFile(temp + "/a/instruments5.ktrace"), 0U);
}

TEST(RuleMatcher, TheModuleCacheIsNoProjectsBuildData) {
    const std::string derivedData = home + "/Library/Developer/Xcode/DerivedData";
    EXPECT_EQ(rowOf(derivedData + "/ModuleCache.noindex"), 14U);
    EXPECT_EQ(rowOf(derivedData + "/Uygulama-abc"), 15U);
    EXPECT_EQ(rowOf(derivedData), 13U) << "and not the folder of that name anywhere";
}

TEST(RuleMatcher, LetterCaseDoesNotMatterInPaths) {
    EXPECT_EQ(rowOf(home + "/Library/caches/x"), 57U);
    EXPECT_EQ(rowOf(home + "/LIBRARY/CACHES/x"), 57U);
    EXPECT_EQ(rowOf("/HOME/Ayse/Library/Caches/x"), 57U) << "of the home folder's path neither";
    EXPECT_EQ(rowOf("/VAR/folders/AB/cd/t/INSTRUMENTS.KTRACE"), 2U);
}

TEST(RuleMatcher, AStarInAPathStopsAtASlash) {
    EXPECT_EQ(rowOf(home + "/Library/Caches/x/y"), 0U);
    EXPECT_EQ(rowOf(home + "/.cache/a/b"), 0U);
    EXPECT_EQ(rowOf(temp + "/a/b"), 0U);
    EXPECT_EQ(rowOf(home + "/Belgeler/a"), 0U);
}

TEST(RuleMatcher, NodeModulesNeedAPackageFileBeside) {
    const TempTree tree({folder("with", {folder("node_modules"), file("package.json")}),
                         folder("without", {folder("node_modules")})});
    EXPECT_EQ(rowOf(tree.path("with/node_modules")), 84U);
    EXPECT_EQ(rowOf(tree.path("without/node_modules")), 0U);
}

TEST(RuleMatcher, BuildBesideAProjectIsItsOutput) {
    const TempTree tree({folder("a", {folder("Uygulama.xcodeproj"), folder("build")}),
                         folder("b", {folder("build")}),
                         folder("c", {folder("Uygulama.XCODEPROJ"), folder("build")}),
                         folder("d", {file("Makefile"), folder("build")})});
    EXPECT_EQ(rowOf(tree.path("a/build")), 87U);
    EXPECT_EQ(rowOf(tree.path("b/build")), 0U);
    EXPECT_EQ(rowOf(tree.path("c/build")), 0U) << "siblings are found by their exact letters";
    EXPECT_EQ(rowOf(tree.path("d/build")), 87U);
}

TEST(RuleMatcher, ACacheAmongPersonalFilesStaysButNodeModulesDoNot) {
    const TempTree tree({folder("node_modules"), file("package.json")});
    EXPECT_EQ(rowOf(home + "/Belgeler/a/Cache"), 100U);
    EXPECT_EQ(rowAmongPersonal(home + "/Belgeler/a/Cache"), 0U);
    EXPECT_EQ(rowAmongPersonal(tree.path("node_modules")), 84U);
    EXPECT_EQ(rowOf(home + "/x/Cache", ayse, true, ScanContext::system), 100U);
}

TEST(RuleMatcher, PathRulesApplyAmongPersonalFilesToo) {
    EXPECT_EQ(rowAmongPersonal(home + "/Library/Caches/x"), 57U);
    EXPECT_EQ(rowAmongPersonal(home + "/Pictures/a.photoslibrary"), 75U);
}

TEST(RuleMatcher, AFileNeverMatchesByItsName) {
    const TempTree tree({file("node_modules"), file("package.json")});
    EXPECT_EQ(rowOf(tree.path("node_modules"), ayse, false), 0U);
    EXPECT_EQ(rowOfFile("/x/DerivedData"), 0U);
    EXPECT_EQ(rowOf("/x/DerivedData"), 99U);
}

TEST(RuleMatcher, PrivateIsDroppedBeforeTheTemporaryAndTheCacheFolder) {
    EXPECT_EQ(rowOf("/private" + temp), 1U);
    EXPECT_EQ(rowOf("/private" + temp + "/x"), 4U);
    EXPECT_EQ(rowOf("/private" + cache + "/x"), 7U);
    EXPECT_EQ(rowOf("/private" + home), 0U);
    EXPECT_EQ(rowOf("/private/var/vm"), 81U);
    EXPECT_EQ(rowOf("/Private" + temp + "/x"), 0U);
}

TEST(RuleMatcher, SpecificRowsWinOverGeneralOnes) {
    const std::string support = home + "/Library/Application Support";
    EXPECT_EQ(rowOf(cache + "/com.apple.dt.InstrumentsCLI"), 6U);
    EXPECT_EQ(rowOf(cache + "/com.apple.dt.Instruments"), 7U);
    EXPECT_EQ(rowOf(support + "/Google/Chrome/OptGuideOnDeviceModel"), 65U);
    EXPECT_EQ(rowOf(support + "/Google/Chrome/Default"), 66U);
    EXPECT_EQ(rowOf(home + "/Library"), 10U) << "the library is not personal";
    EXPECT_EQ(rowOf(home + "/Pictures/a.photoslibrary"), 75U);
    EXPECT_EQ(rowOf(home + "/Pictures"), 76U);
    EXPECT_EQ(rowOf(home + "/.cache"), 38U);
    EXPECT_EQ(rowOf(home + "/.gradle"), 35U) << "the user's, not a project's";
    EXPECT_EQ(rowOf(home + "/.expo"), 49U);
    EXPECT_EQ(rowOf(home + "/Library/Caches"), 56U);
    EXPECT_EQ(rowOf("/Applications/Xcode.app"), 78U);
    EXPECT_EQ(rowOf("/Library/Developer/CommandLineTools"), 80U);
}

TEST(RuleMatcher, HiddenEntriesOfTheHomeFolderAreNotPersonal) {
    EXPECT_EQ(rowOf(home + "/Masaüstü"), 76U);
    EXPECT_EQ(rowOfFile(home + "/film.mkv"), 76U);
    EXPECT_EQ(rowOf(home + "/.ayarlar"), 0U);
    EXPECT_EQ(rowOf(home + "/\xff"), 76U);
}

TEST(RuleMatcher, WhatBeginsLikeAUsersFolderIsNotInIt) {
    EXPECT_EQ(rowOf(home + "gul/Library/Caches/x"), 0U);
    EXPECT_EQ(rowOf(temp + "x/instruments1.ktrace"), 0U);
    EXPECT_EQ(rowOf("/var/folders/ab/cd"), 0U);
    EXPECT_EQ(rowOf("/"), 0U);
}

TEST(RuleMatcher, ANameIsMatchedWhateverItsCase) {
    EXPECT_EQ(rowOf("/x/deriveddata"), 99U);
    EXPECT_EQ(rowOf("/x/LOGS"), 108U);
    EXPECT_EQ(rowOf("/x/Kayıt.TRACE"), 98U);
    EXPECT_EQ(rowOf("/x/.trace"), 98U);
    EXPECT_EQ(rowOf("/x/Code cache"), 103U);
}

TEST(RuleMatcher, TurkishLettersFoldNothingElse) {
    const test::TurkishLocale locale;
    if (const auto reason = locale.whyNot())
        GTEST_SKIP() << *reason;
    EXPECT_EQ(rowOf(home + "/LIBRARY/CACHES/x"), 57U);
    EXPECT_EQ(rowOf(temp + "/INSTRUMENTS1.KTRACE"), 2U);
    EXPECT_EQ(rowOf("/x/SERVICE WORKER"), 107U);
    EXPECT_EQ(rowOf("/x/servıce worker"), 0U);
}

/// A rule of one kind for what the rule book does not use.
Rule nameRule(std::string pattern, std::vector<std::string> siblings, std::vector<std::string> outside = {}) {
    return {.match = Rule::Name{std::move(pattern), std::move(siblings), std::move(outside)},
            .kind = Rule::Unit{}};
}

bool matches(const Rule& rule, std::string_view path, const UserFolders& folders = ayse) {
    return RuleMatcher(std::span(&rule, 1), folders).match(path, true, ScanContext::normal) == &rule;
}

TEST(RuleMatcher, ARuleDoesNotApplyInPathsThatBeginAsItsOutsideSays) {
    const Rule rule = nameRule("Cache", {}, {"~/Belgeler", "$T", "$C/a", "/opt/", "as-it-is"});
    EXPECT_TRUE(matches(rule, home + "/Resimler/Cache"));
    EXPECT_FALSE(matches(rule, home + "/Belgeler/Cache"));
    EXPECT_FALSE(matches(rule, home + "/Belgeler2/Cache"))
        << "a beginning of the text, not of its components";
    EXPECT_TRUE(matches(rule, home + "/belgeler/Cache")) << "letter case matters here";
    EXPECT_FALSE(matches(rule, temp + "/x/Cache"));
    EXPECT_FALSE(matches(rule, "/private" + temp + "/x/Cache"));
    EXPECT_FALSE(matches(rule, cache + "/a/Cache"));
    EXPECT_TRUE(matches(rule, cache + "/b/Cache"));
    EXPECT_FALSE(matches(rule, "/opt/Cache"));
    EXPECT_TRUE(matches(rule, "/option/Cache"));
    EXPECT_FALSE(matches(nameRule("Cache", {}, {"~"}), home + "/x/Cache"));
    EXPECT_TRUE(matches(nameRule("Cache", {}, {"~"}), "/x/Cache"));
    EXPECT_FALSE(matches(nameRule("Cache", {}, {"/"}), "/x/Cache"));
}

TEST(RuleMatcher, OneSiblingOfSeveralIsEnough) {
    const TempTree tree({folder("x"), file("third")});
    EXPECT_TRUE(matches(nameRule("x", {"first", "second", "third"}), tree.path("x")));
    EXPECT_FALSE(matches(nameRule("x", {"first", "second"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"first", "th*"}), tree.path("x")));
    EXPECT_FALSE(matches(nameRule("x", {"TH*"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"*"}), tree.path("x"))) << "the folder itself is among the names";
}

TEST(RuleMatcher, OnlyAStarMakesASiblingAPattern) {
    const TempTree tree({folder("x"), file("file1"), file("a[b]")});
    EXPECT_FALSE(matches(nameRule("x", {"file?"}), tree.path("x")));
    EXPECT_FALSE(matches(nameRule("x", {"file[1]"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"a[b]"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"f*?"}), tree.path("x")));
}

TEST(RuleMatcher, ASiblingMayBeAFolderOrALinkThatLeadsSomewhere) {
    const TempTree tree({folder("x"), folder("sub"), link("good", "sub"), link("dangling", "absent")});
    EXPECT_TRUE(matches(nameRule("x", {"sub"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"good"}), tree.path("x")));
    EXPECT_FALSE(matches(nameRule("x", {"dangling"}), tree.path("x")));
    EXPECT_TRUE(matches(nameRule("x", {"dang*"}), tree.path("x"))) << "a listed name is enough for a pattern";
    EXPECT_FALSE(matches(nameRule("x", {"sub"}), tree.path("sub/x"))) << "beside it, not above";
}

TEST(RuleMatcher, SiblingsInTheRootFolderAreFound) {
    EXPECT_TRUE(matches(nameRule("usr", {"tmp"}), "/usr"));
    EXPECT_TRUE(matches(nameRule("usr", {"tm*"}), "/usr"));
    EXPECT_FALSE(matches(nameRule("usr", {"no such entry"}), "/usr"));
}

TEST(RuleMatcher, AParentThatCannotBeLookedAtHasNoSiblings) {
    const TempTree tree({folder("locked", {folder("x"), file("sibling")}).withMode(0)});
    EXPECT_FALSE(matches(nameRule("x", {"sibling", "s*"}), "/no such folder/x"));
    EXPECT_FALSE(matches(nameRule("x", {"sibling", "s*"}), "/" + std::string(10'000, 'a') + "/x"));
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged(
        [&] { EXPECT_FALSE(matches(nameRule("x", {"sibling", "s*"}), tree.path("locked/x"))); });
}

TEST(RuleMatcher, SiblingsBesideNamesOfAnyBytesAreFound) {
    const TempTree tree({folder("\xff\n*[x]", {folder("node_modules"), file("package.json")})});
    EXPECT_EQ(rowOf(tree.path("\xff\n*[x]/node_modules")), 84U);
}

TEST(RuleMatcher, TheFirstRuleThatMatchesCounts) {
    const std::vector<Rule> rules = {nameRule("b*", {}), nameRule("ab", {}), nameRule("a*", {}),
                                     nameRule("*", {})};
    const RuleMatcher matcher(rules, ayse);
    EXPECT_EQ(matcher.match("/ab", true, ScanContext::normal), &rules[1]);
    EXPECT_EQ(matcher.match("/ac", true, ScanContext::normal), &rules[2]);
    EXPECT_EQ(matcher.match("/c", true, ScanContext::normal), &rules[3]);
    EXPECT_EQ(RuleMatcher({}, ayse).match("/c", true, ScanContext::normal), nullptr);
}

TEST(RuleMatcher, ATokenIsOneOnlyAtTheBeginningAndBeforeASlash) {
    const auto pathRule = [](std::string pattern) {
        return Rule{.match = Rule::Path{std::move(pattern)}, .kind = Rule::Unit{}};
    };
    EXPECT_TRUE(matches(pathRule("~/a"), home + "/a"));
    EXPECT_TRUE(matches(pathRule("~a"), "~a"));
    EXPECT_FALSE(matches(pathRule("~a"), home + "a"));
    EXPECT_TRUE(matches(pathRule("/~/a"), "/~/a"));
    EXPECT_FALSE(matches(pathRule("$Tx"), temp + "x"));
    EXPECT_FALSE(matches(pathRule("$T/x"), home + "/x"));
    EXPECT_TRUE(matches(pathRule("/a[/b"), "/a[/b"));
}

// Where the user's folders lie in each other.

TEST(UserAreas, AHomeFolderBelowTheTemporaryOneIsNoTemporaryFile) {
    const UserFolders folders{.home = "/tmp/home", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(rowOf("/tmp", folders), 1U);
    EXPECT_EQ(rowOf("/tmp/home", folders), 8U);
    EXPECT_EQ(rowOf("/tmp/home/Belgeler", folders), 76U);
    EXPECT_EQ(rowOf("/tmp/home/.cache/x", folders), 39U);
    EXPECT_EQ(rowOf("/tmp/home2", folders), 4U);
    EXPECT_EQ(rowOf("/tmp/other", folders), 4U);
}

TEST(UserAreas, ATemporaryFolderBelowTheHomeFolderIsNotPersonal) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse/tmp", .cache = "/home/ayse/C"};
    EXPECT_EQ(rowOf("/home/ayse/tmp", folders), 1U);
    EXPECT_EQ(rowOf("/home/ayse/tmp/x", folders), 4U);
    EXPECT_EQ(rowOf("/home/ayse/tmp2", folders), 76U);
    EXPECT_EQ(rowOf("/home/ayse", folders), 8U);
}

TEST(UserAreas, ACacheFolderInsideTheHomeFolderIsNotBelieved) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse/tmp", .cache = "/home/ayse/C"};
    EXPECT_EQ(rowOf("/home/ayse/C", folders), 76U) << "somebody's work in C";
    EXPECT_EQ(rowOf("/home/ayse/C/project", folders), 0U);
    const UserFolders inCache{.home = "/home/ayse", .temp = "/x", .cache = "/home/ayse"};
    EXPECT_EQ(rowOf("/home/ayse", inCache), 8U);
    EXPECT_EQ(rowOf("/home/ayse/a", inCache), 76U);
}

TEST(UserAreas, OneFolderForHomeAndTemporaryFilesIsTheHomeFolder) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse", .cache = "/home/C"};
    EXPECT_EQ(rowOf("/home/ayse", folders), 8U);
    EXPECT_EQ(rowOf("/home/ayse/Belgeler", folders), 76U);
    EXPECT_EQ(rowOf("/home/ayse/xrgpu_1", folders), 76U);
    EXPECT_EQ(rowOf("/home/C/x", folders), 0U) << "that is no cache beside a home folder";
}

TEST(UserAreas, AHomeFolderNamedLikeAPatternIsNone) {
    const UserFolders folders{.home = "/home/[x]*", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(rowOf("/home/[x]*", folders), 8U);
    EXPECT_EQ(rowOf("/home/[x]*/Library/Caches/a", folders), 57U);
    EXPECT_EQ(rowOf("/home/x/Library/Caches/a", folders), 0U);
    EXPECT_EQ(rowOf("/home/xyz", folders), 0U);
    EXPECT_EQ(rowOf("/home/[x]/Library/Caches/a", folders), 0U);
}

TEST(UserAreas, AHomeFolderMayBeTheRoot) {
    const UserFolders folders{.home = "/", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(rowOf("/", folders), 8U);
    EXPECT_EQ(rowOf("/Library/Caches/x", folders), 57U);
    EXPECT_EQ(rowOf("/.npm", folders), 32U);
    EXPECT_EQ(rowOf("/usr", folders), 76U);
    EXPECT_EQ(rowOf("/.x", folders), 0U);
    EXPECT_EQ(rowOf("/tmp/x", folders), 4U);
    EXPECT_EQ(rowOf("/tmp", folders), 1U);
}

TEST(UserAreas, FoldersInEachOtherAreToldApartWhateverTheLetterCase) {
    const UserFolders folders{.home = "/tmp/Home", .temp = "/TMP", .cache = "/C"};
    EXPECT_EQ(rowOf("/tmp/home/Belgeler", folders), 76U);
    EXPECT_EQ(rowOf("/tmp/other", folders), 4U);
}

}  // namespace
}  // namespace ulvak
