// Trees deeper than any path length, stack or handle limit.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "scan/disk_walker.h"
#include "scan/tree_walk.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"
#include "survey/scanner.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::inChild;
using test::TempTree;

/// On a disk, removing a folder may take a millisecond.
class InMemory {
public:
    InMemory()
        : environment_(
              {{"TMPDIR", ::access("/dev/shm", W_OK | X_OK) == 0 ? std::optional<std::string>("/dev/shm")
                                                                 : std::nullopt}}) {}

private:
    test::ScopedEnvironment environment_;
};

constexpr int levels = 100'000;
constexpr std::int64_t bigFile = 400'000'000;

void allowHandles(rlim_t most) {
    const rlimit limit{.rlim_cur = most, .rlim_max = most};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

/// The depth of a chain of only children.
int depthOf(const DirNode& root) {
    int depth = 0;
    for (const DirNode* node = &root; !node->children.empty(); node = &node->children.front())
        ++depth;
    return depth;
}

/// KiB
long peakMemory() {
    rusage usage{};
    EXPECT_EQ(::getrusage(RUSAGE_SELF, &usage), 0);
    return usage.ru_maxrss;
}

// Anything quadratic in the depth would take hours here, or a terabyte.

TEST(DeepTree, IsKeptToTheBottomAndScannedWithFewHandlesAndLittleMemory) {
    const InMemory memory;
    const std::string name(200, 'n');
    TempTree tree;
    tree.addChain(name, levels, {file("bottom", bigFile)});
    const UserFolders folders{
        .home = tree.path(), .temp = tree.path("missing"), .cache = tree.path("C"), .trash = {}};
    inChild([&] {
        allowHandles(16);
        ScanProgress progress;
        const auto findings = Scanner{progress, folders}.run();
        ASSERT_TRUE(findings);
        ASSERT_EQ(findings->size(), 1U);
        EXPECT_GE(findings->front().size, bigFile);
        EXPECT_LT(findings->front().id.size(), std::size_t{PATH_MAX}) << "it can be shown and cleaned";
        EXPECT_LT(peakMemory(), 1'000'000);
    });
    ScanProgress progress;
    const auto root = DiskWalker{.progress = progress}.node(tree.path());
    ASSERT_TRUE(root);
    EXPECT_EQ(depthOf(*root), levels + 1);
    EXPECT_EQ(progress.denied(), 0);
}

TEST(DeepTree, WithAFolderBesideEachLevelIsWalkedWithFewHandles) {
    const InMemory memory;
    TempTree tree;
    tree.addChain("m", levels, {}, {folder("z")});
    inChild([&] {
        allowHandles(16);
        ScanProgress progress;
        ASSERT_TRUE(DiskWalker{.progress = progress}.node(tree.path()));
        EXPECT_EQ(progress.denied(), 0) << "each has been opened";
        EXPECT_LT(peakMemory(), 1'000'000);
    });
}

TEST(DeepTree, LeadsNowhereElseWhenItsFoldersAreMovedMeanwhile) {
    constexpr int chain = 40;
    constexpr int canaries = 50;
    std::vector<test::TreeEntry> many;
    for (int i = 0; i < canaries; ++i)
        many.push_back(file(std::to_string(i)));
    TempTree tree({folder("root"), folder("outside", {folder("z", {folder("y", many)})})});
    std::string deep = "root";
    for (int i = 0; i < chain; ++i) {
        tree.add(deep, {folder("m"), folder("z", {folder("y", {file("f")})})});
        deep += "/m";
    }
    inChild([&] {
        allowHandles(16);
        // While a folder is moved out, ".." from below leads to a folder with the very name that comes next.
        const std::jthread mover([&](const std::stop_token& stop) {
            for (int i = 0; !stop.stop_requested(); i = (i + 1) % (chain - 8)) {
                std::string moved = tree.path("root/m/m/m/m");
                for (int level = 0; level < i; ++level)
                    moved += "/m";
                const std::string out = tree.path("outside/m");
                if (std::rename(moved.c_str(), out.c_str()) == 0)
                    (void)std::rename(out.c_str(), moved.c_str());
            }
        });
        for (int round = 0; round < 500; ++round) {
            ScanProgress progress;
            const auto root = DiskWalker{.progress = progress}.node(tree.path("root"));
            ASSERT_TRUE(root);
            ASSERT_LE(root->fileCount, chain) << "round " << round;
        }
    });
}

}  // namespace
}  // namespace ulvak
