#include "support/isolation.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <future>
#include <stdexcept>
#include <thread>

#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak::test {
namespace {

TEST(Isolation, PassesWhenTheBodyDoes) {
    inChild([] { EXPECT_EQ(1 + 1, 2); });
}

TEST(Isolation, FailsWhenTheBodyThrowsOrDies) {
    EXPECT_NONFATAL_FAILURE(inChild([] { ::_exit(1); }), "failed in the child");
    EXPECT_NONFATAL_FAILURE(inChild([] { throw std::runtime_error("meant to be thrown"); }),
                            "failed in the child");
    EXPECT_NONFATAL_FAILURE(inChild([] { std::raise(SIGKILL); }), "signal 9");
}

TEST(Isolation, FailsWhenWhatTheBodyExpectsIsNotSo) {
    // In another child, so that these failures do not count as this test's.
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(inChild([] { ADD_FAILURE() << "meant to fail"; }) ? 1 : 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(Isolation, IsNotToBeHadBesideOtherThreads) {
    std::promise<void> done;
    const std::jthread other([ended = done.get_future()] { ended.wait(); });
    if (detail::threads() > 1)
        EXPECT_NONFATAL_FAILURE(inChild([] {}), "beside other threads");
    done.set_value();
}

TEST(Isolation, KeepsChangesInTheChild) {
    int value = 0;
    inChild([&] { value = 1; });
    EXPECT_EQ(value, 0);
}

TEST(Isolation, AnUnprivilegedUserCannotReadWhatIsLocked) {
    const TempTree tree({folder("open"), folder("locked").withMode(0)});
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        EXPECT_NE(::geteuid(), 0U);
        EXPECT_EQ(::access(tree.path("open").c_str(), R_OK), 0);
        EXPECT_NE(::access(tree.path("locked").c_str(), R_OK), 0);
    });
}

TEST(Isolation, MountsAreSeenByNobodyElse) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("point")});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountMemory(tree.path("point")));
        EXPECT_NE(::rmdir(tree.path("point").c_str()), 0);
    });
    EXPECT_EQ(::rmdir(tree.path("point").c_str()), 0) << "still a mount point";
}

}  // namespace
}  // namespace ulvak::test
