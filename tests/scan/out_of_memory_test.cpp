#include <gtest/gtest.h>
#include <sys/resource.h>

#include <fstream>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "scan/tree_walk.h"
#include "support/failing_allocation.h"
#include "support/isolation.h"
#include "support/temp_tree.h"
#include "survey/scanner.h"

namespace ulvak {
namespace {

using test::FailingAllocation;
using test::file;
using test::folder;
using test::hardLink;
using test::inChild;
using test::TempTree;
using test::TreeEntry;

/// Some of everything that takes memory: kept folders and files, several names, levels.
std::vector<TreeEntry> treeOfEverything() {
    std::vector<TreeEntry> entries = {folder("first", {file("x", 8192)})};
    for (int i = 0; i < 12; ++i) {
        std::vector<TreeEntry> inside = {
            folder("deep", {folder("deeper", {file("a name that is stored apart", 4096)})}),
            folder("other", {hardLink("x", "first/x"), file("y", 8192)})};
        for (int j = 0; j < i; ++j)
            inside.push_back(file("a file with a name of its own " + std::to_string(j), 4096));
        entries.push_back(folder("a folder with a long name " + std::to_string(i), inside));
    }
    // Large enough for several workers to share.
    std::vector<TreeEntry> large = {folder("in it", {file("x", 4096)}), hardLink("y", "first/x")};
    for (int i = 0; i < 900; ++i)
        large.push_back(file(std::string(200, 'n') + std::to_string(i), i % 300 == 0 ? 4096 : 0));
    entries.push_back(folder("large", large));
    return entries;
}

/// The number of files counted; empty if memory ran out.
std::optional<std::int64_t> filesIn(const std::string& path, unsigned workers) {
    ScanProgress progress;
    std::vector<TreeWalk::Root> roots;
    try {
        roots.push_back({.path = path, .skips = {}});
        TreeWalk walk(std::move(roots), {.keepThreshold = 4096, .workers = workers}, progress, {});
        return walk.run().front().fileCount;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

class EveryAllocation : public testing::TestWithParam<std::pair<FailingAllocation::Which, unsigned>> {};

TEST_P(EveryAllocation, OfAWalkMayFailAndTheWalkEnds) {
    const auto [which, workers] = GetParam();
    const TempTree tree(treeOfEverything());
    const std::int64_t expected = filesIn(tree.path(), 1).value();
    int ended = 0;
    for (std::int64_t number = 0;; ++number) {
        FailingAllocation failing(number, which);
        const auto files = filesIn(tree.path(), workers);
        failing.stop();
        ended += files ? 0 : 1;
        ASSERT_EQ(files.value_or(expected), expected) << "what ends well has counted everything: " << number;
        if (!failing.hasFailed())
            break;
    }
    EXPECT_GT(ended, 50);
}

INSTANTIATE_TEST_SUITE_P(Walk, EveryAllocation,
                         testing::Values(std::pair(FailingAllocation::Which::one, 1U),
                                         std::pair(FailingAllocation::Which::one, 4U),
                                         std::pair(FailingAllocation::Which::andAllAfter, 1U),
                                         std::pair(FailingAllocation::Which::andAllAfter, 4U)));

TEST(OutOfMemory, EndsAScanWithAnErrorWhereverItHappens) {
    const TempTree tree(
        {folder(".npm", {folder("a", {file("x", 60'000'000)}), folder("b", {file("y", 60'000'000)})}),
         folder("Documents", {file("x", 400'000'000)})});
    const UserFolders folders{
        .home = tree.path(), .temp = tree.path("missing"), .cache = tree.path("C"), .trash = {}};
    inChild([&] {
        ScanProgress first;
        ASSERT_EQ((Scanner{first, folders}.run().value().size()), 2U);
        int ended = 0;
        for (std::int64_t number = 0;; number += 1 + number / 64) {
            ScanProgress progress;
            FailingAllocation failing(number, FailingAllocation::Which::andAllAfter);
            const auto findings = Scanner{progress, folders}.run();
            failing.stop();
            ended += findings ? 0 : 1;
            ASSERT_EQ(findings ? findings->size() : 2U, 2U);
            if (!failing.hasFailed())
                break;
        }
        EXPECT_GT(ended, 20);
    });
}

}  // namespace
}  // namespace ulvak
