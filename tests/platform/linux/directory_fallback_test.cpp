#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <string>

#include "platform/directory.h"
#include "platform/files.h"
#include "platform/removal.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"
#include "support/temp_tree.h"

// The contracts of `Directory` and of removal on kernels without openat2 and in sandboxes that refuse it.
// Availability is checked once per process, so each test runs in a new one.

namespace ulvak::platform {
namespace {

using test::folder;
using test::link;
using test::TempTree;
using test::textFile;

/// From here on openat2 fails with `error` in this process and its children.
void refuseOpenat2(int error) {
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {.len = std::size(program), .filter = program};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
    ASSERT_EQ(::syscall(SYS_openat2, 0, nullptr, nullptr, 0), -1);
    ASSERT_EQ(errno, error);
}

void expectFoldersToOpen() {
    TempTree tree({folder("a", {folder("b", {folder("c")})})});
    const std::string chain = tree.addChain(std::string(200, 'n'), 100, {folder("last")});
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    EXPECT_TRUE(top->openBelow("a"));
    EXPECT_TRUE(top->openBelow("a/b/c"));
    EXPECT_TRUE(top->openBelow((chain + "/last").c_str()));
    EXPECT_FALSE(top->openBelow("a/absent/c"));
}

void expectNoLinkToBeFollowed() {
    const TempTree outside({folder("room")});
    const TempTree tree(
        {link("out", outside.path()), folder("a", {link("out", outside.path("room")), link("up", "..")})});
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    for (const char* path : {"out", "out/room", "a/out", "a/up", "a/up/a"})
        EXPECT_FALSE(top->openBelow(path)) << path;
}

void expectNoMountToBeEntered() {
    TempTree tree({folder("memory"), folder("original", {folder("room")}), folder("again")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("memory")));
        ASSERT_TRUE(test::mountAgain(tree.path("original"), tree.path("again")));
        tree.add("memory", {folder("room")});
        const auto top = Directory::open(tree.path());
        ASSERT_TRUE(top);
        for (const char* path : {"memory", "memory/room", "again", "again/room"})
            EXPECT_FALSE(top->openBelow(path)) << path;
        EXPECT_TRUE(top->openBelow("original/room"));
    });
}

void expectRemovalToStayInside() {
    TempTree tree({folder("canaries", {textFile("canary", "alive")}),
                   folder("item", {link("out", "../canaries"), folder("a", {textFile("b", "b")})})});
    const auto top = Directory::open(tree.path());
    ASSERT_TRUE(top);
    EXPECT_TRUE(removeEntry(*top, "item"));
    EXPECT_FALSE(existsIn(tree.path(), "item"));
    EXPECT_TRUE(existsIn(tree.path("canaries"), "canary"));
}

void expectRemovalToEnterNoMount() {
    TempTree tree({folder("canaries", {textFile("canary", "alive")}), folder("item", {folder("again")})});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountAgain(tree.path("canaries"), tree.path("item/again")));
        const auto top = Directory::open(tree.path());
        ASSERT_TRUE(top);
        const auto removed = removeEntry(*top, "item");
        ASSERT_FALSE(removed);
        EXPECT_EQ(removed.error().code, std::errc::device_or_resource_busy);
        EXPECT_TRUE(existsIn(tree.path("canaries"), "canary"));
    });
}

/// Exits with 0 if nothing failed in this process.
[[noreturn]] void check(int error, void (*expectations)()) {
    refuseOpenat2(error);
    expectations();
    std::fflush(nullptr);
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

class DirectoryWithoutOpenat2 : public testing::TestWithParam<int> {
protected:
    DirectoryWithoutOpenat2() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(DirectoryWithoutOpenat2, OpensFoldersBelow) {
    EXPECT_EXIT(check(GetParam(), expectFoldersToOpen), testing::ExitedWithCode(0), "");
}

TEST_P(DirectoryWithoutOpenat2, FollowsNoLinkBelow) {
    EXPECT_EXIT(check(GetParam(), expectNoLinkToBeFollowed), testing::ExitedWithCode(0), "");
}

TEST_P(DirectoryWithoutOpenat2, EntersNoMountBelow) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    EXPECT_EXIT(check(GetParam(), expectNoMountToBeEntered), testing::ExitedWithCode(0), "");
}

TEST_P(DirectoryWithoutOpenat2, RemovesNothingBehindALink) {
    EXPECT_EXIT(check(GetParam(), expectRemovalToStayInside), testing::ExitedWithCode(0), "");
}

TEST_P(DirectoryWithoutOpenat2, RemovesNothingOfAnotherMount) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    EXPECT_EXIT(check(GetParam(), expectRemovalToEnterNoMount), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Errors, DirectoryWithoutOpenat2, testing::Values(ENOSYS, EPERM),
                         [](const auto& error) { return error.param == ENOSYS ? "unknown" : "refused"; });

TEST(ExistsInWithoutOpenat2, DoesNotFollowALinkToAServer) {
    if (const auto reason = test::DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    for (const int error : {ENOSYS, EPERM}) {
        TempTree tree({folder("server"), folder("near"), link("out", "server/room"),
                       link("up", "server/../near"), link("good", "near"), link("dangling", "absent")});
        test::withPrivateMounts([&] {
            const test::DeadMount server(tree.path("server"));
            ASSERT_TRUE(server.isMounted());
            refuseOpenat2(error);
            EXPECT_TRUE(existsIn(tree.path(), "good"));
            for (const char* name : {"out", "up", "dangling"})
                EXPECT_FALSE(existsIn(tree.path(), name)) << name;
            EXPECT_FALSE(server.wasAsked());
        });
    }
}

}  // namespace
}  // namespace ulvak::platform
