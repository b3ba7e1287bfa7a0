#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/guarded_folders.h"
#include "platform/program.h"
#include "platform/running_applications.h"
#include "platform/trash.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

// The services that answer with what this very machine has: what holds for their answers everywhere.

namespace ulvak::platform {
namespace {

TEST(Program, KnowsItsOwnFile) {
    const auto own = ownProgram();
    ASSERT_TRUE(own);
    EXPECT_TRUE(own->starts_with('/'));
    EXPECT_EQ(own->find('\0'), std::string::npos);
    EXPECT_EQ(resolvedPath(*own), *own);
    EXPECT_EQ(::access(own->c_str(), X_OK), 0);
}

TEST(Program, SaysWhyItCannotBecomeAnother) {
    const test::TempTree tree({test::textFile("no program", "x")});
    EXPECT_EQ(becomeProgram(tree.path("absent"), {}), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(becomeProgram(tree.path("no program"), {}));
}

TEST(GuardedFolders, LieInTheHomeOrAreAbsolute) {
    const GuardedFolders folders = guardedFolders("/ev/ayşe");
    const auto isInHome = [](const std::string& path) { return path.starts_with("/ev/ayşe/"); };
    EXPECT_GT(std::ranges::count_if(folders.withContents, isInHome), 3);
    for (const auto& paths : {folders.themselves, folders.withContents})
        EXPECT_TRUE(
            std::ranges::all_of(paths, [](const std::string& path) { return path.starts_with('/'); }));
    EXPECT_NE(std::ranges::find(folders.withContents, "/ev/ayşe/.ssh"), folders.withContents.end());
}

TEST(RunningApplications, HaveNames) {
    // Which are running is this machine's matter, and there may be none.
    const auto names = runningApplications();
    EXPECT_TRUE(std::ranges::none_of(names, [](const std::string& name) { return name.empty(); }));
}

TEST(Trash, SaysWhatIsNotThere) {
    const test::TempTree tree;
    test::inChild([&] {
        const test::ScopedEnvironment environment({{"HOME", tree.path()}, {"XDG_DATA_HOME", std::nullopt}});
        const auto result = moveToTrash(tree.path("absent"));
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().code, std::errc::no_such_file_or_directory) << result.error().detail;
        EXPECT_EQ(result.error().path, tree.path("absent"));
        EXPECT_FALSE(result.error().detail.empty());
    });
}

TEST(Trash, IsEmptiedByAProgramWithAnAbsolutePath) {
    EXPECT_TRUE(trashEmptyingCommand().program.starts_with('/'));
    EXPECT_FALSE(trashEmptyingCommand().arguments.empty());
    EXPECT_EQ(trashLayout().items.empty(), trashLayout().notes.empty());
}

}  // namespace
}  // namespace ulvak::platform
