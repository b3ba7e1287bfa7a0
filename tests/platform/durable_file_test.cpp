#include "platform/durable_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "platform/files.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::folder;
using test::link;
using test::modeOf;
using test::TempTree;
using test::textFile;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::size_t anyLength = std::numeric_limits<std::size_t>::max();

std::string contents(const std::string& path) {
    return readFile(path, anyLength).value_or("(cannot be read)");
}

bool isLink(const std::string& path) {
    struct stat info{};
    return ::lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

TEST(ReadFile, GivesEveryByte) {
    std::string large(1'000'003, 'x');
    large += '\0';
    TempTree tree({textFile("large", large), textFile("empty", ""), link("link", "large")});
    EXPECT_EQ(readFile(tree.path("large"), anyLength), large);
    EXPECT_EQ(readFile(tree.path("link"), anyLength), large);
    EXPECT_EQ(readFile(tree.path("empty"), 0), "");
}

TEST(ReadFile, TakesNoMoreThanItIsAllowed) {
    const TempTree tree({textFile("ten", "0123456789"), test::sparseFile("huge", 1'000'000'000'000)});
    EXPECT_EQ(readFile(tree.path("ten"), 10), "0123456789");
    for (const char* name : {"ten", "huge"}) {
        const auto bytes = readFile(tree.path(name), 9);
        ASSERT_FALSE(bytes) << name;
        EXPECT_EQ(bytes.error(), std::errc::file_too_large) << name;
    }
}

TEST(ReadFile, FailsForWhatIsNoFileWithoutWaiting) {
    const TempTree tree({test::fifo("fifo"), test::socket("socket"), folder("folder"),
                         link("nowhere", "absent"), link("zero", "/dev/zero")});
    for (const char* name : {"fifo", "socket", "folder", "nowhere", "zero", "absent"})
        EXPECT_FALSE(readFile(tree.path(name), anyLength)) << name;
}

TEST(ReplaceFile, MakesAFileForThisUserAlone) {
    const TempTree tree;
    const mode_t before = ::umask(0);
    EXPECT_FALSE(replaceFile(tree.path("a"), "one"));
    ::umask(0777);
    EXPECT_FALSE(replaceFile(tree.path("b"), "two"));
    ::umask(before);
    EXPECT_EQ(contents(tree.path("a")), "one");
    EXPECT_EQ(contents(tree.path("b")), "two");
    EXPECT_EQ(modeOf(tree.path("a")), 0600U);
    EXPECT_EQ(modeOf(tree.path("b")), 0600U);
    EXPECT_THAT(listNames(tree.path()), UnorderedElementsAre("a", "b"));
}

TEST(ReplaceFile, WritesAnyBytesOfAnyLength) {
    const TempTree tree;
    std::string large(3'000'000, '\xff');
    large[7] = '\0';
    for (const std::string& bytes : {large, std::string(), std::string("x")}) {
        EXPECT_FALSE(replaceFile(tree.path("a file"), bytes));
        EXPECT_EQ(contents(tree.path("a file")), bytes);
    }
}

TEST(ReplaceFile, KeepsThePermissionsOfTheFileThatItReplaces) {
    const TempTree tree({textFile("shared", "old").withMode(0664), textFile("set", "old").withMode(06755)});
    EXPECT_FALSE(replaceFile(tree.path("shared"), "new"));
    EXPECT_FALSE(replaceFile(tree.path("set"), "new"));
    EXPECT_EQ(contents(tree.path("shared")), "new");
    EXPECT_EQ(modeOf(tree.path("shared")), 0664U);
    EXPECT_EQ(modeOf(tree.path("set")), 0755U) << "nothing runs as somebody else for it";
}

TEST(ReplaceFile, KeepsTheOwnerWhereItMay) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    const TempTree tree({textFile("theirs", "old").withMode(0640)}, TempTree::Owner::unprivileged);
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    EXPECT_FALSE(replaceFile(tree.path("theirs"), "new"));
    struct stat info{};
    ASSERT_EQ(::stat(tree.path("theirs").c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, test::unprivilegedId);
    EXPECT_EQ(info.st_gid, test::unprivilegedId);
    EXPECT_EQ(modeOf(tree.path("theirs")), 0640U);
}

TEST(ReplaceFile, GivesPermissionsToNobodyElseWhereItMayNotKeepTheOwner) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root makes files of others";
    const TempTree tree({folder("open", {textFile("roots", "old").withMode(0644)}).withMode(0777)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] {
        EXPECT_FALSE(replaceFile(tree.path("open/roots"), "new"));
        EXPECT_EQ(contents(tree.path("open/roots")), "new");
        EXPECT_EQ(modeOf(tree.path("open/roots")), 0600U);
    });
}

TEST(ReplaceFile, FollowsLinksAndLeavesThemWhereTheyAre) {
    const TempTree tree({folder("sync", {textFile("file", "old")}), link("relative", "sync/file"),
                         link("absolute", "relative"), folder("deep", {link("up", "../sync/./file")}),
                         link("new", "sync/made"), link("folder", "sync")});
    const std::string absolute = tree.path("chain");
    ASSERT_EQ(::symlink(tree.path("relative").c_str(), absolute.c_str()), 0);
    for (const char* name : {"relative", "absolute", "deep/up", "chain"}) {
        EXPECT_FALSE(replaceFile(tree.path(name), name));
        EXPECT_EQ(contents(tree.path("sync/file")), name);
        EXPECT_TRUE(isLink(tree.path(name))) << name;
    }
    EXPECT_FALSE(replaceFile(tree.path("new"), "made"));
    EXPECT_EQ(contents(tree.path("sync/made")), "made");
    EXPECT_FALSE(replaceFile(tree.path("folder/file"), "through a folder"));
    EXPECT_EQ(contents(tree.path("sync/file")), "through a folder");
    EXPECT_THAT(listNames(tree.path("sync")), UnorderedElementsAre("file", "made"));
}

TEST(ReplaceFile, FailsWhereALinkLeadsNowhere) {
    const TempTree tree({link("a", "b"), link("b", "a"), link("gone", "absent/file")});
    EXPECT_EQ(replaceFile(tree.path("a"), "new"), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(replaceFile(tree.path("gone"), "new"), std::errc::no_such_file_or_directory);
    EXPECT_THAT(listNames(tree.path()), UnorderedElementsAre("a", "b", "gone"));
}

TEST(ReplaceFile, LeavesAloneWhatIsNoFile) {
    const TempTree tree({test::fifo("fifo"), test::socket("socket"), folder("folder"),
                         link("null", "/dev/null"), folder("links", {link("folder", "../folder")})});
    for (const char* name : {"fifo", "socket", "folder", "null", "links/folder", "folder/", "absent/file"})
        EXPECT_TRUE(replaceFile(tree.path(name), "new")) << name;
    struct stat info{};
    ASSERT_EQ(::stat("/dev/null", &info), 0);
    EXPECT_TRUE(S_ISCHR(info.st_mode));
    EXPECT_THAT(listNames(tree.path()), UnorderedElementsAre("fifo", "socket", "folder", "null", "links"));
    EXPECT_THAT(listNames(tree.path("folder")), ElementsAre());
}

TEST(ReplaceFile, LeavesOtherNamesOfTheFileTheirContents) {
    const TempTree tree({textFile("file", "old"), test::hardLink("copy", "file")});
    EXPECT_FALSE(replaceFile(tree.path("file"), "new"));
    EXPECT_EQ(contents(tree.path("copy")), "old");
}

TEST(ReplaceFile, ALongNameIsAsGoodAsAnother) {
    const TempTree tree;
    const std::string name(255, 'n');
    EXPECT_FALSE(replaceFile(tree.path(name), "new"));
    EXPECT_EQ(contents(tree.path(name)), "new");
}

TEST(ReplaceFile, RemovesWhatKilledProgramsLeftAndNothingElse) {
    const TempTree tree(
        {textFile(".ulvak-0123456789abcdef.tmp", "half"), textFile(".ulvak-fedcba9876543210.tmp", ""),
         textFile(".ulvak-0123456789abcdeg.tmp", "no digit"), textFile(".ulvak-0123.tmp", "too short"),
         textFile("ulvak-0123456789abcdef.tmp", "not hidden"), folder(".ulvak-00000000000000aa.tmp"),
         link(".ulvak-00000000000000bb.tmp", "kept"), textFile("kept", "kept")});
    EXPECT_FALSE(replaceFile(tree.path("file"), "new"));
    EXPECT_THAT(listNames(tree.path()),
                UnorderedElementsAre("file", ".ulvak-0123456789abcdeg.tmp", ".ulvak-0123.tmp",
                                     "ulvak-0123456789abcdef.tmp", ".ulvak-00000000000000aa.tmp",
                                     ".ulvak-00000000000000bb.tmp", "kept"));
    EXPECT_EQ(contents(tree.path("kept")), "kept");
}

TEST(ReplaceFile, SucceedsEveryTimeWhileOthersReplaceTheSameFile) {
    constexpr int writers = 4;
    constexpr int rounds = 100;
    const TempTree tree;
    std::vector<pid_t> children;
    for (int i = 0; i < writers; ++i) {
        children.push_back(::fork());
        if (children.back() == 0) {
            const std::string bytes(static_cast<std::size_t>(i + 1) * 5000, static_cast<char>('a' + i));
            int failures = 0;
            for (int round = 0; round < rounds; ++round)
                failures += replaceFile(tree.path("file"), bytes) ? 1 : 0;
            ::_exit(failures);
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << "nobody takes another's draft for litter";
    }
    const std::string bytes = contents(tree.path("file"));
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes, std::string(bytes.size(), bytes[0]));
    EXPECT_EQ(bytes.size(), static_cast<std::size_t>(bytes[0] - 'a' + 1) * 5000);
    EXPECT_THAT(listNames(tree.path()), ElementsAre("file"));
}

TEST(ReplaceFile, LeavesNoHandleOpen) {
    const TempTree tree({link("loop", "loop"), folder("folder")});
    const std::size_t before = test::openHandles();
    for (const char* name : {"file", "loop", "folder", "absent/file"})
        (void)replaceFile(tree.path(name), "new");
    (void)readFile(tree.path("file"), anyLength);
    (void)makeFolders(tree.path("a/b"));
    EXPECT_EQ(test::openHandles(), before);
}

TEST(MakeFolders, MakesThoseThatAreMissingForThisUserAlone) {
    const TempTree tree({folder("there").withMode(0755), link("link", "there")});
    for (const char* path : {"there/a/b", "link/c//d", "e/", "there"})
        EXPECT_FALSE(makeFolders(tree.path(path))) << path;
    for (const char* made : {"there/a", "there/a/b", "there/c", "there/c/d", "e"})
        EXPECT_EQ(modeOf(tree.path(made)), 0700U) << made;
    EXPECT_EQ(modeOf(tree.path("there")), 0755U) << "as it was";
    EXPECT_FALSE(makeFolders("/"));
}

TEST(MakeFolders, FailsWhereSomethingElseIs) {
    const TempTree tree({textFile("file", ""), link("nowhere", "absent"), link("loop", "loop")});
    for (const char* path : {"file", "file/a", "nowhere", "nowhere/a", "loop/a"})
        EXPECT_TRUE(makeFolders(tree.path(path))) << path;
    EXPECT_TRUE(makeFolders(tree.path() + std::string(5000, '/') + "a"));
    EXPECT_TRUE(makeFolders(""));
    EXPECT_THAT(listNames(tree.path()), UnorderedElementsAre("file", "nowhere", "loop"));
}

TEST(ReplaceFileKeepingOld, KeepsTheOldOneUnderTheFirstFreeName) {
    const TempTree tree({textFile("f", "0").withMode(0640), textFile("f.old.1", "taken")});
    for (const char* text : {"1", "2", "3"})
        EXPECT_FALSE(replaceFileKeepingOld(tree.path("f"), text));
    EXPECT_EQ(contents(tree.path("f")), "3");
    EXPECT_EQ(contents(tree.path("f.old")), "0");
    EXPECT_EQ(contents(tree.path("f.old.1")), "taken");
    EXPECT_EQ(contents(tree.path("f.old.2")), "1");
    EXPECT_EQ(contents(tree.path("f.old.3")), "2");
    EXPECT_EQ(modeOf(tree.path("f")), 0600U)
        << "those of a file that could not be read are none to take over";
    EXPECT_EQ(modeOf(tree.path("f.old")), 0640U);
}

TEST(ReplaceFileKeepingOld, MakesAFileWhereThereIsNone) {
    const TempTree tree;
    EXPECT_FALSE(replaceFileKeepingOld(tree.path("f"), "1"));
    EXPECT_THAT(listNames(tree.path()), ElementsAre("f"));
}

TEST(ReplaceFileKeepingOld, KeepsWhatALinkLeadsToBesideThat) {
    const TempTree tree({folder("there", {textFile("f", "old")}), link("f", "there/f")});
    EXPECT_FALSE(replaceFileKeepingOld(tree.path("f"), "new"));
    EXPECT_TRUE(isLink(tree.path("f")));
    EXPECT_EQ(contents(tree.path("there/f")), "new");
    EXPECT_EQ(contents(tree.path("there/f.old")), "old");
    EXPECT_THAT(listNames(tree.path()), UnorderedElementsAre("there", "f"));
}

constexpr std::chrono::milliseconds noPatience{0};

TEST(AFileLock, IsOneProgramsAtATime) {
    const TempTree tree;
    auto held = std::make_unique<FileLock>(tree.path("f"), noPatience);
    EXPECT_TRUE(held->isHeld());
    test::inChild([&] { EXPECT_FALSE(FileLock(tree.path("f"), noPatience).isHeld()); });
    held.reset();
    test::inChild([&] { EXPECT_TRUE(FileLock(tree.path("f"), noPatience).isHeld()); });
    EXPECT_THAT(listNames(tree.path()), testing::IsEmpty()) << "nothing is left of it";
}

TEST(AFileLock, IsWaitedFor) {
    const TempTree tree;
    auto held = std::make_unique<FileLock>(tree.path("f"), noPatience);
    std::thread holder([&] { held.reset(); });
    EXPECT_TRUE(FileLock(tree.path("f"), std::chrono::minutes(1)).isHeld());
    holder.join();
}

TEST(AFileLock, IsTheSameForEveryNameOfTheFile) {
    const TempTree tree({folder("there"), link("f", "there/g")});
    const FileLock held(tree.path("f"), noPatience);
    EXPECT_FALSE(FileLock(tree.path("there/g"), noPatience).isHeld());
}

TEST(AFileLock, EndsWithTheProgramHoweverThatEnds) {
    const TempTree tree;
    const pid_t child = ::fork();
    if (child == 0) {
        const FileLock held(tree.path("f"), noPatience);
        ::raise(SIGKILL);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(FileLock(tree.path("f"), noPatience).isHeld());
}

TEST(AFileLock, IsDoneWithoutWhereThereIsNoFolder) {
    const TempTree tree;
    EXPECT_FALSE(FileLock(tree.path("none/f"), std::chrono::hours(1)).isHeld());
}

}  // namespace
}  // namespace ulvak::platform
