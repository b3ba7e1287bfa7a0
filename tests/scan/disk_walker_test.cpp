#include "scan/disk_walker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "platform/directory.h"
#include "platform/files.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using namespace std::chrono_literals;
using test::asUnprivileged;
using test::fifo;
using test::file;
using test::folder;
using test::hardLink;
using test::inChild;
using test::link;
using test::socket;
using test::sparseFile;
using test::TempTree;
using test::TreeEntry;

const FileTime old = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
const FileTime recent = std::chrono::sys_days(std::chrono::year(2020) / 6 / 1);

/// A walk and the counters it reported to.
struct Walk {
    ScanProgress progress;
    DiskWalker walker{.progress = progress, .keepThreshold = 0};

    [[nodiscard]] DirNode root(const std::string& path, std::stop_token stop = {}) const {
        auto node = walker.node(path, std::move(stop));
        EXPECT_TRUE(node.has_value());
        return node ? std::move(*node) : DirNode();
    }
};

std::vector<std::string> names(const DirNode& node) {
    std::vector<std::string> result;
    std::ranges::transform(node.children, std::back_inserter(result), &DirNode::url);
    return result;
}

const DirNode& child(const DirNode& node, std::string_view name) {
    static const DirNode none;
    const auto found = std::ranges::find(node.children, name, &DirNode::url);
    EXPECT_NE(found, node.children.end()) << name;
    return found == node.children.end() ? none : *found;
}

TEST(DiskWalker, KeepsAFileOfExactlyTheThresholdAndOnlyCountsASmallerOne) {
    const TempTree tree({file("big", 50'000'000), file("one-block-less", 49'000'000)});
    Walk walk;
    walk.walker.keepThreshold = tree.allocated("big");
    const DirNode root = walk.root(tree.path());
    EXPECT_THAT(names(root), testing::ElementsAre("big"));
    EXPECT_EQ(root.size, tree.allocated("big") + tree.allocated("one-block-less"));
    EXPECT_EQ(root.fileCount, 2);

    Walk stricter;
    stricter.walker.keepThreshold = tree.allocated("big") + 1;
    EXPECT_TRUE(stricter.root(tree.path()).children.empty());
}

TEST(DiskWalker, FolderWithOnlyALinkToAHugeFolderIsEmpty) {
    const TempTree tree(
        {folder("huge", {file("data", 10'000'000)}), folder("links", {link("to", "../huge")})});
    const DirNode root = Walk().root(tree.path());
    EXPECT_EQ(child(root, "links").size, 0);
    EXPECT_EQ(child(root, "links").fileCount, 0);
    EXPECT_EQ(root.fileCount, 1);
}

TEST(DiskWalker, LinkLoopsEnd) {
    const TempTree tree(
        {folder("a", {link("up", ".."), link("self", "self"), folder("b", {link("a", "../../a")})})});
    Walk walk;
    EXPECT_EQ(walk.root(tree.path()).fileCount, 0);
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, ExcludedFolderIsEmptyAndNotDenied) {
    const TempTree tree({folder("in", {file("x", 8192)}), folder("out", {folder("deep", {file("y", 8192)})}),
                         folder("outside", {file("z", 8192)})});
    Walk walk;
    walk.walker.excluded = {tree.path("out")};
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(child(root, "out").size, 0);
    EXPECT_EQ(child(root, "out").fileCount, 0);
    EXPECT_TRUE(child(root, "out").children.empty());
    EXPECT_EQ(root.fileCount, 2) << "a name that only begins like the excluded one is walked";
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, ExcludedPlaceIsTheExactPathOnly) {
    const TempTree tree({folder("a", {folder("out", {file("x", 8192)})}), folder("out", {file("y", 8192)})});
    Walk walk;
    walk.walker.excluded = {tree.path("a/out")};
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(child(child(root, "a"), "out").fileCount, 0);
    EXPECT_EQ(child(root, "out").fileCount, 1);
}

TEST(DiskWalker, ExcludedRootIsEmpty) {
    const TempTree tree({file("x", 8192)});
    Walk walk;
    walk.walker.excluded = {tree.path()};
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(root.fileCount, 0);
    EXPECT_EQ(walk.progress.files(), 0);
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, CountsAnUnreadableFolderOnceHoweverDeep) {
    TempTree tree(
        {folder("a", {folder("b", {folder("c", {folder("locked", {file("x", 8192)}).withMode(0)})})}),
         folder("b", {file("y", 4096)})},
        TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        Walk walk;
        const DirNode root = walk.root(tree.path());
        EXPECT_EQ(walk.progress.denied(), 1);
        EXPECT_EQ(root.fileCount, 1);
        EXPECT_EQ(child(child(child(child(root, "a"), "b"), "c"), "locked").size, 0);
    });
}

TEST(DiskWalker, UnreadableRootIsAnEmptyNode) {
    TempTree tree({folder("root", {file("x", 8192)}).withMode(0)}, TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        Walk walk;
        const DirNode root = walk.root(tree.path("root"));
        EXPECT_EQ(walk.progress.denied(), 1);
        EXPECT_EQ(root.size, 0);
        EXPECT_TRUE(root.isDirectory);
    });
}

TEST(DiskWalker, FolderThatTellsOnlyNamesIsEmptyButNotDenied) {
    TempTree tree({folder("names-only", {file("x", 8192), folder("y")}).withMode(0444)},
                  TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        Walk walk;
        const DirNode root = walk.root(tree.path());
        EXPECT_EQ(root.fileCount, 0);
        EXPECT_EQ(walk.progress.denied(), 0);
    });
}

TEST(DiskWalker, FolderNewerThanItsFilesKeepsItsOwnDate) {
    const TempTree tree({folder("f", {file("x", 4096).modifiedAt(old)}).modifiedAt(recent)});
    const DirNode root = Walk().root(tree.path());
    EXPECT_EQ(child(root, "f").modified, recent);
    EXPECT_EQ(root.modified, recent);
}

TEST(DiskWalker, FolderTakesTheLatestDateBelowIt) {
    const TempTree tree(
        {folder("f", {folder("g", {file("x", 4096).modifiedAt(recent)}).modifiedAt(old)}).modifiedAt(old)});
    EXPECT_EQ(child(Walk().root(tree.path()), "f").modified, recent);
}

TEST(DiskWalker, DateOfARootComesFromItsContentsOnly) {
    const TempTree empty;
    EXPECT_EQ(Walk().root(empty.path()).modified, std::nullopt);
    const TempTree tree({file("x", 0).modifiedAt(old)});
    EXPECT_EQ(Walk().root(tree.path()).modified, old);
}

TEST(DiskWalker, SmallFilesCountForTheDate) {
    const TempTree tree({file("small", 0).modifiedAt(recent)});
    Walk walk;
    walk.walker.keepThreshold = 50'000'000;
    EXPECT_EQ(walk.root(tree.path()).modified, recent);
}

TEST(DiskWalker, PackageIsMarkedAndStillWalked) {
    const TempTree tree({folder("Düzenleyici.app", {folder("Contents", {file("x", 20'000)})}),
                         folder("BÜYÜK.APP", {file("y", 30'000)}), folder("plain", {file("z", 4096)}),
                         folder(".app"), file("file.app", 4096)});
    const DirNode root = Walk().root(tree.path());
    EXPECT_TRUE(child(root, "Düzenleyici.app").isPackage);
    EXPECT_EQ(child(root, "Düzenleyici.app").size, tree.allocated("Düzenleyici.app/Contents/x"));
    EXPECT_TRUE(child(root, "BÜYÜK.APP").isPackage);
    EXPECT_FALSE(child(root, "plain").isPackage);
    EXPECT_FALSE(child(root, ".app").isPackage) << "a hidden name, not an extension";
    EXPECT_FALSE(child(root, "file.app").isPackage) << "only folders are packages";
}

TEST(DiskWalker, KnowsEveryPackageExtension) {
    for (const std::string_view extension :
         {"app",          "bundle",    "framework",   "photoslibrary", "musiclibrary", "tvlibrary",
          "xcarchive",    "xcodeproj", "xcworkspace", "plugin",        "kext",         "appex",
          "sparsebundle", "fcpbundle", "logicx",      "band",          "trace",        "imovielibrary",
          "photolibrary", "aplibrary", "lrlibrary",   "vmwarevm",      "pvm",          "utm"})
        EXPECT_TRUE(platform::isPackageName("x." + std::string(extension))) << extension;
    for (const std::string_view name : {"app", "x.ap", "x.apps", "x.app.", "x.", "", ".", "x.app/"})
        EXPECT_FALSE(platform::isPackageName(name)) << name;
}

TEST(DiskWalker, ChildrenAreLargestFirstAndEqualOnesInListingOrder) {
    std::vector<TreeEntry> entries;
    for (int i = 0; i < 20; ++i) {
        entries.push_back(file("file" + std::to_string(i), 8192));
        entries.push_back(folder("folder" + std::to_string(i), {file("x", 8192)}));
    }
    entries.push_back(file("largest", 40'960));
    const TempTree tree(entries);
    std::vector<std::string> expected{"largest"};
    for (const bool folders : {true, false}) {
        for (const std::string& name : platform::listNames(tree.path())) {
            if (name != "largest" && name.starts_with("folder") == folders)
                expected.push_back(name);
        }
    }
    EXPECT_EQ(names(Walk().root(tree.path())), expected) << "folders before files, each in listing order";
}

TEST(DiskWalker, MissingPathHasNoNode) {
    const TempTree tree({link("dangling", "nowhere")});
    const Walk walk;
    EXPECT_FALSE(walk.walker.node(tree.path("missing")).has_value());
    EXPECT_FALSE(walk.walker.node(tree.path("dangling")).has_value());
}

TEST(DiskWalker, FileAsARootTouchesNoCounter) {
    const TempTree tree({file("x.app", 10'000).modifiedAt(old)});
    Walk walk;
    const DirNode root = walk.root(tree.path("x.app"));
    EXPECT_FALSE(root.isDirectory);
    EXPECT_FALSE(root.isPackage);
    EXPECT_EQ(root.url, tree.path("x.app"));
    EXPECT_EQ(root.size, tree.allocated("x.app"));
    EXPECT_EQ(root.fileCount, 1);
    EXPECT_EQ(root.modified, old);
    EXPECT_EQ(walk.progress.files(), 0);
    EXPECT_EQ(walk.progress.bytes(), 0);
}

TEST(DiskWalker, LinkAsARootIsFollowed) {
    const TempTree tree({folder("real", {file("x", 8192)}), link("home", "real")});
    const DirNode root = Walk().root(tree.path("home"));
    EXPECT_EQ(root.url, tree.path("home"));
    EXPECT_EQ(root.fileCount, 1);
}

TEST(DiskWalker, WhatIsNoPlainFileIsCountedAndNeverOpened) {
    // Opening a FIFO without a writer would block forever.
    const TempTree tree({fifo("fifo"), socket("socket"), file("plain", 4096)});
    Walk walk;
    EXPECT_EQ(walk.root(tree.path()).fileCount, 3);
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, SparseFileCountsWhatItHolds) {
    const TempTree tree({sparseFile("sparse", 10'000'000'000)});
    EXPECT_EQ(Walk().root(tree.path()).size, tree.allocated("sparse"));
    EXPECT_LT(tree.allocated("sparse"), 1'000'000);
}

TEST(DiskWalker, EveryNameOfAFileCountsAndItsBytesOnceInEachFolderAroundThem) {
    const TempTree tree(
        {folder("p", {folder("a", {file("x", 8192)}), folder("b", {hardLink("x", "p/a/x")}),
                      folder("c", {folder("d", {hardLink("x", "p/a/x")}), file("y", 4096)})})});
    Walk walk;
    const DirNode root = walk.root(tree.path());
    const std::int64_t x = tree.allocated("p/a/x");
    const std::int64_t y = tree.allocated("p/c/y");
    const DirNode& p = child(root, "p");
    EXPECT_EQ(child(p, "a").size, x);
    EXPECT_EQ(child(p, "b").size, x);
    EXPECT_EQ(child(p, "c").size, x + y);
    EXPECT_EQ(child(child(p, "c"), "d").size, x);
    EXPECT_EQ(p.size, x + y);
    EXPECT_EQ(root.size, x + y);
    EXPECT_EQ(root.fileCount, 4);
    EXPECT_EQ(walk.progress.files(), 4);
    EXPECT_EQ(walk.progress.bytes(), x + y);
}

TEST(DiskWalker, KnowsWhatStaysBecauseItHasNamesElsewhere) {
    const TempTree tree({folder("a", {file("x", 8192), hardLink("x again", "a/x"), file("own", 4096)}),
                         folder("b", {hardLink("x", "a/x")}),
                         folder("c", {file("y", 8192), hardLink("z", "c/y")})});
    const DirNode root = Walk().root(tree.path());
    const std::int64_t x = tree.allocated("a/x");
    EXPECT_EQ(child(root, "a").heldElsewhere, x);
    EXPECT_EQ(child(child(root, "a"), "x").heldElsewhere, x) << "a name alone frees nothing";
    EXPECT_EQ(child(child(root, "a"), "own").heldElsewhere, 0);
    EXPECT_EQ(child(root, "b").heldElsewhere, x);
    EXPECT_EQ(child(root, "c").heldElsewhere, 0);
    EXPECT_EQ(root.heldElsewhere, 0);
    EXPECT_EQ(Walk().root(tree.path("a")).heldElsewhere, x) << "also where nobody looks";
    EXPECT_EQ(Walk().root(tree.path("b/x")).heldElsewhere, x) << "a file as a root";
    EXPECT_EQ(Walk().root(tree.path("a/own")).heldElsewhere, 0);
}

TEST(DiskWalker, FolderThatOnlyCountingTwiceWouldMakeBigIsNotKept) {
    constexpr std::int64_t half = 25'600'000;
    const TempTree tree(
        {folder("twice", {folder("a", {file("x", half)}), folder("b", {hardLink("x", "twice/a/x")}),
                          hardLink("y", "twice/a/x")}),
         folder("really", {folder("a", {file("x", half)}), folder("b", {file("x", half)})})});
    Walk walk;
    walk.walker.keepThreshold = 50'000'000;
    const DirNode root = walk.root(tree.path());
    EXPECT_THAT(names(root), testing::ElementsAre("really"));
    EXPECT_EQ(root.size, 3 * tree.allocated("twice/a/x"));
    EXPECT_EQ(root.fileCount, 5);
}

TEST(DiskWalker, NamesBelowSeveralRootsCountOnceInTheWholeScan) {
    const TempTree tree({folder("a", {file("x", 8192), folder("deep", {hardLink("x", "a/x")})}),
                         folder("b", {hardLink("x", "a/x"), file("own", 4096)})});
    const Walk walk;
    const std::vector<std::string> paths = {tree.path("a"), tree.path("b")};
    const auto nodes = walk.walker.nodes(paths);
    const std::int64_t x = tree.allocated("a/x");
    EXPECT_EQ(nodes[0]->size, x);
    EXPECT_EQ(nodes[1]->size, x + tree.allocated("b/own"));
    EXPECT_EQ(nodes[0]->heldElsewhere, x) << "one of the roots can be cleaned without the other";
    EXPECT_EQ(walk.progress.bytes(), x + tree.allocated("b/own"));
    EXPECT_EQ(walk.progress.files(), 4);
}

TEST(DiskWalker, AFileIsLostSightOfNowhereWhenAFolderCannotBeRead) {
    TempTree tree({folder("a", {file("x", 8192)}), folder("locked", {hardLink("x", "a/x")}).withMode(0)},
                  TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        Walk walk;
        const DirNode root = walk.root(tree.path());
        EXPECT_EQ(root.size, tree.allocated("a/x"));
        EXPECT_EQ(root.heldElsewhere, root.size) << "its other name may be anywhere";
        EXPECT_EQ(walk.progress.bytes(), root.size);
    });
}

TEST(DiskWalker, NamesOfEveryByteAreWalked) {
    std::vector<TreeEntry> entries;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            entries.push_back(folder(std::string("x") + static_cast<char>(byte), {file("y", 4096)}));
    }
    const TempTree tree(entries);
    Walk walk;
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(root.children.size(), 254U);
    EXPECT_EQ(root.fileCount, 254);
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, FiveThousandNestedFoldersFitTheStackAndThePath) {
    TempTree tree;
    tree.addChain("iç içe klasör", 5000, {file("bottom", 100'000)});
    Walk walk;
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(root.fileCount, 1);
    EXPECT_EQ(walk.progress.denied(), 0);
    int depth = 0;
    const DirNode* node = &root;
    while (!node->children.empty()) {
        ASSERT_EQ(node->size, root.size);
        node = &node->children.front();
        ++depth;
    }
    EXPECT_EQ(depth, 5001);
    EXPECT_EQ(node->url, "bottom");
}

/// Adds, at each of many levels, subfolders that have to be entered after the deep one.
void addLadder(TempTree& tree, int levels) {
    std::string path;
    for (int level = 0; level < levels; ++level) {
        tree.add(path, {folder("a", {folder("x", {file("f", 4096)})}), folder("m"),
                        folder("z", {folder("y", {file("f", 4096)})})});
        path += path.empty() ? "m" : "/m";
    }
}

TEST(DiskWalker, MoreFoldersThanHandlesAreAllCounted) {
    TempTree tree;
    constexpr int levels = 300;
    addLadder(tree, levels);
    inChild([&] {
        const rlimit limit{.rlim_cur = 64, .rlim_max = 64};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        Walk walk;
        EXPECT_EQ(walk.root(tree.path()).fileCount, 2 * levels);
        EXPECT_EQ(walk.progress.denied(), 0);
    });
}

TEST(DiskWalker, AllHandlesComeBack) {
    TempTree tree;
    addLadder(tree, 50);
    using test::openHandles;
    const std::size_t before = openHandles();
    (void)Walk().root(tree.path());
    EXPECT_EQ(openHandles(), before);
}

TEST(DiskWalker, OtherVolumesBelowARootAreSkipped) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("own", {file("x", 8192)}), folder("yabancı disk\\ 1"),
                         folder("a", {folder("deep")}), folder("again")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("yabancı disk\\ 1")));
        ASSERT_TRUE(test::mountMemory(tree.path("a/deep")));
        ASSERT_TRUE(test::mountAgain(tree.path("own"), tree.path("again")));
        std::filesystem::copy_file(tree.path("own/x"), tree.path("a/deep/x"));
        std::filesystem::copy_file(tree.path("own/x"), tree.path("yabancı disk\\ 1/x"));
        Walk walk;
        const DirNode root = walk.root(tree.path());
        EXPECT_EQ(root.fileCount, 1);
        EXPECT_THAT(names(root), testing::UnorderedElementsAre("own", "a"));
        EXPECT_EQ(walk.progress.denied(), 0);
        EXPECT_EQ(Walk().root(tree.path("a/deep")).fileCount, 1) << "a root may be a mount point";
    });
}

TEST(DiskWalker, FolderAtACoveredMountPointIsAFolderLikeOthers) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree(
        {folder("home", {folder("disk")}), folder("cr", {folder("a", {file("x", 8192)}), folder("a\rb")})});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("home/disk")));
        ASSERT_TRUE(test::mountMemory(tree.path("home")));
        std::filesystem::create_directory(tree.path("home/disk"));
        std::filesystem::copy_file(tree.path("cr/a/x"), tree.path("home/disk/x"));
        EXPECT_EQ(Walk().root(tree.path("home")).fileCount, 1);
        ASSERT_TRUE(test::mountMemory(tree.path("cr/a\rb")));
        EXPECT_EQ(Walk().root(tree.path("cr")).fileCount, 1)
            << "a name is not cut at what merely looks blank";
    });
}

TEST(DiskWalker, StoppedWalkIsEmpty) {
    const TempTree tree({folder("f", {file("x", 8192)})});
    std::stop_source source;
    source.request_stop();
    Walk walk;
    const DirNode root = walk.root(tree.path(), source.get_token());
    EXPECT_TRUE(root.isDirectory);
    EXPECT_EQ(root.size, 0);
    EXPECT_EQ(root.modified, std::nullopt);
    EXPECT_EQ(walk.progress.files(), 0);
    EXPECT_EQ(walk.progress.denied(), 0);
}

TEST(DiskWalker, PublishesTotalsAndTheTopThreeLevels) {
    const TempTree tree({folder("a", {folder("b", {folder("c", {folder("d", {file("x", 8192)})})})})});
    Walk walk;
    const DirNode root = walk.root(tree.path());
    EXPECT_EQ(walk.progress.current(), tree.path("a/b"));
    EXPECT_EQ(walk.progress.files(), root.fileCount);
    EXPECT_EQ(walk.progress.bytes(), root.size);
}

TEST(DiskWalker, SeveralRootsComeBackInOrder) {
    const TempTree tree({folder("a", {file("x", 4096)}), folder("b"), file("c", 8192)});
    const Walk walk;
    const std::vector<std::string> paths = {tree.path("b"), tree.path("missing"), tree.path("c"),
                                            tree.path("a")};
    const auto nodes = walk.walker.nodes(paths);
    ASSERT_EQ(nodes.size(), 4U);
    EXPECT_EQ(nodes[0]->url, tree.path("b"));
    EXPECT_FALSE(nodes[1].has_value());
    EXPECT_FALSE(nodes[2]->isDirectory);
    EXPECT_EQ(nodes[3]->fileCount, 1);
}

TEST(DiskWalker, SurvivesATreeThatChangesMeanwhile) {
    TempTree tree;
    for (int i = 0; i < 30; ++i)
        tree.add({folder("f" + std::to_string(i), {folder("g", {file("x", 4096), file("y", 4096)})})});
    constexpr int canaries = 100;
    std::vector<TreeEntry> many;
    for (int i = 0; i < canaries; ++i)
        many.push_back(file(std::to_string(i)));
    tree.add({folder("canary", many)});
    const std::jthread meddler([&](const std::stop_token& stop) {
        namespace fs = std::filesystem;
        std::error_code ignored;
        for (int i = 0; !stop.stop_requested(); i = (i + 1) % 30) {
            const fs::path place = tree.path("f" + std::to_string(i));
            fs::rename(place / "g", place / "h", ignored);
            fs::create_directory_symlink(tree.path("canary"), place / "g", ignored);
            fs::remove(place / "h/x", ignored);
            fs::create_directory(place / "h/x", ignored);
            fs::remove(place / "h/x", ignored);
            fs::copy_file(place / "h/y", place / "h/x", ignored);
            fs::remove(place / "g", ignored);
            fs::rename(place / "h", place / "g", ignored);
        }
    });
    for (int round = 0; round < 200; ++round) {
        const DirNode root = Walk().root(tree.path());
        EXPECT_GE(root.fileCount, canaries);
        // A folder renamed during the walk may be counted under both names.
        EXPECT_LT(root.fileCount, 2 * canaries) << "nothing is reached through a link";
    }
}

}  // namespace
}  // namespace ulvak
