#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <string>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "support/linux/traced_child.h"
#include "support/temp_tree.h"

// Kills a program that replaces a file at every possible moment: before and after each of its system calls.

namespace ulvak::platform {
namespace {

using test::TempTree;
using test::textFile;
using testing::ElementsAre;
using testing::SizeIs;

const std::string oldBytes(100'000, 'o');
const std::string newBytes(200'000, 'n');

/// A child that replaces a file, stopping at every system call.
class TracedReplacement : public test::TracedChild {
public:
    explicit TracedReplacement(const std::string& path)
        : TracedChild([&] { (void)replaceFile(path, newBytes); }) {}
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
