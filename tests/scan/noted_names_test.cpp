#include "scan/noted_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scan/disk_walker.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::link;
using test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

/// Which of the names an entry counts as, in their order.
std::vector<std::string> matches(const std::vector<std::string>& names, const std::string& entry) {
    NotedNames::Set seen;
    NotedNames(names).note(entry, seen);
    std::vector<std::string> result;
    for (const NotedNames::Id id : NotedNames::ids(seen))
        result.push_back(names.at(id));
    return result;
}

TEST(NotedNames, ANameIsMetAsItIsSpelled) {
    EXPECT_THAT(matches({"Cargo.toml", "cur"}, "Cargo.toml"), ElementsAre("Cargo.toml"));
    EXPECT_THAT(matches({"Cargo.toml", "cur"}, "cargo.toml"), IsEmpty());
    EXPECT_THAT(matches({"Cargo.toml", "cur"}, "Cargo.tom"), IsEmpty());
    EXPECT_THAT(matches({"Cargo.toml", "cur"}, "xCargo.toml"), IsEmpty());
    EXPECT_THAT(matches({"cur"}, ""), IsEmpty());
}

TEST(NotedNames, APatternMayBeginEndOrSplitWithAStar) {
    const std::vector<std::string> names = {"*.acf", "run-*", "requirements*.txt", "*"};
    EXPECT_THAT(matches(names, "appmanifest_7.acf"), ElementsAre("*.acf"));
    EXPECT_THAT(matches(names, "run-"), ElementsAre("run-*"));
    EXPECT_THAT(matches(names, "requirements-dev.txt"), ElementsAre("requirements*.txt"));
    EXPECT_THAT(matches(names, "x.txt"), IsEmpty());
    EXPECT_THAT(matches({"ab*ba"}, "aba"), IsEmpty()) << "the two ends do not overlap";
    EXPECT_THAT(matches({"v[0-9]*"}, "v12"), ElementsAre("v[0-9]*"));
    EXPECT_THAT(matches({"v[0-9]*"}, "va"), IsEmpty());
}

TEST(NotedNames, AnEntryMayCountAsSeveral) {
    EXPECT_THAT(matches({"*.json", "package.json", "p*"}, "package.json"),
                ElementsAre("*.json", "package.json", "p*"));
}

TEST(NotedNames, AnEntryNamedLikeAPatternIsNotThePattern) {
    EXPECT_THAT(matches({"a*b"}, "a*b"), ElementsAre("a*b"));
    EXPECT_THAT(matches({"a*bc*d"}, "a*"), IsEmpty());
}

TEST(NotedNames, WhatCannotBeNotedIsSaid) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < NotedNames::maxNames; ++i)
        names.push_back("n" + std::to_string(i));
    EXPECT_TRUE(NotedNames(names).isWhole());
    EXPECT_EQ(NotedNames(names).find("n511"), std::optional<NotedNames::Id>(511));
    names.emplace_back("one more");
    EXPECT_FALSE(NotedNames(names).isWhole());
    EXPECT_EQ(NotedNames(names).find("one more"), std::nullopt);

    const NotedNames open({"*a*"});
    EXPECT_FALSE(open.isWhole());
    EXPECT_EQ(open.find("*a*"), std::nullopt);
}

TEST(NotedNames, AreNotedByTheWalkInTheFolderThatHoldsThem) {
    const NotedNames names({"*.acf", "cur", "package.json", "tag"});
    const TempTree tree(
        {folder("p", {file("package.json", 10), link("cur", "nowhere"), folder("inner", {file("tag", 1)})})});
    ScanProgress progress;
    const DiskWalker walker{.progress = progress, .keepThreshold = 0, .noted = &names};
    const auto root = walker.node(tree.path());
    ASSERT_TRUE(root);
    EXPECT_THAT(root->noted, IsEmpty());
    const DirNode& project = root->children.front();
    EXPECT_THAT(project.noted, ElementsAre(1, 2));
    ASSERT_EQ(project.children.front().url, "inner");
    EXPECT_THAT(project.children.front().noted, ElementsAre(3));
}

TEST(NotedNames, AreNotedWhoeverListsAPieceOfAHugeFolder) {
    constexpr int count = 20'000;
    const NotedNames names({"n3", "n19999", "absent", "*7"});
    TempTree tree;
    for (int i = 0; i < count; ++i)
        tree.add({file("n" + std::to_string(i), 0)});
    ScanProgress progress;
    const DiskWalker walker{.progress = progress, .keepThreshold = 0, .noted = &names};
    const auto root = walker.node(tree.path());
    ASSERT_TRUE(root);
    EXPECT_THAT(root->noted, ElementsAre(0, 1, 3));
}

}  // namespace
}  // namespace ulvak
