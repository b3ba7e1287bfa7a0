#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "support/temp_tree.h"

// Every moment at which a program that replaces a file can die, one after the other: before and after each of
// its calls to the kernel.

namespace ulvak::platform {
namespace {

using test::TempTree;
using test::textFile;
using testing::ElementsAre;
using testing::SizeIs;

const std::string oldBytes(100'000, 'o');
const std::string newBytes(200'000, 'n');

/// A child that replaces a file and stops at every call.
class TracedReplacement {
public:
    explicit TracedReplacement(const std::string& path) {
        process_ = ::fork();
        if (process_ == 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                ::_exit(1);
            ::raise(SIGSTOP);
            (void)replaceFile(path, newBytes);
            ::_exit(0);
        }
        int status = 0;
        isTraced_ =
            ::waitpid(process_, &status, 0) == process_ && WIFSTOPPED(status) &&
            ::ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0;
        isRunning_ = WIFSTOPPED(status);
    }
    ~TracedReplacement() {
        if (isRunning_) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
    }
    TracedReplacement(const TracedReplacement&) = delete;
    TracedReplacement& operator=(const TracedReplacement&) = delete;

    [[nodiscard]] bool isTraced() const { return isTraced_; }

    /// Goes on to where the next call begins or ends; whether there is one.
    bool step() {
        int status = 0;
        do {
            ::ptrace(PTRACE_SYSCALL, process_, nullptr, nullptr);
            if (::waitpid(process_, &status, 0) != process_)
                return false;
        } while (WIFSTOPPED(status) && WSTOPSIG(status) != (SIGTRAP | 0x80));
        isRunning_ = WIFSTOPPED(status);
        return isRunning_;
    }

    /// The number of the call that is about to begin.
    [[nodiscard]] std::optional<std::uint64_t> call() const {
        __ptrace_syscall_info info{};
        if (::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info) <= 0 ||
            info.op != PTRACE_SYSCALL_INFO_ENTRY)
            return std::nullopt;
        return info.entry.nr;
    }

private:
    pid_t process_ = -1;
    bool isTraced_ = false;
    bool isRunning_ = false;
};

TEST(ReplaceFileKilled, LeavesTheOldFileOrTheNewOneWhereverThatHappens) {
    bool isOver = false;
    bool wasOld = false;
    bool wasNew = false;
    bool leftSomething = false;
    for (int moment = 1; !isOver; ++moment) {
        const TempTree tree({textFile("file", oldBytes)});
        {
            TracedReplacement replacement(tree.path("file"));
            if (!replacement.isTraced())
                GTEST_SKIP() << "this user may not trace a program";
            for (int i = 0; i < moment && !isOver; ++i)
                isOver = !replacement.step();
        }
        const auto bytes = readFile(tree.path("file"), newBytes.size());
        ASSERT_TRUE(bytes) << moment;
        ASSERT_TRUE(*bytes == oldBytes || *bytes == newBytes) << moment;
        wasOld = wasOld || *bytes == oldBytes;
        wasNew = wasNew || (*bytes == newBytes && !isOver);
        ASSERT_THAT(listNames(tree.path()), SizeIs(testing::Le(2U))) << moment;
        leftSomething = leftSomething || listNames(tree.path()).size() == 2;
        ASSERT_FALSE(replaceFile(tree.path("file"), "again")) << moment;
        ASSERT_THAT(listNames(tree.path()), ElementsAre("file")) << moment;
    }
    EXPECT_TRUE(wasOld && wasNew && leftSomething) << "the moments were all of them on one side";
}

TEST(ReplaceFileKilled, TheBytesAreOnTheDiskBeforeTheyGetTheNameAndThenTheNameIs) {
    const TempTree tree({textFile("file", oldBytes)});
    TracedReplacement replacement(tree.path("file"));
    if (!replacement.isTraced())
        GTEST_SKIP() << "this user may not trace a program";
    std::string order;
    while (replacement.step()) {
        const auto call = replacement.call();
        if (call == SYS_write)
            order += "write ";
        if (call == SYS_fsync)
            order += "fsync ";
        if (call == SYS_renameat || call == SYS_renameat2)
            order += "rename ";
    }
    EXPECT_EQ(order, "write fsync rename fsync ");
}

}  // namespace
}  // namespace ulvak::platform
