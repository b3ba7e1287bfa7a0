#include "scan/tree_walk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <random>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "scan/disk_walker.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::TempTree;
using test::TreeEntry;

/// A tree that random numbers grow: wide and flat in some places, deep in others.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random_(seed) {}

    std::vector<TreeEntry> entries(int depth) {
        std::vector<TreeEntry> result;
        const int count = number(0, depth == 0 ? 12 : 6);
        for (int i = 0; i < count; ++i) {
            const std::string name = "n" + std::to_string(number(0, 999'999)) + "-" + std::to_string(i);
            const int kind = number(0, 9);
            if (kind < 4 && depth < 7)
                result.push_back(
                    test::folder(name + (kind == 0 ? ".bundle" : ""), entries(depth + 1)).modifiedAt(date()));
            else if (kind == 9)
                result.push_back(test::link(name, ".."));
            else
                result.push_back(test::file(name, std::int64_t{4096} * number(0, 3)).modifiedAt(date()));
        }
        return result;
    }

private:
    int number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
    FileTime date() { return FileTime(std::chrono::seconds(number(1'000'000'000, 1'700'000'000))); }

    std::mt19937 random_;
};

/// The walk as it would be written if there were all the time in the world.
DirNode plainWalk(const std::string& path, std::string url, std::optional<FileTime> date,
                  std::int64_t keepThreshold) {
    DirNode node{
        .url = std::move(url), .isDirectory = true, .isPackage = path.ends_with(".bundle"), .modified = date};
    std::vector<DirNode> folders;
    std::vector<DirNode> files;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        struct stat info{};
        if (::lstat(entry.path().c_str(), &info) != 0 || S_ISLNK(info.st_mode))
            continue;
        const std::string name = entry.path().filename();
        if (S_ISDIR(info.st_mode)) {
            folders.push_back(plainWalk(entry.path(), name, test::modifiedOf(info), keepThreshold));
            continue;
        }
        files.push_back(
            {.url = name, .size = info.st_blocks * 512, .fileCount = 1, .modified = test::modifiedOf(info)});
    }
    for (std::vector<DirNode>* kind : {&folders, &files}) {
        for (DirNode& child : *kind) {
            node.size += child.size;
            node.fileCount += child.fileCount;
            node.modified = std::max(node.modified, child.modified);
            if (child.size >= keepThreshold)
                node.children.push_back(std::move(child));
        }
    }
    std::ranges::stable_sort(node.children, std::ranges::greater(), &DirNode::size);
    return node;
}

std::vector<TreeWalk::Root> rootAt(const std::string& path) {
    std::vector<TreeWalk::Root> roots;
    roots.push_back({.path = path, .skips = {}});
    return roots;
}

std::string described(const DirNode& node, int depth = 0) {
    std::string text(static_cast<std::size_t>(depth) * 2, ' ');
    text += node.url + (node.isDirectory ? "/" : "") + (node.isPackage ? " package" : "") + " " +
            std::to_string(node.size) + " " + std::to_string(node.fileCount) + " " +
            (node.modified ? std::to_string(node.modified->time_since_epoch().count()) : "-") + "\n";
    for (const DirNode& child : node.children)
        text += described(child, depth + 1);
    return text;
}

TEST(TreeWalk, YieldsWhatAPlainWalkYieldsWithAnyNumberOfWorkers) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const TempTree tree(RandomTree(seed).entries(0));
        for (const std::int64_t keepThreshold : {0, 8192, 40'000}) {
            const std::string expected =
                described(plainWalk(tree.path(), tree.path(), std::nullopt, keepThreshold));
            for (const unsigned workers : {1U, 2U, 3U, 8U}) {
                ScanProgress progress;
                TreeWalk walk(rootAt(tree.path()), {.keepThreshold = keepThreshold, .workers = workers},
                              progress, {});
                const std::vector<DirNode> nodes = walk.run();
                ASSERT_EQ(nodes.size(), 1U);
                ASSERT_EQ(described(nodes.front()), expected) << "seed " << seed << ", workers " << workers;
            }
        }
    }
}

TEST(TreeWalk, OfNothingIsNothing) {
    ScanProgress progress;
    EXPECT_TRUE(TreeWalk({}, {.workers = 2}, progress, {}).run().empty());
}

TEST(TreeWalk, WorkersShareOneFolderThatHoldsEverything) {
    TempTree tree;
    std::vector<TreeEntry> many;
    for (int i = 0; i < 3000; ++i)
        many.push_back(test::folder("p" + std::to_string(i),
                                    {test::file("x", 0), test::folder("y", {test::file("z", 0)})}));
    tree.add({test::folder("a", {test::folder("b", {test::folder("c", many)})})});
    for (int round = 0; round < 20; ++round) {
        ScanProgress progress;
        TreeWalk walk(rootAt(tree.path()), {.keepThreshold = 1, .workers = 4}, progress, {});
        ASSERT_EQ(walk.run().front().fileCount, 6000);
        ASSERT_EQ(progress.files(), 6000);
    }
}

TEST(TreeWalk, StoppingEndsAWalkUnderWay) {
    TempTree tree;
    std::vector<TreeEntry> many;
    for (int i = 0; i < 2000; ++i)
        many.push_back(test::folder("p" + std::to_string(i), {test::file("x", 0)}));
    tree.add(many);
    int stoppedMidway = 0;
    for (int round = 0; round < 20; ++round) {
        ScanProgress progress;
        std::stop_source source;
        const std::jthread stopper([&](const std::stop_token& gone) {
            while (progress.files() < 10 * round && !gone.stop_requested()) {
            }
            source.request_stop();
        });
        TreeWalk walk(rootAt(tree.path()), {.workers = 2}, progress, source.get_token());
        const std::vector<DirNode> nodes = walk.run();
        ASSERT_EQ(nodes.size(), 1U);
        EXPECT_EQ(nodes.front().fileCount, progress.files()) << "what was counted is what is in the tree";
        stoppedMidway += nodes.front().fileCount < 2000 ? 1 : 0;
    }
    EXPECT_GT(stoppedMidway, 0);
}

}  // namespace
}  // namespace ulvak
