#include "scan/tree_walk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <random>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "scan/disk_walker.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::TempTree;
using test::TreeEntry;

/// A random tree: wide and flat in some places, deep in others.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random_(seed) {}

    std::vector<TreeEntry> entries(int depth, const std::string& above = "") {
        std::vector<TreeEntry> result;
        const int count = number(0, depth == 0 ? 12 : 6);
        for (int i = 0; i < count; ++i) {
            const std::string name = "n" + std::to_string(number(0, 999'999)) + "-" + std::to_string(i);
            const int kind = number(0, 11);
            if (kind < 4 && depth < 7)
                result.push_back(
                    test::folder(name + (kind == 0 ? ".bundle" : ""),
                                 entries(depth + 1, above + name + (kind == 0 ? ".bundle/" : "/")))
                        .modifiedAt(date()));
            else if (kind == 9)
                result.push_back(test::link(name, ".."));
            else if (kind > 9 && !files_.empty())
                result.push_back(test::hardLink(
                    name, files_[static_cast<std::size_t>(number(0, static_cast<int>(files_.size()) - 1))]));
            else
                result.push_back(file(name, above));
        }
        return result;
    }

private:
    int number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
    FileTime date() { return FileTime(std::chrono::seconds(number(1'000'000'000, 1'700'000'000))); }

    TreeEntry file(const std::string& name, const std::string& above) {
        files_.push_back(above + name);
        return test::file(name, std::int64_t{4096} * number(0, 3)).modifiedAt(date());
    }

    std::mt19937 random_;
    std::vector<std::string> files_;  ///< created before the current entry
};

/// A file below a folder, by its number: its size, the names seen, and its link count.
struct PlainFile {
    std::int64_t size = 0;
    std::uint64_t seen = 0;
    std::uint64_t names = 0;
};
using PlainFiles = std::map<ino_t, PlainFile>;

std::int64_t sizeOf(const PlainFiles& files) {
    std::int64_t sum = 0;
    for (const auto& [number, file] : files)
        sum += file.size;
    return sum;
}

std::int64_t heldElsewhere(const PlainFiles& files) {
    std::int64_t sum = 0;
    for (const auto& [number, file] : files)
        sum += file.seen < file.names ? file.size : 0;
    return sum;
}

/// The walk in its simplest form, regardless of speed.
DirNode plainWalk(const std::string& path, std::string url, std::optional<FileTime> date,
                  std::int64_t keepThreshold, PlainFiles& around) {
    PlainFiles all;
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
            folders.push_back(plainWalk(entry.path(), name, test::modifiedOf(info), keepThreshold, all));
            continue;
        }
        PlainFile& file = all[info.st_ino];
        file = {.size = info.st_blocks * 512, .seen = file.seen + 1, .names = info.st_nlink};
        files.push_back({.url = name,
                         .size = info.st_blocks * 512,
                         .fileCount = 1,
                         .heldElsewhere = info.st_nlink > 1 ? info.st_blocks * 512 : 0,
                         .modified = test::modifiedOf(info)});
    }
    for (std::vector<DirNode>* kind : {&folders, &files}) {
        for (DirNode& child : *kind) {
            node.fileCount += child.fileCount;
            node.modified = std::max(node.modified, child.modified);
            if (child.size >= keepThreshold)
                node.children.push_back(std::move(child));
        }
    }
    std::ranges::stable_sort(node.children, std::ranges::greater(), &DirNode::size);
    node.size = sizeOf(all);
    node.heldElsewhere = heldElsewhere(all);
    for (const auto& [number, file] : all) {
        PlainFile& known = around[number];
        known = {.size = file.size, .seen = known.seen + file.seen, .names = file.names};
    }
    return node;
}

std::vector<TreeWalk::Root> rootsAt(const std::vector<std::string>& paths) {
    std::vector<TreeWalk::Root> roots;
    for (const std::string& path : paths)
        roots.push_back({.path = path, .skips = {}});
    return roots;
}

std::vector<TreeWalk::Root> rootAt(const std::string& path) {
    return rootsAt({path});
}

std::string described(const DirNode& node, int depth = 0) {
    std::string text(static_cast<std::size_t>(depth) * 2, ' ');
    text += node.url + (node.isDirectory ? "/" : "") + (node.isPackage ? " package" : "") + " " +
            std::to_string(node.size) + " " + std::to_string(node.fileCount) + " " +
            std::to_string(node.heldElsewhere) + " " +
            (node.modified ? std::to_string(node.modified->time_since_epoch().count()) : "-") + "\n";
    for (const DirNode& child : node.children)
        text += described(child, depth + 1);
    return text;
}

TEST(TreeWalk, YieldsWhatAPlainWalkYieldsWithAnyNumberOfWorkers) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const TempTree tree(RandomTree(seed).entries(0));
        for (const std::int64_t keepThreshold : {0, 8192, 40'000}) {
            PlainFiles all;
            const std::string expected =
                described(plainWalk(tree.path(), tree.path(), std::nullopt, keepThreshold, all));
            for (const unsigned workers : {1U, 2U, 3U, 8U}) {
                ScanProgress progress;
                TreeWalk walk(rootAt(tree.path()), {.keepThreshold = keepThreshold, .workers = workers},
                              progress, {});
                const std::vector<DirNode> nodes = walk.run();
                ASSERT_EQ(nodes.size(), 1U);
                ASSERT_EQ(described(nodes.front()), expected) << "seed " << seed << ", workers " << workers;
                ASSERT_EQ(progress.bytes(), sizeOf(all)) << "seed " << seed << ", workers " << workers;
            }
        }
    }
}

TEST(TreeWalk, CountsNamesInSeveralRootsOnceInTheWholeScanWithAnyNumberOfWorkers) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        RandomTree random(seed);
        std::vector<TreeEntry> entries;
        for (const char* name : {"a", "b", "c"})
            entries.push_back(test::folder(name, random.entries(1, std::string(name) + "/")));
        const TempTree tree(entries);
        const std::vector<std::string> paths = {tree.path("a"), tree.path("b"), tree.path("c")};
        PlainFiles all;
        std::string expected;
        for (const std::string& path : paths)
            expected += described(plainWalk(path, path, std::nullopt, 8192, all));
        for (const unsigned workers : {1U, 2U, 8U}) {
            ScanProgress progress;
            std::string found;
            TreeWalk walk(rootsAt(paths), {.keepThreshold = 8192, .workers = workers}, progress, {});
            for (const DirNode& node : walk.run())
                found += described(node);
            ASSERT_EQ(found, expected) << "seed " << seed << ", workers " << workers;
            ASSERT_EQ(progress.bytes(), sizeOf(all)) << "seed " << seed << ", workers " << workers;
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

/// A folder with so many entries that it is listed in several pieces: folders, files of every size, and
/// second names, both of each other and of a file elsewhere.
TreeEntry largeFolder(int entries) {
    std::vector<TreeEntry> large;
    for (int i = 0; i < entries; ++i) {
        const std::string name = "a name that fills the listing " + std::to_string(i);
        if (i % 500 == 3)
            large.push_back(test::folder(name, {test::file("x", std::int64_t{4096} * (i % 3))}));
        else if (i % 500 == 4)
            large.push_back(test::hardLink(name, "elsewhere"));
        else if (i % 500 == 5)
            large.push_back(test::hardLink(name, "large/a name that fills the listing 0"));
        else
            large.push_back(test::file(name, i % 50 == 0 ? std::int64_t{4096} * (i % 7 + 1) : 0));
    }
    return test::folder("large", std::move(large));
}

TEST(TreeWalk, WorkersShareTheListingOfOneLargeFolder) {
    const TempTree tree({test::file("elsewhere", 8192), largeFolder(8000)});
    for (const std::int64_t keepThreshold : {1, 12'000}) {
        PlainFiles all;
        const std::string expected =
            described(plainWalk(tree.path(), tree.path(), std::nullopt, keepThreshold, all));
        for (int round = 0; round < 10; ++round) {
            for (const unsigned workers : {1U, 2U, 8U}) {
                ScanProgress progress;
                TreeWalk walk(rootAt(tree.path()), {.keepThreshold = keepThreshold, .workers = workers},
                              progress, {});
                const std::vector<DirNode> nodes = walk.run();
                ASSERT_EQ(described(nodes.front()), expected) << "workers " << workers;
                ASSERT_EQ(progress.bytes(), sizeOf(all)) << "workers " << workers;
                ASSERT_EQ(progress.files(), nodes.front().fileCount) << "workers " << workers;
            }
        }
    }
}

TEST(TreeWalk, CountsWhatStaysInALargeFolderWhoseFilesComeAndGo) {
    const TempTree tree({test::file("elsewhere", 8192), largeFolder(6000)});
    const std::string folder = tree.path("large") + "/";
    const std::jthread changer([&](const std::stop_token& stop) {
        for (int i = 0; !stop.stop_requested(); i = (i + 1) % 1000) {
            const std::string name = folder + "comes and goes " + std::to_string(i);
            if (::mkdir(name.c_str(), 0755) != 0)
                ::rmdir(name.c_str());
        }
    });
    for (int round = 0; round < 20; ++round) {
        ScanProgress progress;
        TreeWalk walk(rootAt(tree.path()), {.keepThreshold = 1, .workers = 4}, progress, {});
        const std::vector<DirNode> nodes = walk.run();
        // 5988 files in it, one in each of its 12 folders, and the one elsewhere.
        ASSERT_EQ(nodes.front().fileCount, 6001) << round;
        ASSERT_EQ(progress.files(), 6001) << round;
    }
}

TEST(TreeWalk, EntersNoMountInALargeFolder) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({test::file("elsewhere", 8192), largeFolder(6000)});
    test::withPrivateMounts([&] {
        for (const int number : {503, 5503})
            ASSERT_TRUE(test::mountMemory(tree.path("large/a name that fills the listing ") +
                                          std::to_string(number)));
        for (int round = 0; round < 5; ++round) {
            ScanProgress progress;
            TreeWalk walk(rootAt(tree.path()), {.keepThreshold = 1, .workers = 4}, progress, {});
            EXPECT_EQ(walk.run().front().fileCount, 5999);
            EXPECT_EQ(progress.denied(), 0);
        }
    });
}

TEST(TreeWalk, AStopInALargeFolderLeavesWhatWasCounted) {
    const TempTree tree({test::file("elsewhere", 8192), largeFolder(6000)});
    for (int round = 0; round < 20; ++round) {
        ScanProgress progress;
        std::stop_source source;
        TreeWalk walk(rootAt(tree.path()), {.workers = 4}, progress, source.get_token());
        const std::jthread stopper([&] {
            for (int pause = 0; pause < round * 20'000; ++pause)
                std::atomic_signal_fence(std::memory_order_seq_cst);
            source.request_stop();
        });
        const std::vector<DirNode> nodes = walk.run();
        ASSERT_EQ(nodes.size(), 1U);
        ASSERT_EQ(nodes.front().fileCount, progress.files());
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
