#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "core/format.h"
#include "core/words.h"
#include "node.h"

// The contents of a finding.

namespace ulvak {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string home = ayse.home;
const std::string temp = ayse.temp;
const FileTime someDate = std::chrono::sys_days{std::chrono::year{2023} / 4 / 5};

Finding only(const std::vector<Finding>& found) {
    EXPECT_EQ(found.size(), 1U);
    return found.empty() ? Finding() : found.front();
}

/// The finding for a folder named by a single unit rule.
Finding foundBy(const Rule& rule, const std::string& name, std::int64_t size = gigabyte) {
    return only(findingsBy({rule}, {dir("/x/üst", {dir(name, size)})}));
}

Rule unit(std::string pattern, std::string title, Rule::Resolver resolver = Rule::Resolver::none) {
    return {.match = Rule::Path{std::move(pattern)},
            .kind = Rule::Unit{},
            .level = SafetyLevel::caution,
            .title = std::move(title),
            .explanation = "Açıklama.",
            .resolver = resolver};
}

TEST(RuleFinding, HasTheFieldsOfNodeRuleAndParent) {
    Node npm = dir(".npm", 2 * gigabyte, {dir("_cacache", gigabyte), fileNode("f", 60 * megabyte)})
                   .withFiles(42)
                   .modifiedAt(someDate);
    const auto found =
        only(findings(dir(home, {std::move(npm), dir("Belgeler", 3 * gigabyte), fileNode("z", megabyte)})));
    EXPECT_EQ(found.id, home + "/.npm");
    EXPECT_THAT(found.urls, ElementsAre(home + "/.npm"));
    EXPECT_EQ(found.size, 2 * gigabyte);
    EXPECT_EQ(found.level, SafetyLevel::regenerable);
    EXPECT_EQ(found.title, "npm önbelleği");
    EXPECT_EQ(found.explanation,
              "npm'in indirdiği paketlerin kopyaları ve npx ile çalıştırılan araçlar. Silinirse paketler "
              "gerektiğinde tekrar "
              "indirilir. İpucu: `npm cache clean --force`.");
    EXPECT_EQ(found.source, VerdictSource::rule);
    EXPECT_EQ(found.confidence, std::nullopt);
    EXPECT_EQ(found.action, CleanAction{CleanAction::Trash{}});
    EXPECT_THAT(found.quitApps, IsEmpty());
    EXPECT_EQ(found.modified, someDate);
    EXPECT_EQ(found.fileCount, 42);
    EXPECT_THAT(found.children,
                ElementsAre(ChildSummary{.name = "_cacache", .size = gigabyte, .isDirectory = true},
                            ChildSummary{.name = "f", .size = 60 * megabyte, .isDirectory = false}));
    EXPECT_EQ(found.parentPath, home);
    EXPECT_THAT(found.siblings,
                ElementsAre(ChildSummary{.name = "Belgeler", .size = 3 * gigabyte, .isDirectory = true},
                            ChildSummary{.name = "z", .size = megabyte, .isDirectory = false}));
    EXPECT_FALSE(found.isPersonal);
    EXPECT_EQ(found.groupKey, std::nullopt);
    EXPECT_EQ(found.original, currentVerdict(found));
}

TEST(RuleFinding, TellsWhichApplicationsToQuit) {
    const auto found = only(findings(dir(home + "/.gradle/caches", gigabyte)));
    EXPECT_THAT(found.quitApps, ElementsAre("Android Studio"));
}

TEST(RuleFinding, WhatTheProgramDoesNotCleanSaysSo) {
    const auto found = only(findings(dir(home + "/Library/Mail", gigabyte)));
    EXPECT_EQ(found.level, SafetyLevel::keep);
    EXPECT_EQ(found.action,
              CleanAction{CleanAction::None{"Ulvak bunu senin yerine silmez. Açıklamadaki yöntemi kullan."}});
}

TEST(RuleFinding, ARootHasNeitherParentNorSiblings) {
    const auto found = only(findings(dir("/x/proje/DerivedData", gigabyte)));
    EXPECT_EQ(found.parentPath, std::nullopt);
    EXPECT_THAT(found.siblings, IsEmpty());
    EXPECT_EQ(found.title, " · DerivedData") << "without a parent there is no name for it";
}

TEST(RuleFinding, HasTheLargestTwelveChildrenAndTenSiblings) {
    std::vector<Node> children;
    std::vector<Node> neighbours;
    for (int i = 0; i < 20; ++i) {
        children.push_back(dir("c" + std::to_string(i), (100 + i) * megabyte));
        neighbours.push_back(fileNode("." + std::to_string(i), (100 + i) * megabyte));
    }
    neighbours.push_back(dir(".npm", children));
    const auto found = only(findings(dir(home, neighbours)));
    ASSERT_THAT(found.children, SizeIs(12));
    EXPECT_EQ(found.children.front().name, "c19");
    EXPECT_EQ(found.children.back().name, "c8");
    ASSERT_THAT(found.siblings, SizeIs(10));
    EXPECT_EQ(found.siblings.front().name, ".19");
    EXPECT_EQ(found.siblings.back().name, ".10");
}

TEST(RuleFinding, ExactlyTwelveChildrenAndTenSiblingsAreAllThere) {
    std::vector<Node> children;
    std::vector<Node> neighbours;
    for (int i = 0; i < 12; ++i)
        children.push_back(dir("c" + std::to_string(i), 100 * megabyte));
    for (int i = 0; i < 10; ++i)
        neighbours.push_back(fileNode("." + std::to_string(i), 100 * megabyte));
    neighbours.push_back(dir(".npm", children));
    const auto found = only(findings(dir(home, neighbours)));
    EXPECT_THAT(found.children, SizeIs(12));
    EXPECT_EQ(found.children.front().name, "c0") << "equal sizes in the order in which they were listed";
    EXPECT_THAT(found.siblings, SizeIs(10));
}

TEST(RuleFinding, TitlesHaveEveryPlaceholderReplaced) {
    EXPECT_EQ(foundBy(unit("/x/üst/*", "{name}: {name} ({parent}, {parent})"), "a").title, "a: a (üst, üst)");
    EXPECT_EQ(foundBy(unit("/x/üst/*", "{Name} {other} {}"), "a").title, "{Name} {other} {}");
    EXPECT_EQ(foundBy(unit("/x/üst/*", "{name}!"), "{name}").title, "{name}!");
    EXPECT_EQ(foundBy(unit("/x/üst/*", "{name}!"), "{parent}").title, "üst!") << "the parent after the name";
    EXPECT_EQ(foundBy(unit("/x/üst/*", "{name}!"), "\xff").title, "\xff!");
}

TEST(RuleFinding, BuildDataNamesItsProject) {
    const auto title = [](const std::string& name) {
        return foundBy(unit("/x/üst/*", "{name}", Rule::Resolver::derivedData), name).title;
    };
    EXPECT_EQ(title("Uygulama-gkzqxwvutsrqponm"), "Uygulama");
    EXPECT_EQ(title("Benim-Uygulamam-abc"), "Benim-Uygulamam");
    EXPECT_EQ(title("Uygulama"), "Uygulama");
    EXPECT_EQ(title("-abc"), "-abc") << "when nothing is left";
    EXPECT_EQ(title("abc-"), "abc-");
    EXPECT_EQ(title("a--b---c"), "a-b");
    EXPECT_EQ(title("--a-b"), "a");
    EXPECT_EQ(title("---"), "---");
    EXPECT_EQ(title("a-b--"), "a");
}

TEST(RuleFinding, AnEmulatorsNameHasBlanks) {
    const auto title = [](const std::string& name) {
        return foundBy(unit("/x/üst/*", "{name}", Rule::Resolver::avd), name).title;
    };
    EXPECT_EQ(title("Pixel_7_API_34.avd"), "Pixel 7 API 34");
    EXPECT_EQ(title("a.avd.avd"), "a");
    EXPECT_EQ(title("a.avdx_"), "ax ");
    EXPECT_EQ(title("Pixel.AVD"), "Pixel.AVD");
}

TEST(RuleFinding, AnApplicationsNameHasNoEnding) {
    const auto title = [](const std::string& name) {
        return foundBy(unit("/x/üst/*", "{name}", Rule::Resolver::app), name).title;
    };
    EXPECT_EQ(title("Xcode.app"), "Xcode");
    EXPECT_EQ(title("My.application.app"), "Mylication") << "every \".app\" goes";
    EXPECT_EQ(title("Xcode"), "Xcode");
}

TEST(RuleFinding, DeviceSymbolsAreNamedByTheirVersion) {
    const auto found =
        only(findings(dir(home + "/Library/Developer/Xcode/iOS DeviceSupport/17.2 (21C62)", gigabyte)));
    EXPECT_EQ(found.title, "Cihaz sembolleri: 17.2 (21C62)");
}

// Groups.

TEST(GroupedFinding, TwoTracesInOneFolderBecomeOneFinding) {
    const auto found =
        only(findings(dir(temp, {fileNode("instruments1.ktrace", 60 * megabyte).modifiedAt(someDate),
                                 fileNode("instruments2.ktrace", 70 * megabyte)})));
    EXPECT_THAT(found.urls, ElementsAre(temp + "/instruments2.ktrace", temp + "/instruments1.ktrace"));
    EXPECT_EQ(found.id, temp + "/instruments2.ktrace");
    EXPECT_EQ(found.size, 130 * megabyte);
    EXPECT_EQ(found.fileCount, 2);
    EXPECT_EQ(found.title, "Instruments kayıtları (2 öğe)");
    EXPECT_EQ(found.original.title, "Instruments kayıtları (2 öğe)");
    EXPECT_EQ(found.modified, someDate);
    EXPECT_THAT(found.children,
                ElementsAre(ChildSummary{.name = "instruments2.ktrace", .size = 70 * megabyte},
                            ChildSummary{.name = "instruments1.ktrace", .size = 60 * megabyte}));
    EXPECT_EQ(found.groupKey, temp + "|instruments");
}

TEST(GroupedFinding, LikeTracesInTwoFoldersStayTwoFindings) {
    Rule rule = unit("/x/*/t*.ktrace", "İzler");
    rule.group = "izler";
    const auto found = findingsBy({rule}, {dir("/x", {dir("a", {fileNode("t1.ktrace", gigabyte)}),
                                                      dir("b", {fileNode("t2.ktrace", gigabyte)})})});
    EXPECT_THAT(titles(found), ElementsAre("İzler", "İzler"));
    EXPECT_EQ(found[0].groupKey, "/x/a|izler");
    EXPECT_EQ(found[1].groupKey, "/x/b|izler");
}

TEST(GroupedFinding, TwoGroupsInOneFolderStayTwoFindings) {
    const auto found =
        findings(dir(temp, {fileNode("instruments1.ktrace", 100 * megabyte),
                            fileNode("xrgpu_1", 60 * megabyte), fileNode("xrgpu_2", 60 * megabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("GPU izleme kayıtları (2 öğe)", "Instruments kayıtları"));
    EXPECT_THAT(found[1].children,
                ElementsAre(ChildSummary{.name = "instruments1.ktrace", .size = 100 * megabyte}));
}

TEST(GroupedFinding, MembersBelowTheMinimumAreLeftOut) {
    const auto found =
        only(findings(dir(temp, {fileNode("xrgpu_1", unitMinimum), fileNode("xrgpu_2", unitMinimum - 1)})));
    EXPECT_EQ(found.size, unitMinimum);
    EXPECT_EQ(found.title, "GPU izleme kayıtları");
}

TEST(GroupedFinding, ARootsKeyHasNoFolder) {
    EXPECT_EQ(only(findings(fileNode(temp + "/xrgpu_1", gigabyte))).groupKey, "|xrgpu");
}

TEST(GroupedFinding, IsSortedByTheSizeOfAllItsMembers) {
    const auto found = findings(dir(temp, {fileNode("a", 100 * megabyte), fileNode("xrgpu_1", 60 * megabyte),
                                           fileNode("xrgpu_2", 60 * megabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("GPU izleme kayıtları (2 öğe)", "Geçici dosya: a"));
}

// Simulators.

constexpr const char* udid = "9C0B1C0E-0000-4000-8000-1234567890AB";

Finding simulatorFinding(const SimulatorMap& simulators, const std::string& name = udid) {
    Analyzer analyzer = usualAnalyzer();
    analyzer.simulators = simulators;
    std::vector<DirNode> roots;
    roots.push_back(tree(dir(home + "/Library/Developer/CoreSimulator/Devices", {dir(name, gigabyte)})));
    return only(analyzer.run(roots, ayse));
}

SimulatorMap iPhone(bool isAvailable, std::optional<FileTime> lastBooted = std::nullopt) {
    return {{udid,
             {.udid = udid,
              .name = "iPhone 15",
              .runtime = "iOS 17.2",
              .isAvailable = isAvailable,
              .lastBooted = lastBooted}}};
}

TEST(SimulatorFinding, AnUnknownDeviceHasNoOwnerAndIsSafe) {
    for (const SimulatorMap& simulators : {SimulatorMap{}, SimulatorMap{{"other", {}}}}) {
        const auto found = simulatorFinding(simulators);
        EXPECT_EQ(found.title, "Sahipsiz simülatör verisi");
        EXPECT_EQ(found.explanation, "Xcode'un artık tanımadığı bir simülatör klasörü. Silmek güvenli.");
        EXPECT_EQ(found.level, SafetyLevel::safe);
        EXPECT_EQ(found.source, VerdictSource::rule);
        EXPECT_EQ(found.action, CleanAction{CleanAction::Trash{}});
        EXPECT_EQ(found.original, currentVerdict(found));
    }
}

TEST(SimulatorFinding, AnAvailableDeviceIsNamedAndDeletedThroughTheTools) {
    const auto found = simulatorFinding(iPhone(true));
    EXPECT_EQ(found.title, "iPhone 15 · iOS 17.2");
    EXPECT_EQ(found.level, SafetyLevel::caution);
    EXPECT_EQ(found.action, CleanAction{CleanAction::DeleteSimulator{udid}});
    EXPECT_EQ(found.explanation,
              "Bir iOS simülatörü. Silersen içine kurduğun uygulamalar ve verileri gider; Xcode'dan aynısını "
              "birkaç saniyede "
              "yeniden oluşturabilirsin. Hiç açılmamış görünüyor.");
    EXPECT_EQ(found.original, currentVerdict(found));
}

TEST(SimulatorFinding, SaysWhenADeviceWasUsedLast) {
    const auto threeDaysAgo =
        std::chrono::time_point_cast<std::chrono::microseconds>(Format::Clock::now()) - 73h;
    EXPECT_EQ(simulatorFinding(iPhone(true, threeDaysAgo)).explanation,
              "Bir iOS simülatörü. Silersen içine kurduğun uygulamalar ve verileri gider; Xcode'dan aynısını "
              "birkaç saniyede "
              "yeniden oluşturabilirsin. Son açılış: 3 gün önce.");
}

TEST(SimulatorFinding, ADeviceWhoseSystemIsGoneIsSafeButDeletedThroughTheToolsToo) {
    const auto found = simulatorFinding(iPhone(false, someDate));
    EXPECT_EQ(found.title, "iPhone 15 · iOS 17.2");
    EXPECT_EQ(found.level, SafetyLevel::safe);
    EXPECT_EQ(found.action, CleanAction{CleanAction::DeleteSimulator{udid}});
    EXPECT_EQ(found.explanation,
              "Bu simülatörün iOS sürümü artık yüklü değil, yani açılamıyor. Silmek tamamen güvenli.");
}

TEST(SimulatorFinding, DevicesAreLookedUpByTheirExactLetters) {
    EXPECT_EQ(simulatorFinding(iPhone(true), "9c0b1c0e-0000-4000-8000-1234567890ab").title,
              "Sahipsiz simülatör verisi");
}

TEST(SimulatorFinding, AnUnknownDeviceOfARuleThatIsNotActionableStaysSo) {
    Rule rule = unit("/x/üst/*", "t", Rule::Resolver::simulator);
    rule.actionable = false;
    EXPECT_TRUE(std::holds_alternative<CleanAction::None>(foundBy(rule, "a").action.value));
}

// Folders no rule names.

TEST(DefaultFinding, HasTheFieldsOfNodeAndParent) {
    const auto found = only(
        findings(dir(home, {dir(".x", gigabyte, {dir("y", 90 * megabyte)}).withFiles(7).modifiedAt(someDate),
                            fileNode("z", megabyte)})));
    EXPECT_EQ(found.id, home + "/.x");
    EXPECT_THAT(found.urls, ElementsAre(home + "/.x"));
    EXPECT_EQ(found.title, ".x");
    EXPECT_EQ(found.level, SafetyLevel::unknown);
    EXPECT_EQ(found.source, VerdictSource::rule);
    EXPECT_EQ(found.confidence, std::nullopt);
    EXPECT_EQ(found.action, CleanAction{CleanAction::Trash{}});
    EXPECT_THAT(found.quitApps, IsEmpty());
    EXPECT_EQ(found.fileCount, 7);
    EXPECT_EQ(found.modified, someDate);
    EXPECT_EQ(found.parentPath, home);
    EXPECT_THAT(found.children,
                ElementsAre(ChildSummary{.name = "y", .size = 90 * megabyte, .isDirectory = true}));
    EXPECT_THAT(found.siblings, ElementsAre(ChildSummary{.name = "z", .size = megabyte}));
    EXPECT_EQ(found.groupKey, std::nullopt);
    EXPECT_EQ(found.original, currentVerdict(found));
}

TEST(DefaultFinding, AGuessIsAllOfTheFindingsFirstVerdict) {
    const auto found = only(findings(dir("/x/models", gigabyte)));
    EXPECT_EQ(found.original,
              (Verdict{.level = SafetyLevel::caution,
                       .title = "models (modeller)",
                       .explanation =
                           "Klasör adına göre tahmin: Yapay zeka modelleri olabilir; tekrar indirilebilir "
                           "ama büyük ve zaman alıcı. Emin olmak için " +
                           std::string(words().withModel) + " analiz et.",
                       .source = VerdictSource::heuristic}));
    EXPECT_EQ(found.original, currentVerdict(found));
    EXPECT_EQ(found.parentPath, std::nullopt);
}

TEST(DefaultFinding, AFreshFindingRelabelledAndResetIsAsItWas) {
    auto found = only(findings(dir("/x/models", gigabyte)));
    const Verdict first = currentVerdict(found);
    relabel(found, SafetyLevel::keep);
    EXPECT_NE(currentVerdict(found), first);
    resetVerdict(found);
    EXPECT_EQ(currentVerdict(found), first);
}

}  // namespace
}  // namespace ulvak
