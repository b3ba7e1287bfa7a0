#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "classify/analyzer.h"
#include "node.h"
#include "support/findings.h"

namespace ulvak {
namespace {

using namespace std::chrono_literals;
using test::ids;
using testing::ElementsAre;
using testing::IsEmpty;

const FileTime early = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};
const FileTime late = early + 24h;

Finding finding(const std::string& id, std::int64_t size, std::optional<std::string> group = std::nullopt) {
    return test::asFound({.id = id,
                          .size = size,
                          .title = "Kayıtlar",
                          .fileCount = 1,
                          .children = {{.name = "inner", .size = 1, .isDirectory = true}},
                          .groupKey = std::move(group)});
}

std::vector<Finding> merged(std::vector<Finding> findings) {
    return mergeGroups(std::move(findings));
}

TEST(MergeGroups, NothingStaysNothing) {
    EXPECT_THAT(merged({}), IsEmpty());
}

TEST(MergeGroups, LeavesFindingsWithoutAGroupAsTheyAre) {
    const auto result = merged({finding("/a", 2), finding("/b", 3), finding("/a2", 1)});
    EXPECT_THAT(ids(result), ElementsAre("/a", "/b", "/a2")) << "in the order in which they came";
    EXPECT_EQ(result[0].children, finding("/a", 2).children);
    EXPECT_EQ(result[0].title, "Kayıtlar");
}

TEST(MergeGroups, FoldsLaterMembersIntoTheFirst) {
    const auto result = merged(
        {finding("/x/a", 10, "g"), finding("/y", 1), finding("/x/b", 30, "g"), finding("/x/c", 20, "g")});
    ASSERT_THAT(ids(result), ElementsAre("/x/a", "/y"));
    const Finding& group = result.front();
    EXPECT_THAT(group.urls, ElementsAre("/x/a", "/x/b", "/x/c"));
    EXPECT_EQ(group.size, 60);
    EXPECT_EQ(group.fileCount, 3);
    EXPECT_EQ(group.title, "Kayıtlar (3 öğe)");
    EXPECT_EQ(group.original.title, "Kayıtlar (3 öğe)");
    EXPECT_EQ(currentVerdict(group), group.original);
    EXPECT_THAT(group.children,
                ElementsAre(ChildSummary{.name = "b", .size = 30}, ChildSummary{.name = "c", .size = 20},
                            ChildSummary{.name = "a", .size = 10}));
}

TEST(MergeGroups, MembersOfOneSizeKeepTheirOrder) {
    const auto result = merged({finding("/b", 1, "g"), finding("/a", 1, "g"), finding("/c", 1, "g")});
    ASSERT_EQ(result.size(), 1U);
    EXPECT_THAT(result[0].children,
                ElementsAre(ChildSummary{.name = "b", .size = 1}, ChildSummary{.name = "a", .size = 1},
                            ChildSummary{.name = "c", .size = 1}));
}

TEST(MergeGroups, AGroupOfOneIsItsOwnOnlyChildAndHasNoNumber) {
    const auto result = merged({finding("/x/a", 10, "g")});
    ASSERT_EQ(result.size(), 1U);
    EXPECT_EQ(result[0].title, "Kayıtlar");
    EXPECT_THAT(result[0].children, ElementsAre(ChildSummary{.name = "a", .size = 10, .isDirectory = false}));
}

TEST(MergeGroups, KeepsGroupsApart) {
    const auto result =
        merged({finding("/x/a", 1, "/x|g"), finding("/y/a", 1, "/y|g"), finding("/x/b", 1, "/x|g"),
                finding("/x/c", 1, "/x|h"), finding("/d", 1, "")});
    EXPECT_THAT(ids(result), ElementsAre("/x/a", "/y/a", "/x/c", "/d"));
    EXPECT_THAT(result[0].urls, ElementsAre("/x/a", "/x/b"));
}

TEST(MergeGroups, AnEmptyKeyIsAKey) {
    EXPECT_THAT(ids(merged({finding("/a", 1, ""), finding("/b", 1, "")})), ElementsAre("/a"));
}

TEST(MergeGroups, HasTheLatestDateOfItsMembers) {
    const auto dated = [](std::optional<FileTime> first, std::optional<FileTime> second) {
        std::vector<Finding> findings = {finding("/a", 1, "g"), finding("/b", 1, "g")};
        findings[0].modified = first;
        findings[1].modified = second;
        return mergeGroups(std::move(findings)).front().modified;
    };
    EXPECT_EQ(dated(early, late), late);
    EXPECT_EQ(dated(late, early), late);
    EXPECT_EQ(dated(std::nullopt, early), early);
    EXPECT_EQ(dated(early, std::nullopt), early) << "an absent date changes nothing";
    EXPECT_EQ(dated(std::nullopt, std::nullopt), std::nullopt);
    EXPECT_EQ(dated(std::nullopt, FileTime::min()), FileTime::min()) << "and is earlier than any";
}

TEST(MergeGroups, TheFirstMemberGivesAllOtherFields) {
    std::vector<Finding> findings = {finding("/a", 1, "g"), finding("/b", 9, "g")};
    findings[0].parentPath = "/";
    findings[0].quitApps = {"A"};
    findings[0].siblings = {{.name = "s"}};
    findings[1].quitApps = {"B"};
    findings[1].level = SafetyLevel::keep;
    const auto result = merged(findings);
    EXPECT_EQ(result[0].parentPath, "/");
    EXPECT_THAT(result[0].quitApps, ElementsAre("A"));
    EXPECT_EQ(result[0].siblings, findings[0].siblings);
    EXPECT_EQ(result[0].level, SafetyLevel::unknown);
    EXPECT_EQ(result[0].groupKey, "g");
}

TEST(MergeGroups, HasAllMembersAsChildrenHoweverMany) {
    std::vector<Finding> findings;
    for (int i = 0; i < 500; ++i)
        findings.push_back(finding("/" + std::to_string(i), i, "g"));
    const auto result = merged(findings);
    EXPECT_EQ(result[0].children.size(), 500U);
    EXPECT_EQ(result[0].title, "Kayıtlar (500 öğe)");
}

LinkedFile linkedFile(std::uint64_t number, std::int64_t size, std::uint16_t names) {
    return {.number = number, .size = size, .volume = 1, .names = names, .seen = 1};
}

TEST(MergeGroups, NamesOfOneFileCountTheirBytesOnce) {
    std::vector<Finding> findings;
    LinkedFindings linked;
    for (const char* id : {"/x/a", "/x/b", "/x/c"}) {
        findings.push_back(finding(id, 100, "g"));
        findings.back().heldElsewhere = 100;
        linked.emplace(id, linkedFile(7, 100, 4));
    }
    findings.push_back(finding("/x/other", 30, "g"));
    Finding group = mergeGroups(findings, linked).front();
    EXPECT_EQ(group.size, 130);
    EXPECT_EQ(group.heldElsewhere, 100) << "a fourth name lies somewhere else";
    EXPECT_EQ(group.urls.size(), 4U);
    EXPECT_EQ(group.children.front().size, 100) << "each name leads to all of it";

    for (auto& [id, file] : linked)
        file.names = 3;
    group = mergeGroups(findings, linked).front();
    EXPECT_EQ(group.size, 130);
    EXPECT_EQ(group.heldElsewhere, 0) << "all names go together";
    EXPECT_EQ(bytesFreed(group), 130);
}

TEST(MergeGroups, SeveralFilesWithSeveralNamesAreToldApart) {
    std::vector<Finding> findings;
    LinkedFindings linked;
    for (const auto& [id, number] : {std::pair("/x/a", 1U), std::pair("/x/b", 2U), std::pair("/x/c", 1U)}) {
        findings.push_back(finding(id, 100, "g"));
        findings.back().heldElsewhere = 100;
        linked.emplace(id, linkedFile(number, 100, 2));
    }
    const Finding group = mergeGroups(findings, linked).front();
    EXPECT_EQ(group.size, 200);
    EXPECT_EQ(group.heldElsewhere, 100) << "of b";
}

}  // namespace
}  // namespace ulvak
