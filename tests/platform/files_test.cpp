#include "platform/files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/file_descriptor.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using test::fifo;
using test::file;
using test::folder;
using test::link;
using test::sparseFile;
using test::TempTree;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(FileInfo, TellsFoldersFromFiles) {
    const TempTree tree({folder("a"), file("b"), fifo("c"), test::socket("d")});
    for (const auto& [name, isDirectory] : {std::pair("a", true), {"b", false}, {"c", false}, {"d", false}}) {
        const auto info = fileInfo(tree.path(name));
        ASSERT_TRUE(info) << name;
        EXPECT_EQ(info->isDirectory, isDirectory) << name;
    }
}

TEST(FileInfo, CountsBytesOnDiskAndNotTheLength) {
    const TempTree tree({file("full", 3'000'000), sparseFile("hole", 1'000'000'000'000)});
    EXPECT_EQ(fileInfo(tree.path("full"))->allocatedSize, tree.allocated("full"));
    EXPECT_GE(fileInfo(tree.path("full"))->allocatedSize, 3'000'000);
    EXPECT_LT(fileInfo(tree.path("hole"))->allocatedSize, 1'000'000);
}

TEST(FileInfo, HasTheDateOfTheLastChangeToTheMicrosecond) {
    const FileTime date =
        std::chrono::sys_days{std::chrono::year{1969} / 7 / 20} + 20h + 17min + 40s + 123'456us;
    const TempTree tree({file("moon").modifiedAt(date)});
    EXPECT_EQ(fileInfo(tree.path("moon"))->modified, date);
}

TEST(FileInfo, FollowsLinks) {
    const TempTree tree({folder("a", {file("b", 4096)}), link("to-folder", "a"), link("to-file", "a/b")});
    EXPECT_TRUE(fileInfo(tree.path("to-folder"))->isDirectory);
    EXPECT_EQ(fileInfo(tree.path("to-file"))->allocatedSize, tree.allocated("a/b"));
}

TEST(FileInfo, IsAbsentWhereNothingIs) {
    const TempTree tree({file("file"), link("nowhere", "absent"), link("loop", "loop")});
    for (const std::string name : {"absent", "file/below", "nowhere", "loop"})
        EXPECT_FALSE(fileInfo(tree.path(name))) << name;
    EXPECT_FALSE(fileInfo(""));
    EXPECT_FALSE(fileInfo("/" + std::string(100'000, 'x')));
}

TEST(FileInfo, IsAbsentWhereThisUserMayNotLook) {
    const TempTree tree({folder("locked", {file("inside")}).withMode(0)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] {
        EXPECT_FALSE(fileInfo(tree.path("locked/inside")));
        EXPECT_TRUE(fileInfo(tree.path("locked")));
    });
}

TEST(FileInfo, TellsWhetherTwoNamesAreOneEntry) {
    const TempTree tree(
        {file("a"), test::hardLink("b", "a"), link("c", "a"), file("d"), folder("e"), link("f", "e")});
    const auto identity = [&](const char* name) { return fileInfo(tree.path(name))->volumeAndNumber; };
    EXPECT_EQ(identity("a"), identity("b"));
    EXPECT_EQ(identity("a"), identity("c"));
    EXPECT_NE(identity("a"), identity("d"));
    EXPECT_EQ(identity("e"), identity("f"));
    EXPECT_NE(identity("e"), identity("a"));
}

TEST(ExistsIn, FindsEntriesOfEveryKind) {
    const TempTree tree({file("file"), folder("folder"), fifo("fifo"), test::socket("socket"),
                         link("good", "folder"), link("dangling", "absent"), link("loop", "loop")});
    for (const std::string name : {"file", "folder", "fifo", "socket", "good"})
        EXPECT_TRUE(existsIn(tree.path(), name)) << name;
    for (const std::string name : {"absent", "dangling", "loop", "file/x"})
        EXPECT_FALSE(existsIn(tree.path(), name)) << name;
    EXPECT_FALSE(existsIn(tree.path("absent"), "file"));
    EXPECT_FALSE(existsIn(tree.path("file"), "file"));
    EXPECT_TRUE(existsIn("/", "tmp"));
}

TEST(ExistsIn, FindsNothingWhereThisUserMayNotLook) {
    const TempTree tree({folder("locked", {file("inside")}).withMode(0)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] { EXPECT_FALSE(existsIn(tree.path("locked"), "inside")); });
}

TEST(ExistsIn, FollowsALinkWhereverItLeads) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree(
        {folder("server"), link("out", "server/room"), link("up", "server/../near"), folder("near")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("server")));
        tree.add("server", {folder("room")});
        tree.add({link("absolute", tree.path("near")), link("absolute-out", tree.path("server/room")),
                  link("absolute-nowhere", tree.path("absent")), link("nowhere", "server/absent")});
        for (const char* name : {"out", "up", "absolute", "absolute-out"})
            EXPECT_TRUE(existsIn(tree.path(), name)) << name;
        for (const char* name : {"nowhere", "absolute-nowhere"})
            EXPECT_FALSE(existsIn(tree.path(), name)) << name;
        EXPECT_TRUE(existsIn(tree.path(), "server")) << "what is mounted there is there";
        EXPECT_TRUE(existsIn(tree.path("server"), "room"));
    });
}

TEST(ExistsIn, LeavesNoHandleOpen) {
    const TempTree tree({file("file"), link("good", "file"), link("dangling", "absent")});
    const std::size_t before = test::openHandles();
    for (const char* name : {"file", "good", "dangling", "absent"})
        (void)existsIn(tree.path(), name);
    EXPECT_EQ(test::openHandles(), before);
}

TEST(ListNames, GivesEveryNameInBytes) {
    const TempTree tree(
        {file(".hidden"), file("görünür"), folder("..."), link("link", "absent"), file("a\n\x1b[31m")});
    EXPECT_THAT(listNames(tree.path()),
                UnorderedElementsAre(".hidden", "görünür", "...", "link", "a\n\x1b[31m"));
}

TEST(ListNames, IsEmptyForWhatCannotBeListed) {
    const TempTree tree({file("file"), folder("empty")});
    EXPECT_THAT(listNames(tree.path("empty")), IsEmpty());
    EXPECT_THAT(listNames(tree.path("file")), IsEmpty());
    EXPECT_THAT(listNames(tree.path("absent")), IsEmpty());
    EXPECT_THAT(listNames(""), IsEmpty());
}

TEST(ListNames, IsEmptyForAFolderThisUserMayNotList) {
    const TempTree tree({folder("locked", {file("inside")}).withMode(0111)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] { EXPECT_THAT(listNames(tree.path("locked")), IsEmpty()); });
}

TEST(IsOwnFolder, HoldsForFoldersOfThisUserAlone) {
    const TempTree tree({folder("own"), file("file"), link("link", "own"), link("nowhere", "absent")});
    EXPECT_EQ(isOwnFolder(tree.path("own")), true);
    for (const char* name : {"file", "link", "nowhere", "file/x"})
        EXPECT_EQ(isOwnFolder(tree.path(name)), false) << name;
    EXPECT_EQ(isOwnFolder(tree.path("absent")), std::nullopt);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([] { EXPECT_EQ(isOwnFolder("/"), false); });
}

TEST(LinkTarget, IsWhatTheLinkSaysWhereverThatLeads) {
    const std::string deep(1'000, 'd');
    const TempTree tree({file("file"), link("link", "file"), link("nowhere", "../absent\n\xff"),
                         link("absolute", "/"), link("long", deep), folder("folder")});
    EXPECT_EQ(linkTarget(tree.path("link")), "file");
    EXPECT_EQ(linkTarget(tree.path("nowhere")), "../absent\n\xff");
    EXPECT_EQ(linkTarget(tree.path("absolute")), "/");
    EXPECT_EQ(linkTarget(tree.path("long")), deep);
    for (const std::string name : {"file", "folder", "absent", "file/x"})
        EXPECT_EQ(linkTarget(tree.path(name)), std::nullopt) << name;
}

TEST(FileDescriptor, ClosesOnceWhateverBecomesOfItAndLeavesTheErrorAlone) {
    const TempTree tree({file("file")});
    const std::size_t before = test::openHandles();
    const auto open = [&] { return FileDescriptor(::open(tree.path("file").c_str(), O_RDONLY | O_CLOEXEC)); };
    {
        FileDescriptor one = open();
        FileDescriptor other = open();
        EXPECT_EQ(test::openHandles(), before + 2);
        const int number = other.get();
        one = std::move(other);
        EXPECT_EQ(one.get(), number);
        EXPECT_EQ(test::openHandles(), before + 1) << "what it held before is closed at once";
        const FileDescriptor taken(one.release());
        EXPECT_FALSE(one.isOpen());
        EXPECT_EQ(taken.get(), number);
        one = FileDescriptor(::dup(number));
        ::close(one.get());
        errno = ENOENT;
        one.close();
        EXPECT_EQ(errno, ENOENT) << "though closing has failed";
        one.close();
        EXPECT_FALSE(FileDescriptor(-1).isOpen());
    }
    EXPECT_EQ(test::openHandles(), before);
}

TEST(ResolvedPath, HasNoLinksDotsOrDoubledSlashes) {
    const TempTree tree({folder("a", {folder("b")}), link("l", "a")});
    EXPECT_EQ(resolvedPath(tree.path("l/b")), tree.path("a/b"));
    EXPECT_EQ(resolvedPath(tree.path("a/./b/..//b/")), tree.path("a/b"));
    EXPECT_EQ(resolvedPath("/"), "/");
    EXPECT_EQ(resolvedPath("//"), "/");
}

TEST(ResolvedPath, IsAbsentWhereNothingIs) {
    const TempTree tree({file("file"), link("nowhere", "absent"), link("loop", "loop")});
    for (const std::string name : {"absent", "file/x", "nowhere", "loop"})
        EXPECT_EQ(resolvedPath(tree.path(name)), std::nullopt) << name;
    EXPECT_EQ(resolvedPath(""), std::nullopt);
}

}  // namespace
}  // namespace ulvak::platform
