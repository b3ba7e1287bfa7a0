#include "classify/temporary_use.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::TempTree;
using testing::HasSubstr;

/// A temporary folder like "/tmp".
class SharedTemporary : public testing::Test {
protected:
    SharedTemporary() { EXPECT_EQ(::chmod(folders.temp.c_str(), 01777), 0); }

    [[nodiscard]] std::string objection(const std::string& name, int daysOld = 90) {
        const auto now = std::chrono::system_clock::now();
        DirNode item;
        item.url = name;
        item.modified = std::chrono::floor<FileTime::duration>(now);
        return TemporaryUse(folders, now + std::chrono::days(daysOld))
            .objection(Paths::join(folders.temp, name), item);
    }

    TempTree tree{{folder("tmp", {file("dosya", 10), folder("klasör", {file("x", 1)})})}};
    UserFolders folders{.home = tree.path("ev"), .temp = tree.path("tmp"), .cache = "", .trash = ""};
};

TEST_F(SharedTemporary, WhatIsOldAndUnusedMayGo) {
    EXPECT_EQ(objection("dosya"), "");
    EXPECT_EQ(objection("klasör"), "");
}

TEST_F(SharedTemporary, WhatHasChangedLatelyMayBeInUse) {
    EXPECT_THAT(objection("dosya", 9), HasSubstr("son 10 günde değişmiş"));
    EXPECT_EQ(objection("dosya", 11), "");
    DirNode undated;
    EXPECT_NE(TemporaryUse(folders).objection(tree.path("tmp/dosya"), undated), "");
}

TEST_F(SharedTemporary, ACopyIsAsNewAsItsMakingWhateverItsDates) {
    const auto now = std::chrono::system_clock::now();
    DirNode item;
    item.modified = std::chrono::floor<FileTime::duration>(now) - std::chrono::days(90);
    EXPECT_THAT(TemporaryUse(folders, now).objection(tree.path("tmp/klasör"), item),
                HasSubstr("son 10 günde değişmiş"));
    EXPECT_THAT(TemporaryUse(folders, now).objection(tree.path("tmp/dosya"), item),
                HasSubstr("son 10 günde değişmiş"));
}

TEST_F(SharedTemporary, WhatIsOpenIsSeenThroughALink) {
    tree.add("", {test::link("bağ", "tmp")});
    folders.temp = tree.path("bağ");
    EXPECT_EQ(objection("klasör"), "");
    const std::ifstream open(tree.path("tmp/klasör/x"));
    ASSERT_TRUE(open.is_open());
    EXPECT_THAT(objection("klasör"), HasSubstr("şu anda açık"));
}

TEST_F(SharedTemporary, WhatIsOpenIsInUse) {
    const std::ifstream open(tree.path("tmp/klasör/x"));
    ASSERT_TRUE(open.is_open());
    EXPECT_THAT(objection("klasör"), HasSubstr("şu anda açık"));
    EXPECT_EQ(objection("dosya"), "");
}

TEST_F(SharedTemporary, TheFolderSomebodyWorksInIsInUse) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(tree.path("tmp/klasör"));
    const std::string answer = objection("klasör");
    std::filesystem::current_path(before);
    EXPECT_THAT(answer, HasSubstr("şu anda açık"));
}

TEST_F(SharedTemporary, ASocketSaysThatAProgramRuns) {
    tree.add("tmp/klasör", {test::socket("s")});
    tree.add("tmp", {test::socket("s")});
    EXPECT_THAT(objection("klasör"), HasSubstr("bağlantı noktası"));
    EXPECT_THAT(objection("s"), HasSubstr("bağlantı noktası"));
}

TEST_F(SharedTemporary, ASocketDeepInsideSaysSoToo) {
    tree.add("tmp/klasör", {folder("bir", {folder("iki", {test::socket("s")})})});
    EXPECT_THAT(objection("klasör"), HasSubstr("bağlantı noktası"));
}

TEST_F(SharedTemporary, WhatIsNotOursOrIsGoneIsLeft) {
    EXPECT_THAT(objection("yok"), HasSubstr("sana ait değil"));
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    ASSERT_EQ(::chown(tree.path("tmp/dosya").c_str(), 4711, 4711), 0);
    EXPECT_THAT(objection("dosya"), HasSubstr("sana ait değil"));
}

TEST_F(SharedTemporary, FilesOfOthersInOnesOwnFolderAreLeft) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    ASSERT_EQ(::chown(tree.path("tmp/klasör/x").c_str(), 4711, 4711), 0);
    EXPECT_THAT(objection("klasör"), HasSubstr("sana ait olmayan"));
}

TEST_F(SharedTemporary, AFolderThatAllMayWriteToIsSharedWithoutItsMarkToo) {
    ASSERT_EQ(::chmod(folders.temp.c_str(), 0777), 0);
    EXPECT_THAT(objection("dosya", 0), HasSubstr("son 10 günde değişmiş"));
}

TEST_F(SharedTemporary, APrivateFolderIsNotAskedAbout) {
    ASSERT_EQ(::chmod(folders.temp.c_str(), 0700), 0);
    EXPECT_EQ(objection("dosya", 0), "");
}

}  // namespace
}  // namespace ulvak
