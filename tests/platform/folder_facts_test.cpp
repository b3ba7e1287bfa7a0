#include "platform/files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <stop_token>
#include <vector>

#include "platform/directory.h"
#include "support/isolation.h"
#include "support/open_watch.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

Directory opened(const std::string& path) {
    return Directory::open(path).value_or(Directory());
}

std::vector<std::string> names(const std::string& path) {
    const Directory folder = opened(path);
    EntryReader listing(Attributes::listed);
    listing.start(folder);
    std::vector<std::string> found;
    while (const DirectoryEntry* entry = listing.next())
        found.emplace_back(entry->name);
    return found;
}

/// The number of sampled files, by name.
std::map<std::string, int> sampled(const std::string& path) {
    FileSample sample(path);
    std::map<std::string, int> found;
    while (const auto file = sample.next())
        ++found[std::string(file->name)];
    return found;
}

/// Sets it far in the past, so that any update shows, even with relatime.
void setAccessDate(const std::string& path) {
    const timespec times[2] = {{.tv_sec = 1'000'000'000, .tv_nsec = 0}, {.tv_sec = 0, .tv_nsec = UTIME_OMIT}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

const FileTime longAgo{std::chrono::seconds(1'000'000'000)};

TEST(FolderFacts, NamesEverythingButItselfAndItsParent) {
    const TempTree tree({folder("d"), file(".gizli"), link("l", "yok"), fifo("f")});
    EXPECT_THAT(names(tree.path()), UnorderedElementsAre("d", ".gizli", "l", "f"));
}

TEST(FolderFacts, HasNoNamesWhereNothingCanBeListed) {
    const TempTree tree({file("a"), fifo("f"), folder("boş")});
    EXPECT_THAT(names(tree.path("yok")), IsEmpty());
    EXPECT_THAT(names(tree.path("a")), IsEmpty());
    EXPECT_THAT(names(tree.path("f")), IsEmpty());
    EXPECT_THAT(names(tree.path("boş")), IsEmpty());
    const Directory listing = opened(tree.path("yok"));
    EXPECT_EQ(fileLength(listing, "a"), std::nullopt);
    EXPECT_EQ(fileBeginning(listing, "a", 10), "");
}

TEST(FolderFacts, LengthIsKnownOfRegularFilesOnly) {
    const TempTree tree({textFile("a", "abc"), textFile("boş", ""), folder("d"), fifo("f"), socket("s"),
                         link("l", "a"), sparseFile("elsewhere", 1'000)});
    const Directory listing = opened(tree.path());
    EXPECT_EQ(fileLength(listing, "a"), 3);
    EXPECT_EQ(fileLength(listing, "boş"), 0);
    for (const char* name : {"d", "f", "s", "l", "elsewhere", "yok"})
        EXPECT_EQ(fileLength(listing, name), std::nullopt) << name;
}

TEST(FolderFacts, BeginningIsReadFromRegularFilesOnlyAndNeverWaits) {
    const TempTree tree({textFile("a", "abcdef"), fifo("f"), socket("s"), link("l", "a"), folder("d")});
    const Directory listing = opened(tree.path());
    EXPECT_EQ(fileBeginning(listing, "a", 4), "abcd");
    EXPECT_EQ(fileBeginning(listing, "a", 300), "abcdef");
    for (const char* name : {"f", "s", "l", "d", "yok"})
        EXPECT_EQ(fileBeginning(listing, name, 4), "") << name;
}

TEST(FolderFacts, WhatIsNoRegularFileIsNotEvenOpened) {
    if (const auto reason = OpenWatch::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({textFile("a", "abc"), fifo("f"), socket("s"), link("l", "a"), folder("d"),
                         sparseFile("elsewhere", 1'000)});
    const Directory listing = opened(tree.path());
    const OpenWatch watch(tree.path());
    ASSERT_TRUE(watch.isWatching());
    for (const char* name : {"f", "s", "l", "d", "elsewhere"})
        EXPECT_EQ(fileBeginning(listing, name, 4), "") << name;
    EXPECT_THAT(watch.opened(), IsEmpty());
    EXPECT_EQ(fileBeginning(listing, "a", 4), "abc");
    EXPECT_THAT(watch.opened(), ElementsAre("a"));
}

TEST(FolderFacts, LooksLeaveAccessDatesAsTheyAre) {
    const TempTree tree({textFile("a.txt", "abc"), folder("d", {file("b")})});
    for (const char* place : {"", "a.txt", "d"})
        setAccessDate(tree.path(place));
    EXPECT_EQ(lastAccess(tree.path()), longAgo);
    EXPECT_EQ(names(tree.path()).size(), 2U);
    EXPECT_EQ(fileBeginning(opened(tree.path()), "a.txt", 3), "abc");
    EXPECT_EQ(sampled(tree.path()).size(), 2U);
    for (const char* place : {"", "a.txt", "d"})
        EXPECT_EQ(lastAccess(tree.path(place)), longAgo) << place;
}

TEST(FolderFacts, AccessDateIsAbsentWhereNothingIs) {
    const TempTree tree;
    EXPECT_EQ(lastAccess(tree.path("yok")), std::nullopt);
    EXPECT_NE(lastAccess(tree.path()), std::nullopt);
}

TEST(FolderFacts, PackagesAreKnownByTheirExtensionInAnyCase) {
    for (const char* name : {"Editor.app", "x.APP", "a.b.photoslibrary", "p.xcodeproj"})
        EXPECT_TRUE(isPackageName(name)) << name;
    for (const char* name : {".app", "app", "Editor.apps", "Editor.app.old", "", "x."})
        EXPECT_FALSE(isPackageName(name)) << name;
}

TEST(FileSample, HoldsTheRegularFilesOfAllFoldersBelow) {
    const TempTree tree(
        {file("a"), folder("d", {file("b"), folder(".e", {file("c")})}), fifo("f"), socket("s")});
    EXPECT_THAT(sampled(tree.path()), ElementsAre(Pair("a", 1), Pair("b", 1), Pair("c", 1)));
}

TEST(FileSample, SaysWhatAFileHoldsOnDisk) {
    const TempTree tree({file("a", 1'000'000)});
    FileSample sample(tree.path());
    const auto found = sample.next();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->allocatedSize, tree.allocated("a"));
    EXPECT_FALSE(sample.next());
}

TEST(FileSample, FollowsNoLinkAndEntersNoPackage) {
    const TempTree outside({file("dışarıda")});
    const TempTree tree(
        {link("l", outside.path()), link("up", ".."), folder("E.app", {file("içeride")}), file("a")});
    EXPECT_THAT(sampled(tree.path()), ElementsAre(Pair("a", 1)));
}

TEST(FileSample, EntersThePackageThatItIsAskedAbout) {
    const TempTree tree(
        {folder("E.app", {folder("Contents", {file("a")}), folder("in.bundle", {file("b")})})});
    EXPECT_THAT(sampled(tree.path("E.app")), ElementsAre(Pair("a", 1)));
}

TEST(FileSample, LeavesNoVolume) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({file("a"), folder("mount")});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountMemory(tree.path("mount")));
        const int handle = ::open(tree.path("mount/b").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        ASSERT_GE(handle, 0);
        ::close(handle);
        EXPECT_THAT(sampled(tree.path()), ElementsAre(Pair("a", 1)));
    });
}

TEST(FileSample, IsEmptyForAFileOrNothing) {
    const TempTree tree({file("a")});
    EXPECT_THAT(sampled(tree.path("a")), IsEmpty());
    EXPECT_THAT(sampled(tree.path("yok")), IsEmpty());
}

TEST(FileSample, PassesOverFoldersThatCannotBeListed) {
    const TempTree tree({folder("locked", {file("a")}).withMode(0000), file("b")},
                        TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] { EXPECT_THAT(sampled(tree.path()), ElementsAre(Pair("b", 1))); });
}

TEST(FileSample, GoesDeepButNotDeeperThanItMayHoldFoldersOpen) {
    TempTree tree;
    tree.addChain("d", static_cast<int>(FileSample::maxLevels) - 1,
                  {file("reached"), folder("d", {file("deeper")})});
    EXPECT_THAT(sampled(tree.path()), ElementsAre(Pair("reached", 1)));
}

TEST(FileSample, EndsWhenStopped) {
    const TempTree tree({file("a"), file("b")});
    std::stop_source stop;
    FileSample sample(tree.path(), stop.get_token());
    EXPECT_TRUE(sample.next());
    stop.request_stop();
    EXPECT_FALSE(sample.next());
}

}  // namespace
}  // namespace ulvak::platform
