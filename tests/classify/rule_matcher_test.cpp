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

/// The pattern of the book's rule for a path; empty for none.
std::string ruleOf(std::string_view path, const UserFolders& folders = ayse, bool isDirectory = true,
                   ScanContext context = ScanContext::normal) {
    const Rule* rule = RuleMatcher(RuleBook::reference(), folders).match(path, isDirectory, context);
    if (rule == nullptr)
        return {};
    const auto* byPath = std::get_if<Rule::Path>(&rule->match);
    return byPath != nullptr ? byPath->pattern : std::get<Rule::Name>(rule->match).pattern;
}

std::string ruleOfFile(std::string_view path) {
    return ruleOf(path, ayse, false);
}

std::string ruleAmongPersonal(std::string_view path) {
    return ruleOf(path, ayse, true, ScanContext::personal);
}

const std::string home = ayse.home;
const std::string temp = ayse.temp;
const std::string cache = ayse.cache;

TEST(RuleMatcher, ATraceDirectlyInTheTemporaryFolderIsNoMereTemporaryFile) {
    EXPECT_EQ(ruleOfFile(temp + "/instruments5.ktrace"), "$T/instruments*.ktrace");
    EXPECT_EQ(ruleOf(temp + "/instruments5.ktrace"), "$T/instruments*.ktrace") << "a folder too";
    EXPECT_EQ(ruleOfFile(temp + "/xrgpu_1"), "$T/xrgpu_*");
    for (const std::string name :
         {"instruments5.ktrace2", "xinstruments5.ktrace", "instruments", "xrgpu", "a", ".a", "logs"})
        EXPECT_EQ(ruleOfFile(temp + "/" + name), "$T/*") << name;
    EXPECT_EQ(ruleOfFile(temp + "/a/instruments5.ktrace"), "");
}

TEST(RuleMatcher, TheModuleCacheIsNoProjectsBuildData) {
    const std::string derivedData = home + "/Library/Developer/Xcode/DerivedData";
    EXPECT_EQ(ruleOf(derivedData + "/ModuleCache.noindex"),
              "~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex");
    EXPECT_EQ(ruleOf(derivedData + "/Uygulama-abc"), "~/Library/Developer/Xcode/DerivedData/*");
    EXPECT_EQ(ruleOf(derivedData), "~/Library/Developer/Xcode/DerivedData")
        << "and not the folder of that name anywhere";
}

TEST(RuleMatcher, LetterCaseDoesNotMatterInPaths) {
    EXPECT_EQ(ruleOf(home + "/Library/caches/x"), "~/Library/Caches/*");
    EXPECT_EQ(ruleOf(home + "/LIBRARY/CACHES/x"), "~/Library/Caches/*");
    EXPECT_EQ(ruleOf("/HOME/Ayse/Library/Caches/x"), "~/Library/Caches/*")
        << "of the home folder's path neither";
    EXPECT_EQ(ruleOf("/VAR/folders/AB/cd/t/INSTRUMENTS.KTRACE"), "$T/instruments*.ktrace");
}

TEST(RuleMatcher, AStarInAPathStopsAtASlash) {
    EXPECT_EQ(ruleOf(home + "/Library/Caches/x/y"), "");
    EXPECT_EQ(ruleOf(home + "/.cache/a/b"), "");
    EXPECT_EQ(ruleOf(temp + "/a/b"), "");
    EXPECT_EQ(ruleOf(home + "/Belgeler/a"), "");
}

TEST(RuleMatcher, NodeModulesNeedAPackageFileBeside) {
    const TempTree tree({folder("with", {folder("node_modules"), file("package.json")}),
                         folder("without", {folder("node_modules")})});
    EXPECT_EQ(ruleOf(tree.path("with/node_modules")), "node_modules");
    EXPECT_EQ(ruleOf(tree.path("without/node_modules")), "");
}

TEST(RuleMatcher, BuildBesideAProjectIsItsOutput) {
    const TempTree tree({folder("a", {folder("Uygulama.xcodeproj"), folder("build")}),
                         folder("b", {folder("build")}),
                         folder("c", {folder("Uygulama.XCODEPROJ"), folder("build")}),
                         folder("d", {file("Makefile"), folder("build")})});
    EXPECT_EQ(ruleOf(tree.path("a/build")), "build");
    EXPECT_EQ(ruleOf(tree.path("b/build")), "");
    EXPECT_EQ(ruleOf(tree.path("c/build")), "") << "siblings are found by their exact letters";
    EXPECT_EQ(ruleOf(tree.path("d/build")), "build");
}

TEST(RuleMatcher, ACacheAmongPersonalFilesStaysButNodeModulesDoNot) {
    const TempTree tree({folder("node_modules"), file("package.json")});
    EXPECT_EQ(ruleOf(home + "/Belgeler/a/Cache"), "Cache");
    EXPECT_EQ(ruleAmongPersonal(home + "/Belgeler/a/Cache"), "");
    EXPECT_EQ(ruleAmongPersonal(tree.path("node_modules")), "node_modules");
    EXPECT_EQ(ruleOf(home + "/x/Cache", ayse, true, ScanContext::system), "Cache");
}

TEST(RuleMatcher, PathRulesApplyAmongPersonalFilesToo) {
    EXPECT_EQ(ruleAmongPersonal(home + "/Library/Caches/x"), "~/Library/Caches/*");
    EXPECT_EQ(ruleAmongPersonal(home + "/Pictures/a.photoslibrary"), "~/Pictures/*.photoslibrary");
}

TEST(RuleMatcher, AFileNeverMatchesByItsName) {
    const TempTree tree({file("node_modules"), file("package.json")});
    EXPECT_EQ(ruleOf(tree.path("node_modules"), ayse, false), "");
    EXPECT_EQ(ruleOfFile("/x/DerivedData"), "");
    EXPECT_EQ(ruleOf("/x/DerivedData"), "DerivedData");
}

TEST(RuleMatcher, PrivateIsDroppedBeforeTheTemporaryAndTheCacheFolder) {
    EXPECT_EQ(ruleOf("/private" + temp), "$T");
    EXPECT_EQ(ruleOf("/private" + temp + "/x"), "$T/*");
    EXPECT_EQ(ruleOf("/private" + cache + "/x"), "$C/*");
    EXPECT_EQ(ruleOf("/private" + home), "");
    EXPECT_EQ(ruleOf("/private/var/vm"), "/private/var/vm");
    EXPECT_EQ(ruleOf("/Private" + temp + "/x"), "");
}

TEST(RuleMatcher, SpecificRowsWinOverGeneralOnes) {
    const std::string support = home + "/Library/Application Support";
    EXPECT_EQ(ruleOf(cache + "/com.apple.dt.InstrumentsCLI"), "$C/com.apple.dt.InstrumentsCLI");
    EXPECT_EQ(ruleOf(cache + "/com.apple.dt.Instruments"), "$C/*");
    EXPECT_EQ(ruleOf(support + "/Google/Chrome/OptGuideOnDeviceModel"),
              "~/Library/Application Support/Google/Chrome/OptGuideOnDeviceModel");
    EXPECT_EQ(ruleOf(support + "/Google/Chrome/Default"), "~/Library/Application Support/Google/Chrome/*");
    EXPECT_EQ(ruleOf(home + "/Library"), "~/Library") << "the library is not personal";
    EXPECT_EQ(ruleOf(home + "/Pictures/a.photoslibrary"), "~/Pictures/*.photoslibrary");
    EXPECT_EQ(ruleOf(home + "/Pictures"), "~/[!.]*");
    EXPECT_EQ(ruleOf(home + "/.cache"), "~/.cache");
    EXPECT_EQ(ruleOf(home + "/.gradle"), "~/.gradle") << "the user's, not a project's";
    EXPECT_EQ(ruleOf(home + "/.expo"), "~/.expo");
    EXPECT_EQ(ruleOf(home + "/Library/Caches"), "~/Library/Caches");
    EXPECT_EQ(ruleOf("/Applications/Xcode.app"), "/Applications/*.app");
    EXPECT_EQ(ruleOf("/Library/Developer/CommandLineTools"), "/Library/Developer/CommandLineTools");
}

TEST(RuleMatcher, HiddenEntriesOfTheHomeFolderAreNotPersonal) {
    EXPECT_EQ(ruleOf(home + "/Masaüstü"), "~/[!.]*");
    EXPECT_EQ(ruleOfFile(home + "/film.mkv"), "~/[!.]*");
    EXPECT_EQ(ruleOf(home + "/.ayarlar"), "");
    EXPECT_EQ(ruleOf(home + "/\xff"), "~/[!.]*");
}

TEST(RuleMatcher, WhatBeginsLikeAUsersFolderIsNotInIt) {
    EXPECT_EQ(ruleOf(home + "gul/Library/Caches/x"), "");
    EXPECT_EQ(ruleOf(temp + "x/instruments1.ktrace"), "");
    EXPECT_EQ(ruleOf("/var/folders/ab/cd"), "");
    EXPECT_EQ(ruleOf("/"), "");
}

TEST(RuleMatcher, ANameIsMatchedWhateverItsCase) {
    EXPECT_EQ(ruleOf("/x/deriveddata"), "DerivedData");
    EXPECT_EQ(ruleOf("/x/LOGS"), "logs");
    EXPECT_EQ(ruleOf("/x/Kayıt.TRACE"), "*.trace");
    EXPECT_EQ(ruleOf("/x/.trace"), "*.trace");
    EXPECT_EQ(ruleOf("/x/Code cache"), "Code Cache");
}

TEST(RuleMatcher, TurkishLettersFoldNothingElse) {
    const test::TurkishLocale locale;
    if (const auto reason = locale.whyNot())
        GTEST_SKIP() << *reason;
    EXPECT_EQ(ruleOf(home + "/LIBRARY/CACHES/x"), "~/Library/Caches/*");
    EXPECT_EQ(ruleOf(temp + "/INSTRUMENTS1.KTRACE"), "$T/instruments*.ktrace");
    EXPECT_EQ(ruleOf("/x/SERVICE WORKER"), "Service Worker");
    EXPECT_EQ(ruleOf("/x/servıce worker"), "");
}

/// A name rule, for features the rule book does not use.
Rule nameRule(std::string pattern, std::vector<std::string> siblings, std::vector<std::string> outside = {}) {
    return {.match = Rule::Name{.pattern = std::move(pattern),
                                .siblings = std::move(siblings),
                                .holds = {},
                                .outside = std::move(outside)},
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
    EXPECT_EQ(ruleOf(tree.path("\xff\n*[x]/node_modules")), "node_modules");
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

// User folders nested in each other.

TEST(UserAreas, AHomeFolderBelowTheTemporaryOneIsNoTemporaryFile) {
    const UserFolders folders{.home = "/tmp/home", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(ruleOf("/tmp", folders), "$T");
    EXPECT_EQ(ruleOf("/tmp/home", folders), "~");
    EXPECT_EQ(ruleOf("/tmp/home/Belgeler", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/tmp/home/.cache/x", folders), "~/.cache/*");
    EXPECT_EQ(ruleOf("/tmp/home2", folders), "$T/*");
    EXPECT_EQ(ruleOf("/tmp/other", folders), "$T/*");
}

TEST(UserAreas, ATemporaryFolderBelowTheHomeFolderIsNotPersonal) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse/tmp", .cache = "/home/ayse/C"};
    EXPECT_EQ(ruleOf("/home/ayse/tmp", folders), "$T");
    EXPECT_EQ(ruleOf("/home/ayse/tmp/x", folders), "$T/*");
    EXPECT_EQ(ruleOf("/home/ayse/tmp2", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/home/ayse", folders), "~");
}

TEST(UserAreas, ACacheFolderInsideTheHomeFolderIsNotBelieved) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse/tmp", .cache = "/home/ayse/C"};
    EXPECT_EQ(ruleOf("/home/ayse/C", folders), "~/[!.]*") << "somebody's work in C";
    EXPECT_EQ(ruleOf("/home/ayse/C/project", folders), "");
    const UserFolders inCache{.home = "/home/ayse", .temp = "/x", .cache = "/home/ayse"};
    EXPECT_EQ(ruleOf("/home/ayse", inCache), "~");
    EXPECT_EQ(ruleOf("/home/ayse/a", inCache), "~/[!.]*");
}

TEST(UserAreas, OneFolderForHomeAndTemporaryFilesIsTheHomeFolder) {
    const UserFolders folders{.home = "/home/ayse", .temp = "/home/ayse", .cache = "/home/C"};
    EXPECT_EQ(ruleOf("/home/ayse", folders), "~");
    EXPECT_EQ(ruleOf("/home/ayse/Belgeler", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/home/ayse/xrgpu_1", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/home/C/x", folders), "") << "that is no cache beside a home folder";
}

TEST(UserAreas, AHomeFolderNamedLikeAPatternIsNone) {
    const UserFolders folders{.home = "/home/[x]*", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(ruleOf("/home/[x]*", folders), "~");
    EXPECT_EQ(ruleOf("/home/[x]*/Library/Caches/a", folders), "~/Library/Caches/*");
    EXPECT_EQ(ruleOf("/home/x/Library/Caches/a", folders), "");
    EXPECT_EQ(ruleOf("/home/xyz", folders), "");
    EXPECT_EQ(ruleOf("/home/[x]/Library/Caches/a", folders), "");
}

TEST(UserAreas, AHomeFolderMayBeTheRoot) {
    const UserFolders folders{.home = "/", .temp = "/tmp", .cache = "/C"};
    EXPECT_EQ(ruleOf("/", folders), "~");
    EXPECT_EQ(ruleOf("/Library/Caches/x", folders), "~/Library/Caches/*");
    EXPECT_EQ(ruleOf("/.npm", folders), "~/.npm");
    EXPECT_EQ(ruleOf("/usr", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/.x", folders), "");
    EXPECT_EQ(ruleOf("/tmp/x", folders), "$T/*");
    EXPECT_EQ(ruleOf("/tmp", folders), "$T");
}

TEST(UserAreas, FoldersInEachOtherAreToldApartWhateverTheLetterCase) {
    const UserFolders folders{.home = "/tmp/Home", .temp = "/TMP", .cache = "/C"};
    EXPECT_EQ(ruleOf("/tmp/home/Belgeler", folders), "~/[!.]*");
    EXPECT_EQ(ruleOf("/tmp/other", folders), "$T/*");
}

}  // namespace
}  // namespace ulvak
