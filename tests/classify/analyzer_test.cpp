#include "classify/analyzer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/words.h"
#include "node.h"
#include "support/temp_tree.h"

// Which nodes become findings, and in what order.

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string home = ayse.home;
const std::string temp = ayse.temp;

Node homeWith(std::vector<Node> children) {
    return dir(home, std::move(children));
}

TEST(Analyzer, NoRootsGiveNoFindings) {
    EXPECT_THAT(findings(std::vector<Node>{}), IsEmpty());
}

TEST(Analyzer, AUnitBelowItsMinimumYieldsNothingAndIsNotLookedInto) {
    // Its contents would be reported if they were inspected.
    const auto npm = [](std::int64_t size) {
        return homeWith({dir(".npm", size, {dir("DerivedData", size)})});
    };
    EXPECT_THAT(findings(npm(unitMinimum - 1)), IsEmpty());
    const auto found = findings(npm(unitMinimum));
    ASSERT_THAT(ids(found), ElementsAre(home + "/.npm"));
    EXPECT_EQ(found[0].title, "npm önbelleği");
    EXPECT_EQ(found[0].size, unitMinimum);
}

TEST(Analyzer, AUnitIsReportedAsAWholeWhateverLiesInIt) {
    const auto found = findings(homeWith({dir(".npm", 10 * gigabyte, {dir("DerivedData", 9 * gigabyte)})}));
    EXPECT_THAT(ids(found), ElementsAre(home + "/.npm"));
}

TEST(Analyzer, AnUnknownFolderBelowItsMinimumYieldsNothing) {
    EXPECT_THAT(findings(homeWith({dir(".ayarlar", defaultMinimum - 1)})), IsEmpty());
    const auto found = findings(homeWith({dir(".ayarlar", defaultMinimum)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/.ayarlar"));
    EXPECT_EQ(found[0].level, SafetyLevel::unknown);
    EXPECT_EQ(found[0].explanation, "Bu klasörün ne olduğunu kurallarım bilmiyor. " +
                                        std::string(words().withModelFirst) +
                                        " analiz edebilir ya da kendin etiketleyebilirsin.");
}

TEST(Analyzer, AnUnknownFileIsReportedToo) {
    const auto found = findings(homeWith({fileNode(".disk.img", defaultMinimum)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/.disk.img"));
    EXPECT_EQ(found[0].level, SafetyLevel::unknown);
    EXPECT_THAT(findings(homeWith({fileNode(".disk.img", defaultMinimum - 1)})), IsEmpty());
}

TEST(Analyzer, UsesTheMinimaItIsGiven) {
    Analyzer analyzer = usualAnalyzer();
    analyzer.unitMinimum = 5;
    analyzer.defaultMinimum = 7;
    const std::vector<Node> children = {dir(".npm", 5), dir(".m2", 4), dir(".seven", 7), dir(".six", 6)};
    std::vector<DirNode> roots;
    roots.push_back(tree(homeWith(children)));
    EXPECT_THAT(ids(analyzer.run(roots, ayse)), ElementsAre(home + "/.seven", home + "/.npm"));
}

TEST(Analyzer, ContainersLeadDownToUnits) {
    const auto found = findings(homeWith(
        {dir("Library",
             {dir("Developer", {dir("Xcode", {dir("DerivedData", {dir("Uygulama-abc", gigabyte)})})})})}));
    EXPECT_THAT(ids(found), ElementsAre(home + "/Library/Developer/Xcode/DerivedData/Uygulama-abc"));
}

TEST(Analyzer, AContainerIsNeverReportedItself) {
    EXPECT_THAT(findings(homeWith({dir("Library", 50 * gigabyte), dir("Belgeler", 50 * gigabyte)})),
                IsEmpty());
}

TEST(Analyzer, ResultsAreOrderedBySizeLargestFirst) {
    const auto found = findings(
        {homeWith({dir(".m2", gigabyte), dir(".npm", 3 * gigabyte)}), dir(temp, {dir("x", 2 * gigabyte)})});
    EXPECT_THAT(ids(found), ElementsAre(home + "/.npm", temp + "/x", home + "/.m2"));
}

TEST(Analyzer, EqualSizesKeepTheOrderInWhichTheyWereFound) {
    const Node folders = homeWith({dir(".npm", gigabyte), dir(".m2", gigabyte), dir(".rustup", gigabyte)});
    const Node others = dir(temp, {dir("b", gigabyte), dir("a", gigabyte)});
    EXPECT_THAT(ids(findings({folders, others})),
                ElementsAre(home + "/.npm", home + "/.m2", home + "/.rustup", temp + "/b", temp + "/a"));
    EXPECT_THAT(ids(findings({others, folders})),
                ElementsAre(temp + "/b", temp + "/a", home + "/.npm", home + "/.m2", home + "/.rustup"));
}

TEST(Analyzer, FindsDepthFirst) {
    const auto found =
        findings(homeWith({dir("Library", {dir("Caches", {dir("z", gigabyte)}), dir("Logs", gigabyte)}),
                           dir(".npm", gigabyte)}));
    EXPECT_THAT(ids(found), ElementsAre(home + "/Library/Caches/z", home + "/Library/Logs", home + "/.npm"));
}

TEST(Analyzer, GivesTheSameAnswerTwice) {
    const Node root = homeWith(
        {dir(".npm", gigabyte), dir(".models", 3 * gigabyte, {dir("a", gigabyte), dir("b", gigabyte)})});
    EXPECT_EQ(ids(findings(root)), ids(findings(root)));
}

// Areas.

TEST(Analyzer, PersonalFoldersAreKeptAndSaidToBePersonal) {
    const auto found =
        findings(homeWith({dir("Belgeler", {dir("Arşiv", gigabyte), fileNode("film.mkv", 2 * gigabyte)})}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Belgeler/film.mkv", home + "/Belgeler/Arşiv"));
    EXPECT_EQ(found[0].explanation, "Kişisel bir dosya. Artık gerekmiyorsa silebilirsin.");
    EXPECT_EQ(found[1].explanation, "Kişisel klasörlerinden biri. İçinde ne olduğunu en iyi sen bilirsin; " +
                                        std::string(words().inFileManager) +
                                        " açıp neyin gereksiz olduğuna karar ver.");
    for (const Finding& finding : found) {
        EXPECT_EQ(finding.level, SafetyLevel::keep);
        EXPECT_EQ(finding.source, VerdictSource::rule);
        EXPECT_TRUE(finding.isPersonal);
        EXPECT_EQ(finding.action, CleanAction{CleanAction::Trash{}});
        EXPECT_EQ(finding.title, Paths::lastComponent(finding.id));
    }
}

TEST(Analyzer, NamesAreNotGuessedAmongPersonalFiles) {
    const auto found = findings(homeWith(
        {dir("Belgeler", {dir("backups", 5 * gigabyte, {dir("a", gigabyte), dir("b", gigabyte)})})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].level, SafetyLevel::keep);
    EXPECT_EQ(found[0].title, "backups");
}

TEST(Analyzer, AFileThatAContainerRuleNamesIsReportedInItsArea) {
    const auto found = findings(homeWith({fileNode("film.mkv", defaultMinimum)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/film.mkv"));
    EXPECT_TRUE(found[0].isPersonal);
    EXPECT_EQ(found[0].title, "film.mkv");
    EXPECT_EQ(found[0].explanation, "Kişisel bir dosya. Artık gerekmiyorsa silebilirsin.");
    EXPECT_THAT(findings(homeWith({fileNode("film.mkv", defaultMinimum - 1)})), IsEmpty());
}

TEST(Analyzer, APackageThatAContainerRuleNamesIsReportedAndNotEntered) {
    const auto found = findings(homeWith({package("Resimler.rtfd", gigabyte, {dir("x.trace", gigabyte)})}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Resimler.rtfd"));
    EXPECT_TRUE(found[0].isPersonal);
    EXPECT_THAT(found[0].explanation, testing::StartsWith("Kişisel klasörlerinden biri."));
}

TEST(Analyzer, AFileThatANormalContainerRuleNamesIsJudgedByItsName) {
    const auto found = findings(homeWith({fileNode(".cache", gigabyte), fileNode(".android", gigabyte)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/.cache", home + "/.android"));
    EXPECT_EQ(found[0].source, VerdictSource::heuristic);
    EXPECT_EQ(found[0].title, ".cache (önbellek)");
    EXPECT_EQ(found[1].level, SafetyLevel::unknown);
    EXPECT_FALSE(found[1].isPersonal);
}

TEST(Analyzer, TheSystemsLibraryIsKeptAndNeverCleaned) {
    const auto found = findings(
        dir("/Library", {dir("Caches", gigabyte), dir("Fonts", 2 * gigabyte), dir("logs", gigabyte)}));
    ASSERT_EQ(titles(found), (std::vector<std::string>{"Fonts", "Library · önbellek", "Library · kayıtlar"}));
    EXPECT_EQ(found[0].level, SafetyLevel::keep);
    EXPECT_EQ(found[0].source, VerdictSource::rule);
    EXPECT_EQ(found[0].explanation, "Sistemin kullandığı bir klasör. Ulvak buna dokunmaz.");
    EXPECT_EQ(found[0].action, CleanAction{CleanAction::None{"Sistem dosyalarını Ulvak silmez."}});
    EXPECT_FALSE(found[0].isPersonal);
    EXPECT_EQ(found[1].level, SafetyLevel::regenerable) << "name rules apply there";
}

TEST(Analyzer, NamesAreNotGuessedInTheSystemsLibrary) {
    const auto found = findings(dir("/Library", {dir("backups", gigabyte)}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].title, "backups");
    EXPECT_EQ(found[0].level, SafetyLevel::keep);
}

TEST(Analyzer, ANormalContainerKeepsTheAreaItLiesIn) {
    const std::vector<Rule> rules = {
        {.match = Rule::Path{"/a"}, .kind = Rule::Container{ScanContext::personal}, .title = "{name}"},
        {.match = Rule::Path{"/a/b"}, .kind = Rule::Container{}, .title = "{name}"},
        {.match = Rule::Path{"/a/s"}, .kind = Rule::Container{ScanContext::system}, .title = "{name}"},
        {.match = Rule::Path{"/a/s/p"}, .kind = Rule::Container{ScanContext::personal}, .title = "{name}"},
    };
    const auto found =
        findingsBy(rules, {dir("/a", {dir("b", {dir("x", 4 * gigabyte)}),
                                      dir("s", {dir("y", 2 * gigabyte), dir("p", {dir("z", gigabyte)})})})});
    ASSERT_THAT(ids(found), ElementsAre("/a/b/x", "/a/s/y", "/a/s/p/z"));
    EXPECT_TRUE(found[0].isPersonal);
    EXPECT_EQ(found[1].action, CleanAction{CleanAction::None{"Sistem dosyalarını Ulvak silmez."}});
    EXPECT_TRUE(found[2].isPersonal);
}

TEST(Analyzer, WhatOneContainerSwitchesDoesNotReachItsNeighbours) {
    const auto found = findings(homeWith({dir("Belgeler", {dir("x", 2 * gigabyte)}), dir(".y", gigabyte)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Belgeler/x", home + "/.y"));
    EXPECT_FALSE(found[1].isPersonal);
    EXPECT_EQ(found[1].level, SafetyLevel::unknown);
}

TEST(Analyzer, ACacheAmongPersonalFilesIsPersonalButBuildDataIsNot) {
    const auto found =
        findings(homeWith({dir("Belgeler", {dir("Cache", 2 * gigabyte), dir("DerivedData", gigabyte)})}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Belgeler/Cache", home + "/Belgeler/DerivedData"));
    EXPECT_TRUE(found[0].isPersonal);
    EXPECT_EQ(found[1].title, "Belgeler · DerivedData");
    EXPECT_EQ(found[1].level, SafetyLevel::regenerable);
    EXPECT_FALSE(found[1].isPersonal);
}

TEST(Analyzer, ASharedFolderIsPersonal) {
    const auto found = findings(dir("/Users/Shared", {dir("Oyun", gigabyte)}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].isPersonal);
}

TEST(Analyzer, DependenciesOfAPersonalProjectAreFoundWhereTheirSiblingsAre) {
    const TempTree disk({folder("proje", {folder("node_modules"), file("package.json")})});
    const UserFolders folders{.home = disk.path(), .temp = "/no/T", .cache = "/no/C"};
    const auto found = findings(
        dir(disk.path(), {dir("proje", {dir("node_modules", unitMinimum), dir("src", defaultMinimum)})}),
        folders);
    ASSERT_THAT(titles(found), ElementsAre("src", "proje · node_modules"));
}

// Guesses.

TEST(Analyzer, AGuessedFolderBelowItsMinimumYieldsNothing) {
    EXPECT_THAT(findings(dir("/x/logs2/log", defaultMinimum - 1)), IsEmpty());
    const auto found = findings(dir("/x/logs2/log", defaultMinimum));
    ASSERT_THAT(titles(found), ElementsAre("log (kayıt/geçici)"));
    EXPECT_EQ(found[0].level, SafetyLevel::safe);
    EXPECT_EQ(found[0].source, VerdictSource::heuristic);
    EXPECT_EQ(found[0].action, CleanAction{});
    EXPECT_EQ(
        found[0].explanation,
        "Klasör adına göre tahmin: Adı kayıt, iz ya da geçici dosya olduğunu düşündürüyor; bunlar genelde "
        "silinebilir. Emin olmak için " +
            std::string(words().withModel) + " analiz et.");
}

TEST(Analyzer, AGuessedFolderIsNotDrilledInto) {
    const auto found =
        findings(dir("/x/out", 9 * gigabyte, {dir("big", 8 * gigabyte, {dir("DerivedData", gigabyte)})}));
    EXPECT_THAT(titles(found), ElementsAre("out (üretilmiş çıktı)"));
}

TEST(Analyzer, AFolderOfBackupsIsShownAsItsBigSubFolders) {
    const auto found =
        findings(dir("/x/Yedekler", 9 * gigabyte,
                     {dir("2022", 2 * gigabyte), dir("models", gigabyte), dir("küçük", defaultMinimum - 1),
                      fileNode("disk.img", 3 * gigabyte), dir("sınır", defaultMinimum)}));
    ASSERT_THAT(ids(found), ElementsAre("/x/Yedekler/2022", "/x/Yedekler/models", "/x/Yedekler/sınır"));
    EXPECT_THAT(titles(found), ElementsAre("2022 (yedek)", "models (modeller)", "sınır (yedek)"))
        << "the sub-folder's own name is guessed first";
    EXPECT_EQ(found[0].parentPath, "/x/Yedekler");
    EXPECT_EQ(found[0].source, VerdictSource::heuristic);
    EXPECT_EQ(found[0].siblings.size(), 4U);
    EXPECT_EQ(found[0].siblings.front(), (ChildSummary{.name = "disk.img", .size = 3 * gigabyte}));
}

TEST(Analyzer, AFolderOfBackupsWithOneBigSubFolderIsShownAsAWhole) {
    const auto found = findings(
        dir("/x/Yedekler", 9 * gigabyte,
            {dir("2022", 8 * gigabyte), dir("küçük", defaultMinimum - 1), fileNode("disk.img", gigabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("Yedekler (yedek)"));
    EXPECT_THAT(findings(dir("/x/Yedekler", defaultMinimum - 1, {dir("a", 200 * megabyte)})), IsEmpty());
}

TEST(Analyzer, APackageAmongBackupsIsABigSubFolderToo) {
    const auto found = findings(dir("/x/vms", {package("a.vm", gigabyte), dir("b", gigabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("a.vm (sanal ortam)", "b (sanal ortam)"));
}

TEST(Analyzer, OnlyGuessesThatSplitAreSplit) {
    const auto found = findings(dir("/x/output", {dir("a", gigabyte), dir("b", gigabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("output (üretilmiş çıktı)"));
}

TEST(Analyzer, RulesInASplitFolderAreNotAsked) {
    const auto found = findings(dir("/x/backups", {dir("DerivedData", gigabyte), dir("b", gigabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("DerivedData (yedek)", "b (yedek)"));
}

TEST(Analyzer, ABackupsTitleHasTheNameAsItIsOnDisk) {
    const auto found = findings(dir("/x/ESKİ Yedek \xff", gigabyte));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].title, "ESKİ Yedek \xff (yedek)");
}

// Roots inside other roots.

TEST(Analyzer, WhatHoldsAnotherRootIsLookedIntoAndNeverReported) {
    const Node root = homeWith(
        {dir(".x", 9 * gigabyte, {dir("y", 4 * gigabyte, {dir("z", 900 * megabyte)}), dir("w", gigabyte)})});
    EXPECT_THAT(ids(findings({root}, ayse, {home + "/.x/y/tmp"})),
                ElementsAre(home + "/.x/w", home + "/.x/y/z"));
    EXPECT_THAT(ids(findings({root}, ayse, {home + "/.x/yy", home + "/.xx", home + "/.x/w"})),
                ElementsAre(home + "/.x/y", home + "/.x/w"))
        << "a root that begins there is not inside it, nor is one whose name begins alike";
    EXPECT_THAT(ids(findings({root}, ayse, {})), ElementsAre(home + "/.x/y", home + "/.x/w"));
}

TEST(Analyzer, AUnitThatHoldsAnotherRootIsNoUnit) {
    const Node root = homeWith({dir(".npm", 9 * gigabyte, {dir("tmp", gigabyte), dir("a", 2 * gigabyte)})});
    EXPECT_THAT(ids(findings({root}, ayse, {home + "/.npm/tmp/T"})), ElementsAre(home + "/.npm/a"));
}

TEST(Analyzer, AUnitThatIsNeverCleanedIsReportedEvenIfItHoldsAnotherRoot) {
    const Node root = homeWith({dir("Library", {dir("Mail", 9 * gigabyte, {dir("tmp", gigabyte)})})});
    EXPECT_THAT(ids(findings({root}, ayse, {home + "/Library/Mail/tmp/T"})),
                ElementsAre(home + "/Library/Mail"));
}

TEST(Analyzer, AHomeFolderBelowTheTemporaryOneIsNeverTakenAlong) {
    const UserFolders folders{.home = "/tmp/test/home", .temp = "/tmp", .cache = "/C"};
    const Node temporary =
        dir("/tmp", 9 * gigabyte, {dir("test", 8 * gigabyte, {dir("x", gigabyte)}), dir("other", gigabyte)});
    const auto found = findings({temporary}, folders, {folders.home});
    EXPECT_THAT(ids(found), ElementsAre("/tmp/test/x", "/tmp/other"));
    EXPECT_EQ(found[0].level, SafetyLevel::unknown);
    EXPECT_EQ(found[1].level, SafetyLevel::safe);
}

TEST(Analyzer, AGuessedFolderThatHoldsAnotherRootIsNotSplit) {
    const Node root =
        homeWith({dir(".backups", {dir("a", gigabyte), dir("b", gigabyte, {dir("c", 900 * megabyte)})})});
    EXPECT_THAT(ids(findings({root}, ayse, {home + "/.backups/b/T"})),
                ElementsAre(home + "/.backups/a", home + "/.backups/b/c"));
}

TEST(Analyzer, APackageThatHoldsAnotherRootIsEntered) {
    const Node root = homeWith({package("Oyun.bundle", 5 * gigabyte, {dir("x", gigabyte)})});
    const auto found = findings({root}, ayse, {home + "/Oyun.bundle/T"});
    EXPECT_THAT(ids(found), ElementsAre(home + "/Oyun.bundle/x"));
    EXPECT_TRUE(found.at(0).isPersonal);
}

// Unusual places.

TEST(Analyzer, AHomeFolderMayBeTheRoot) {
    const UserFolders folders{.home = "/", .temp = "/tmp", .cache = "/C"};
    const auto found =
        findings(dir("/", {dir(".npm", gigabyte), dir("usr", {dir("x", 2 * gigabyte)})}), folders);
    ASSERT_THAT(ids(found), ElementsAre("/usr/x", "/.npm"));
    EXPECT_EQ(found[0].parentPath, "/usr");
    EXPECT_EQ(found[1].parentPath, "/");
    EXPECT_TRUE(found[0].isPersonal);
}

TEST(Analyzer, ARootWithoutAnythingInItYieldsNothing) {
    EXPECT_THAT(findings(dir(home, 0)), IsEmpty());
    EXPECT_THAT(findings(fileNode(home, 0)), IsEmpty());
}

TEST(Analyzer, ARootThatIsAFileIsJudgedLikeOne) {
    const auto found = findings(fileNode(home, gigabyte));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].title, "ayse");
    EXPECT_EQ(found[0].level, SafetyLevel::unknown);
    EXPECT_EQ(found[0].parentPath, std::nullopt);
}

TEST(Analyzer, NamesOfAnyBytesAreKept) {
    const auto found = findings(homeWith({dir(".\xff\n\x1b[31m", gigabyte)}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].id, home + "/.\xff\n\x1b[31m");
    EXPECT_EQ(found[0].title, ".\xff\n\x1b[31m");
}

/// A file this many folders below the home folder; each folder is named "d" and as large as the file.
Node deepHome(int levels) {
    Node node = fileNode("bottom", 3 * gigabyte);
    for (int i = 0; i <= levels; ++i) {
        Node above = dir(i < levels ? "d" : home, node.size);
        above.children.push_back(std::move(node));
        node = std::move(above);
    }
    return node;
}

TEST(Analyzer, AVeryDeepTreeIsNoDanger) {
    const auto found = findings(deepHome(5'000));
    EXPECT_THAT(ids(found), ElementsAre(home + "/d/d/d/d/d/d/d/d"));
}

TEST(Analyzer, AnotherRootMayLieDeep) {
    std::string inner = home;
    for (int i = 0; i < 400; ++i)
        inner += "/d";
    const auto found = findings({deepHome(420)}, ayse, {inner + "/T"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].id.starts_with(inner + "/d"));
}

}  // namespace
}  // namespace ulvak
