#include "core/finding.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "support/findings.h"

namespace ulvak {
namespace {

const Verdict first{.level = SafetyLevel::caution,
                    .title = "Yedekler",
                    .explanation = "Bir yedek olabilir.",
                    .source = VerdictSource::heuristic};

Finding analysed() {
    Finding finding{.id = "/home/ayse/Yedekler"};
    setCurrentVerdict(finding, first);
    return test::asFound(std::move(finding));
}

const Verdict ofModel{.level = SafetyLevel::safe,
                      .title = "Eski yedek",
                      .explanation = "Artık gerekmiyor.",
                      .source = VerdictSource::ai,
                      .confidence = 91};

TEST(Finding, CanBeCleanedUnlessThereIsAReasonAgainstIt) {
    Finding finding = analysed();
    EXPECT_TRUE(canBeCleaned(finding));
    finding.action = {CleanAction::DeleteSimulator{.udid = "0000"}};
    EXPECT_TRUE(canBeCleaned(finding));
    finding.action = {CleanAction::None{.reason = "Sistemindir."}};
    EXPECT_FALSE(canBeCleaned(finding));
}

TEST(Finding, IsUncertainWhenUnknownOrGuessed) {
    Finding finding = analysed();
    EXPECT_TRUE(isUncertain(finding));
    for (const VerdictSource source : {VerdictSource::rule, VerdictSource::ai, VerdictSource::user}) {
        finding.source = source;
        finding.level = SafetyLevel::keep;
        EXPECT_FALSE(isUncertain(finding));
        finding.level = SafetyLevel::unknown;
        EXPECT_TRUE(isUncertain(finding));
    }
}

TEST(Finding, SettingTheCurrentVerdictSetsAllFiveFieldsAndNothingElse) {
    Finding finding = analysed();
    setCurrentVerdict(finding, ofModel);
    EXPECT_EQ(finding.level, SafetyLevel::safe);
    EXPECT_EQ(finding.title, "Eski yedek");
    EXPECT_EQ(finding.explanation, "Artık gerekmiyor.");
    EXPECT_EQ(finding.source, VerdictSource::ai);
    EXPECT_EQ(finding.confidence, 91);
    EXPECT_EQ(currentVerdict(finding), ofModel);
    EXPECT_EQ(finding.original, first);
    EXPECT_EQ(finding.id, "/home/ayse/Yedekler");
}

TEST(Finding, RelabellingKeepsTheTextsAndTheOriginal) {
    Finding finding = analysed();
    relabel(finding, SafetyLevel::keep);
    EXPECT_EQ(finding.level, SafetyLevel::keep);
    EXPECT_EQ(finding.source, VerdictSource::user);
    EXPECT_EQ(finding.title, first.title);
    EXPECT_EQ(finding.explanation, first.explanation);
    EXPECT_EQ(finding.original, first);
}

TEST(Finding, RelabellingClearsAModelsConfidence) {
    Finding finding = analysed();
    setCurrentVerdict(finding, ofModel);
    relabel(finding, SafetyLevel::keep);
    EXPECT_EQ(finding.confidence, std::nullopt);
    EXPECT_EQ(finding.title, ofModel.title) << "the current texts stay, not the first ones";
    EXPECT_EQ(finding.original, first);
}

TEST(Finding, ResettingARelabelledFindingBringsTheFirstVerdictBack) {
    Finding finding = analysed();
    setCurrentVerdict(finding, ofModel);
    relabel(finding, SafetyLevel::keep);
    resetVerdict(finding);
    EXPECT_EQ(currentVerdict(finding), first);
    EXPECT_EQ(finding.original, first);
}

TEST(Finding, ResettingBringsAConfidenceBackToo) {
    Finding finding = analysed();
    finding.original = ofModel;
    relabel(finding, SafetyLevel::keep);
    resetVerdict(finding);
    EXPECT_EQ(finding.confidence, 91);
}

TEST(Finding, AGroupOfThreeSaysSoInItsTitle) {
    Finding finding = analysed();
    finding.urls = {"/a", "/b", "/c"};
    appendMemberCount(finding);
    EXPECT_EQ(finding.title, "Yedekler (3 öğe)");
    EXPECT_EQ(finding.original.title, "Yedekler (3 öğe)");
    EXPECT_EQ(currentVerdict(finding), finding.original);
}

TEST(Finding, AGroupsResetKeepsTheNumberOfMembers) {
    Finding finding = analysed();
    finding.urls.assign(1234, "/a");
    appendMemberCount(finding);
    setCurrentVerdict(finding, ofModel);
    resetVerdict(finding);
    EXPECT_EQ(finding.title, "Yedekler (1234 öğe)") << "in plain decimal, without grouping";
}

TEST(Finding, StandsForOneOfALevelNobodyKnowsUntilItIsFilled) {
    const Finding finding;
    EXPECT_EQ(finding.level, SafetyLevel::unknown);
    EXPECT_EQ(finding.source, VerdictSource::rule);
    EXPECT_TRUE(std::holds_alternative<CleanAction::Trash>(finding.action.value));
    EXPECT_EQ(finding.confidence, std::nullopt);
    EXPECT_EQ(finding.modified, std::nullopt);
    EXPECT_EQ(finding.parentPath, std::nullopt);
    EXPECT_EQ(finding.groupKey, std::nullopt);
    EXPECT_FALSE(finding.isPersonal);
}

TEST(Finding, CopiesShareNothing) {
    Finding finding = analysed();
    Finding copy = finding;
    copy.urls.emplace_back("/b");
    copy.children.emplace_back().name = "x";
    relabel(copy, SafetyLevel::keep);
    EXPECT_EQ(finding.urls.size(), 1U);
    EXPECT_TRUE(finding.children.empty());
    EXPECT_EQ(finding.level, SafetyLevel::caution);
}

TEST(ChildSummary, IsEqualOnlyWhenAllThreeFieldsAre) {
    const ChildSummary summary{.name = "a", .size = 1, .isDirectory = true};
    EXPECT_EQ(summary, (ChildSummary{.name = "a", .size = 1, .isDirectory = true}));
    for (const ChildSummary& other : {ChildSummary{.name = "b", .size = 1, .isDirectory = true},
                                      ChildSummary{.name = "a", .size = 2, .isDirectory = true},
                                      ChildSummary{.name = "a", .size = 1, .isDirectory = false}}) {
        EXPECT_NE(summary, other);
        EXPECT_NE(std::hash<ChildSummary>{}(summary), std::hash<ChildSummary>{}(other));
    }
}

TEST(CleanAction, TrashIsEqualToTrash) {
    EXPECT_EQ(CleanAction{CleanAction::Trash{}}, CleanAction{});
}

TEST(CleanAction, ReasonsAndSimulatorsAreComparedByTheirTexts) {
    using None = CleanAction::None;
    using Simulator = CleanAction::DeleteSimulator;
    EXPECT_NE(CleanAction{None{"Sistem dosyalarını Ulvak silmez."}}, CleanAction{None{"Başka."}});
    EXPECT_EQ(CleanAction{None{"a"}}, CleanAction{None{"a"}});
    EXPECT_NE(CleanAction{Simulator{"a"}}, CleanAction{Simulator{"b"}});
    EXPECT_EQ(CleanAction{Simulator{"a"}}, CleanAction{Simulator{"a"}});
    EXPECT_NE(CleanAction{Simulator{"a"}}, CleanAction{None{"a"}});
    EXPECT_NE(CleanAction{None{""}}, CleanAction{});
}

TEST(CleanAction, HasItsCasesInAFixedOrder) {
    EXPECT_EQ(CleanAction{}.value.index(), 0U);
    EXPECT_EQ(CleanAction{CleanAction::DeleteSimulator{}}.value.index(), 1U);
    EXPECT_EQ(CleanAction{CleanAction::None{}}.value.index(), 2U);
}

TEST(CleanAction, CanBeCollectedByItsHash) {
    const std::unordered_set<CleanAction> actions = {CleanAction{},
                                                     CleanAction{CleanAction::DeleteSimulator{"a"}},
                                                     CleanAction{CleanAction::DeleteSimulator{"b"}},
                                                     CleanAction{CleanAction::None{"a"}},
                                                     CleanAction{CleanAction::None{"b"}},
                                                     CleanAction{CleanAction::None{"b"}}};
    EXPECT_EQ(actions.size(), 5U);
    std::set<std::size_t> hashes;
    for (const CleanAction& action : actions)
        hashes.insert(std::hash<CleanAction>{}(action));
    EXPECT_EQ(hashes.size(), 5U);
}

TEST(SidebarItem, OverviewIsEqualToNoLevel) {
    const SidebarItem overview;
    EXPECT_EQ(overview, SidebarItem{SidebarItem::Overview{}});
    for (const SafetyLevel level : allSafetyLevels) {
        EXPECT_NE(overview, SidebarItem{level});
        EXPECT_NE(std::hash<SidebarItem>{}(overview), std::hash<SidebarItem>{}(SidebarItem{level}));
    }
}

TEST(SidebarItem, LevelsAreComparedByLevel) {
    std::unordered_set<SidebarItem> items = {SidebarItem{}};
    for (const SafetyLevel level : allSafetyLevels) {
        EXPECT_EQ(SidebarItem{level}, SidebarItem{level});
        items.insert(SidebarItem{level});
        items.insert(SidebarItem{level});
    }
    EXPECT_EQ(items.size(), 1 + allSafetyLevels.size());
}

TEST(Finding, WhatToQuitIsNamedOnce) {
    struct Row {
        std::vector<std::string> apps;
        std::vector<std::string> processes;
        std::vector<std::string> names;
    };
    const std::vector<Row> rows = {
        {{}, {}, {}},
        {{}, {"wineserver"}, {"wineserver"}},
        {{}, {"qemu-system-*", "bazel", "bazel(*", "*"}, {"qemu-system", "bazel"}},
        {{}, {"godot*", "Godot*"}, {"godot"}},
        {{"Steam"}, {"steam", "wineserver"}, {"Steam", "wineserver"}},
        {{"Firefox"}, {"firefox", "firefox-bin", "firefox-esr"}, {"Firefox"}},
        {{"Android Studio"}, {"studio", "studio.sh"}, {"Android Studio"}},
        {{"Visual Studio Code"}, {"code", "code-insiders"}, {"Visual Studio Code"}},
        {{"Virtual Machine Manager"},
         {"qemu-system-*", "virt-manager"},
         {"Virtual Machine Manager", "qemu-system"}},
        {{"RStudio"}, {"rstudio", "R", "rsession"}, {"RStudio", "R", "rsession"}},
        {{"R"}, {"R"}, {"R"}},
        {{"A", "a"}, {}, {"A"}},
    };
    for (const Row& row : rows) {
        const Finding finding{.quitApps = row.apps, .processes = row.processes};
        EXPECT_EQ(namesToQuit(finding), row.names) << testing::PrintToString(row.processes);
    }
}

}  // namespace
}  // namespace ulvak
