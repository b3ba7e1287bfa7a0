#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <stop_token>
#include <string>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/trash.h"
#include "platform/user_folders.h"
#include "support/environment.h"
#include "support/temp_tree.h"

// Services that report on this very machine: what holds for their answers everywhere.

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
    const auto names = runningApplications();
    EXPECT_TRUE(std::ranges::none_of(names, [](const std::string& name) { return name.empty(); }));
}

TEST(Trash, SaysWhatIsNotThere) {
    const test::TempTree tree;
    const auto folder = Directory::open(tree.path());
    ASSERT_TRUE(folder);
    const auto result = moveToTrash(*folder, "absent", ItemIdentity(), tree.path("absent"));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code, std::errc::no_such_file_or_directory) << result.error().detail;
    EXPECT_EQ(result.error().path, tree.path("absent"));
}

TEST(Trash, OfTheSystemsOwnHomeIsEmptiedByAProgramWithAnAbsolutePath) {
    const test::ScopedEnvironment environment({{"HOME", std::nullopt}, {"XDG_DATA_HOME", std::nullopt}});
    if (::getpwuid(::getuid()) == nullptr)
        GTEST_SKIP() << "the system does not know this user";
    const auto command = trashEmptyingCommand(trashDirectory(homeDirectory()));
    ASSERT_TRUE(command);
    EXPECT_TRUE(command->program.starts_with('/'));
    EXPECT_FALSE(command->arguments.empty());
    EXPECT_FALSE(trashEmptyingCommand("/"));
    const test::TempTree tree({test::folder("Trash")});
    EXPECT_FALSE(trashEmptyingCommand(tree.path("Trash"))) << "a folder beside it";
    if (!fileInfo(homeDirectory()))
        GTEST_SKIP() << "this user's home is not there";
    // Another path to the home folder is still the home folder.
    const test::TempTree names({test::link("home", homeDirectory())});
    const test::ScopedEnvironment linked({{"HOME", names.path("home")}});
    EXPECT_TRUE(trashEmptyingCommand(trashDirectory(homeDirectory())));
}

TEST(Trash, OfAnotherDataFolderIsNotTheDesktopsToEmpty) {
    const test::TempTree tree({test::folder("Trash")});
    const test::ScopedEnvironment environment({{"HOME", std::nullopt}, {"XDG_DATA_HOME", tree.path()}});
    EXPECT_FALSE(trashEmptyingCommand(tree.path("Trash")));
}

TEST(Trash, OfAnotherHomeIsNotTheDesktopsToEmpty) {
    const test::TempTree tree({test::folder("home")});
    const test::ScopedEnvironment environment({{"HOME", tree.path("home")}, {"XDG_DATA_HOME", std::nullopt}});
    EXPECT_FALSE(trashEmptyingCommand(trashDirectory(homeDirectory())));
    EXPECT_FALSE(trashEmptyingCommand(trashDirectory("/root")));
    const test::ScopedEnvironment data({{"XDG_DATA_HOME", tree.path("home/data")}});
    EXPECT_FALSE(trashEmptyingCommand(trashDirectory(homeDirectory())));
}

TEST(Trash, HasBothFoldersOrNeither) {
    EXPECT_EQ(trashLayout().items.empty(), trashLayout().notes.empty());
}

}  // namespace
}  // namespace ulvak::platform
