#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "node.h"
#include "support/temp_tree.h"

// How far the analyzer drills into folders unknown to rules and guesses. The roots here are such folders,
// with a drill depth of two levels.

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string home = ayse.home;

TEST(Drilling, AFolderOfThreeGigabytesIsReportedWhenItsLargestSubFolderHasLessThanOne) {
    const auto found = findings(dir("/x/a", 3 * gigabyte, {dir("b", 900 * megabyte)}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a"));
}

TEST(Drilling, AFolderOfThreeGigabytesIsDrilledWhenASubFolderHasOne) {
    const auto found = findings(dir("/x/a", 3 * gigabyte, {dir("b", gigabyte), dir("c", 400 * megabyte)}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a/b", "/x/a/c"));
    EXPECT_THAT(titles(found), ElementsAre("a › b", "a › c"));
    EXPECT_EQ(found[0].level, SafetyLevel::unknown);
    EXPECT_EQ(found[0].original.title, "a › b");
}

TEST(Drilling, WhatTheSubFoldersLeaveIsNotReported) {
    const auto found =
        findings(dir("/x/a", 9 * gigabyte, {dir("b", 3 * gigabyte), dir("c", defaultMinimum - 1)}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a/b"));
}

TEST(Drilling, TheLargestSubFolderMustHoldAQuarter) {
    const auto drills = [](std::int64_t size, std::int64_t largest) {
        const auto found = findings(dir("/x/a", size, {dir("b", largest)}));
        EXPECT_EQ(found.size(), 1U);
        return found.at(0).id == "/x/a/b";
    };
    EXPECT_FALSE(drills(2 * gigabyte - 1, 2 * gigabyte - 1));
    EXPECT_TRUE(drills(2 * gigabyte, gigabyte));
    EXPECT_FALSE(drills(2 * gigabyte, gigabyte - 1));
    EXPECT_TRUE(drills(4 * gigabyte, gigabyte));
    EXPECT_FALSE(drills(4 * gigabyte, gigabyte - 1));
    EXPECT_TRUE(drills(4 * gigabyte + 3, gigabyte)) << "divided as integers";
    EXPECT_FALSE(drills(4 * gigabyte + 4, gigabyte));
    EXPECT_TRUE(drills(8 * gigabyte, 2 * gigabyte));
    EXPECT_FALSE(drills(8 * gigabyte, 2 * gigabyte - 1));
}

TEST(Drilling, TheLargestSubFolderIsAskedForEvenBehindLargerFiles) {
    const auto found = findings(dir("/x/a", 4 * gigabyte, {fileNode("f", 2 * gigabyte), dir("b", gigabyte)}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a/f", "/x/a/b"));
    EXPECT_THAT(titles(found), ElementsAre("a › f", "a › b"));
}

TEST(Drilling, AFolderOfFilesIsReportedAsAWhole) {
    EXPECT_THAT(ids(findings(dir("/x/a", {fileNode("f", 9 * gigabyte)}))), ElementsAre("/x/a"));
    EXPECT_THAT(ids(findings(dir("/x/a", 9 * gigabyte))), ElementsAre("/x/a"));
}

TEST(Drilling, APackageCountsAsASubFolderButIsNotEntered) {
    EXPECT_THAT(
        ids(findings(dir("/x/a", 3 * gigabyte, {package("b.app", 2 * gigabyte, {dir("c", 2 * gigabyte)})}))),
        ElementsAre("/x/a/b.app"));
    EXPECT_THAT(ids(findings(package("/x/a.app", 9 * gigabyte, {dir("c", 8 * gigabyte)}))),
                ElementsAre("/x/a.app"));
}

TEST(Drilling, GoesTwoLevelsDeepOutsidePersonalFolders) {
    const auto found = findings(dir("/x/a", {dir("b", {dir("c", {dir("d", 5 * gigabyte)})})}));
    ASSERT_THAT(ids(found), ElementsAre("/x/a/b/c"));
    EXPECT_EQ(found[0].title, "b › c");
}

TEST(Drilling, GoesTwoLevelsDeepBelowAContainer) {
    const auto found = findings(dir(home, {dir(".a", {dir("b", {dir("c", {dir("d", 5 * gigabyte)})})})}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/.a/b/c"));
    EXPECT_EQ(found[0].title, "b › c");
}

TEST(Drilling, GoesSixLevelsDeepAmongPersonalFiles) {
    Node node = dir("9", 5 * gigabyte);
    for (const char* name : {"8", "7", "6", "5", "4", "3", "2", "1", "Belgeler"})
        node = dir(name, {std::move(node)});
    const auto found = findings(dir(home, {std::move(node)}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Belgeler/1/2/3/4/5/6/7"));
    EXPECT_EQ(found[0].title, "7");
}

TEST(Drilling, GoesTwoLevelsDeepInTheSystemsLibrary) {
    const auto found =
        findings(dir("/Library", {dir("a", {dir("b", {dir("c", {dir("d", 5 * gigabyte)})})})}));
    ASSERT_THAT(ids(found), ElementsAre("/Library/a/b/c"));
    EXPECT_EQ(found[0].title, "b › c");
    EXPECT_EQ(found[0].level, SafetyLevel::keep);
}

TEST(Drilling, AContainerOnTheWayGivesAllLevelsBack) {
    const std::vector<Rule> rules = {
        {.match = Rule::Path{"/x/a/b/c"}, .kind = Rule::Container{}, .title = "{name}"}};
    const auto found = findingsBy(
        rules,
        {dir("/x/a", {dir("b", {dir("c", {dir("d", {dir("e", {dir("f", {dir("g", 5 * gigabyte)})})})})})})});
    ASSERT_THAT(ids(found), ElementsAre("/x/a/b/c/d/e/f"));
    EXPECT_EQ(found[0].title, "e › f");
}

TEST(Drilling, TitlesBelowAContainerHaveNoPrefix) {
    const std::vector<Rule> rules = {
        {.match = Rule::Path{"/x/a/b"}, .kind = Rule::Container{}, .title = "{name}"}};
    const auto found = findingsBy(rules, {dir("/x/a", {dir("b", 5 * gigabyte, {dir("c", gigabyte)})})});
    EXPECT_THAT(titles(found), ElementsAre("c"));
}

TEST(Drilling, PersonalFoldersKeepTheirPlainTitles) {
    const auto found = findings(dir(home, {dir("Belgeler", {dir("a", 3 * gigabyte, {dir("b", gigabyte)})})}));
    ASSERT_THAT(ids(found), ElementsAre(home + "/Belgeler/a/b"));
    EXPECT_EQ(found[0].title, "b");
    EXPECT_TRUE(found[0].isPersonal);
    EXPECT_EQ(found[0].level, SafetyLevel::keep);
}

TEST(Drilling, GuessesReachedByDrillingCarryTheParentsName) {
    const auto found = findings(dir("/x/a", 9 * gigabyte, {dir("models", 4 * gigabyte)}));
    ASSERT_THAT(titles(found), ElementsAre("a › models (modeller)"));
    EXPECT_EQ(found[0].source, VerdictSource::heuristic);
}

TEST(Drilling, BackupsReachedByDrillingAreSplitUnderTheirOwnName) {
    const auto found = findings(dir("/x/a", {dir("backups", {dir("1", 2 * gigabyte), dir("2", gigabyte)})}));
    EXPECT_THAT(titles(found), ElementsAre("backups › 1 (yedek)", "backups › 2 (yedek)"));
}

TEST(Drilling, UnitsReachedByDrillingKeepTheirTitles) {
    const auto found = findings(dir("/x/a", {dir("b", 3 * gigabyte, {dir("DerivedData", 2 * gigabyte)})}));
    EXPECT_THAT(titles(found), ElementsAre("b · DerivedData"));
}

// A known place below is reason enough to drill, however small its share.

TEST(Drilling, AKnownPlaceBelowIsFound) {
    const auto found =
        findings(dir("/x/a", gigabyte, {fileNode("f", 600 * megabyte), dir("DerivedData", 100 * megabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("a › f", "a · DerivedData"));
}

TEST(Drilling, AKnownPlaceBelowAHundredMegabytesIsNotWorthIt) {
    const auto found = findings(dir("/x/a", gigabyte, {dir("DerivedData", 100 * megabyte - 1)}));
    EXPECT_THAT(titles(found), ElementsAre("a"));
}

TEST(Drilling, AKnownPlaceIsSoughtTwoLevelsDown) {
    EXPECT_THAT(titles(findings(dir("/x/a", {dir("b", {dir("DerivedData", gigabyte)})}))),
                ElementsAre("b · DerivedData"));
    EXPECT_THAT(titles(findings(dir("/x/a", {dir("b", {dir("c", {dir("DerivedData", gigabyte)})})}))),
                ElementsAre("a"));
}

TEST(Drilling, AKnownPlaceIsSoughtSixLevelsDownAmongPersonalFiles) {
    const auto below = [](int levels) {
        Node node = dir("DerivedData", gigabyte);
        for (int i = levels; i > 0; --i)
            node = dir(std::to_string(i), {std::move(node)});
        return ids(findings(dir(home, {dir("Belgeler", {std::move(node)})})));
    };
    EXPECT_THAT(below(6), ElementsAre(home + "/Belgeler/1/2/3/4/5/6/DerivedData"));
    EXPECT_THAT(below(7), ElementsAre(home + "/Belgeler/1"));
}

TEST(Drilling, TheWayToAKnownPlaceLeadsThroughBigFoldersOnly) {
    const auto found = findings(
        dir("/x/a", gigabyte, {dir("b", 100 * megabyte - 1, {dir("DerivedData", 100 * megabyte - 1)})}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a"));
}

TEST(Drilling, AKnownPlaceInAPackageIsNotSought) {
    const auto found = findings(dir("/x/a", {package("b.app", gigabyte, {dir("DerivedData", gigabyte)})}));
    EXPECT_THAT(ids(found), ElementsAre("/x/a"));
}

TEST(Drilling, APackageMayBeTheKnownPlace) {
    const auto found = findings(dir("/x/a", {package("b.trace", gigabyte)}));
    EXPECT_THAT(titles(found), ElementsAre("Instruments kaydı: b.trace"));
}

TEST(Drilling, AKnownPlaceIsOneInThisAreaOnly) {
    const Node project = dir("a", gigabyte, {dir("Cache", 200 * megabyte)});
    EXPECT_THAT(titles(findings(dir(home, {dir("Belgeler", {project})}))), ElementsAre("a"));
    EXPECT_THAT(titles(findings(dir("/x", {project}))), ElementsAre("a · önbellek"));
}

TEST(Drilling, AContainerIsAKnownPlaceToo) {
    const std::vector<Rule> rules = {
        {.match = Rule::Path{"/x/a/b"}, .kind = Rule::Container{}, .title = "{name}"}};
    EXPECT_THAT(ids(findingsBy(rules, {dir("/x/a", {dir("b", {dir("c", gigabyte)})})})),
                ElementsAre("/x/a/b/c"));
}

TEST(Drilling, AKnownPlaceThatIsTooSmallForAFindingStillSplitsItsParent) {
    Analyzer analyzer = usualAnalyzer();
    analyzer.unitMinimum = gigabyte;
    std::vector<DirNode> roots;
    roots.push_back(
        tree(dir("/x/a", gigabyte, {dir("DerivedData", 200 * megabyte), dir("b", 700 * megabyte)})));
    EXPECT_THAT(ids(analyzer.run(roots, ayse)), ElementsAre("/x/a/b"));
}

TEST(Drilling, AnEmptyWayDownYieldsNothing) {
    EXPECT_THAT(
        findings(dir("/x/a", 3 * gigabyte, {dir("b", gigabyte, {dir("DerivedData", 100 * megabyte)})})),
        testing::SizeIs(1));
    EXPECT_THAT(findings(dir("/x/a", defaultMinimum - 1, {dir("b", 100 * megabyte)})), IsEmpty());
}

}  // namespace
}  // namespace ulvak
