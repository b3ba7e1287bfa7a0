#include "clean/cleaner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "clean_support.h"
#include "core/paths.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Cleaner, RemovesAFolderForGoodAndReturnsItsScannedSize) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto freed =
            cleaner().clean(finding({tree.path("home/proje/build")}, 12345), CleanMode::permanent);
        ASSERT_TRUE(freed) << text(freed.error());
        EXPECT_EQ(*freed, 12345);
        EXPECT_FALSE(exists(tree.path("home/proje/build")));
        EXPECT_TRUE(exists(tree.path("home/proje/main.c")));
    });
}

TEST(Cleaner, CountsNothingAsFreedThatOtherNamesHold) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Finding shared = finding({tree.path("home/proje/build")}, 12345);
        shared.heldElsewhere = 12000;
        const auto freed = cleaner().clean(shared, CleanMode::permanent);
        ASSERT_TRUE(freed) << text(freed.error());
        EXPECT_EQ(*freed, 345);
    });
}

TEST(Cleaner, MovesAFolderToTheTrash) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto freed = cleaner().clean(finding({tree.path("home/proje/build")}, 7), CleanMode::trash);
        ASSERT_TRUE(freed) << text(freed.error());
        EXPECT_EQ(*freed, 7);
        EXPECT_FALSE(exists(tree.path("home/proje/build")));
        EXPECT_TRUE(exists(tree.path("home/.local/share/Trash/files/build/inner/b")));
        EXPECT_TRUE(exists(tree.path("home/.local/share/Trash/info/build.trashinfo")));
    });
}

TEST(Cleaner, SaysWhatMayBeRemovedInTheUsersOwnFolders) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        EXPECT_TRUE(cleaner().isAllowed(tree.path("home/one")));
        EXPECT_TRUE(cleaner().isAllowed(tree.path("home/Documents/x")));
        for (const char* place : {"home", "home/Documents", "home/one/../../home", "elsewhere"})
            EXPECT_FALSE(cleaner().isAllowed(tree.path(place))) << place;
    });
}

TEST(Cleaner, AFindingWhoseLastItemIsProtectedRemovesNothing) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        for (const CleanMode mode : {CleanMode::trash, CleanMode::permanent}) {
            const auto freed = cleaner().clean(
                finding({tree.path("home/one"), tree.path("home/two"), tree.path("home/Documents")}), mode);
            ASSERT_FALSE(freed);
            EXPECT_EQ(text(freed.error()), "~/Documents korumalı bir konum; Ulvak burayı silmez.");
            EXPECT_TRUE(exists(tree.path("home/one")));
            EXPECT_TRUE(exists(tree.path("home/two")));
        }
    });
}

TEST(Cleaner, RemovesBesideTheTemporaryFolderOnlyWhereThatMakesACache) {
    const TempTree tree({folder("home"), folder("data", {folder("T"), folder("tmp"),
                                                         folder("C", {file("one", 1), file("two", 1)})})});
    const auto cleanWith = [&](const char* temp, const char* name) {
        const ScopedEnvironment environment(
            {{"HOME", tree.path("home")}, {"TMPDIR", tree.path(temp)}, {"XDG_DATA_HOME", std::nullopt}});
        for (const CleanMode mode : {CleanMode::trash, CleanMode::permanent})
            (void)cleaner().clean(finding({tree.path(name)}), mode);
    };
    cleanWith("data/tmp", "data/C/one");
    cleanWith("data/T", "data/C/two");
    EXPECT_TRUE(exists(tree.path("data/C/one")));
    EXPECT_FALSE(exists(tree.path("data/C/two")));
}

TEST(Cleaner, ARefusalShowsThePathAsItWasGiven) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto freed =
            cleaner().clean(finding({tree.path("home/proje/../Documents/")}), CleanMode::permanent);
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()), "~/proje/../Documents/ korumalı bir konum; Ulvak burayı silmez.");
    });
}

TEST(Cleaner, StopsAtTheFirstItemThatFails) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto freed =
            cleaner().clean(finding({tree.path("home/one"), tree.path("home/gone"), tree.path("home/two")}),
                            CleanMode::permanent);
        ASSERT_FALSE(freed);
        const auto* error = std::get_if<platform::FileError>(&freed.error());
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->code, std::errc::no_such_file_or_directory);
        EXPECT_EQ(error->path, tree.path("home/gone"));
        EXPECT_FALSE(exists(tree.path("home/one")));
        EXPECT_TRUE(exists(tree.path("home/two")));
    });
}

TEST(Cleaner, EndsBetweenItemsWhenItIsAskedTo) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        for (const CleanMode mode : {CleanMode::permanent, CleanMode::trash}) {
            const std::string first = mode == CleanMode::trash ? "home/three" : "home/one";
            std::stop_source stop;
            Cleaner::Services services = Cleaner::Services::system();
            services.removeItem = [&](const auto& parent, const auto& name, const auto& item,
                                      const auto& kept) {
                stop.request_stop();
                return Cleaner::Services::system().removeItem(parent, name, item, kept);
            };
            services.moveToTrash = [&](const auto& parent, const auto& name, const auto& item,
                                       const auto& path, auto* ahead) {
                stop.request_stop();
                return Cleaner::Services::system().moveToTrash(parent, name, item, path, ahead);
            };
            CleanRun run{.stop = stop.get_token()};
            const auto freed = cleaner(services).clean(
                finding({tree.path(first), tree.path("home/two"), tree.path("home/proje")}), mode, run);
            ASSERT_FALSE(freed);
            EXPECT_EQ(std::get<CleanError>(freed.error()),
                      CleanError{CleanError::Failed{
                          "Temizlik durduruldu: 3 öğeden 1 tanesi kaldırıldı, kalanlara dokunulmadı."}});
            EXPECT_FALSE(exists(tree.path(first))) << "what was being removed is finished";
            EXPECT_TRUE(exists(tree.path("home/two")));
            EXPECT_EQ(run.done, 1U);
            ASSERT_EQ(run.trashed.size(), mode == CleanMode::trash ? 1U : 0U);
            if (mode == CleanMode::trash) {
                EXPECT_EQ(run.trashed.front().origin, tree.path(first));
                EXPECT_TRUE(exists(run.trashed.front().location));
            }
        }
    });
}

TEST(Cleaner, AskedToStopBeforeItBeginsItDoesNothing) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        std::stop_source stop;
        stop.request_stop();
        CleanRun run{.stop = stop.get_token()};
        const auto freed = cleaner().clean(finding({tree.path("home/one")}), CleanMode::permanent, run);
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()), "Temizlik durduruldu: hiçbir öğeye dokunulmadı.");
        EXPECT_EQ(run.done, 0U);
        EXPECT_TRUE(exists(tree.path("home/one")));
        CleanRun whole;
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/one"), tree.path("home/two")}),
                                    CleanMode::permanent, whole));
        EXPECT_EQ(whole.done, 2U);
    });
}

TEST(Cleaner, AFindingThatCannotBeCleanedFailsWithItsReason) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Finding kept = finding({tree.path("home/one")});
        kept.action = {CleanAction::None{"Bunu simülatör yöneticisi siler."}};
        const auto freed = cleaner().clean(kept, CleanMode::permanent);
        ASSERT_FALSE(freed);
        EXPECT_EQ(std::get<CleanError>(freed.error()),
                  CleanError{CleanError::Failed{"Bunu simülatör yöneticisi siler."}});
        EXPECT_TRUE(exists(tree.path("home/one")));
    });
}

TEST(Cleaner, DeletesASimulatorThroughTheDeveloperTools) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Finding simulator = finding({"/"}, 99);
        simulator.action = {CleanAction::DeleteSimulator{"ABC-123"}};
        Cleaner::Services services = Cleaner::Services::system();
        std::vector<std::string> command;
        Shell::Result result{.status = 0};
        services.run = [&](const std::string& program, std::span<const std::string> arguments) {
            command = {program};
            command.insert(command.end(), arguments.begin(), arguments.end());
            return result;
        };
        EXPECT_EQ(cleaner(services).clean(simulator, CleanMode::trash), 99);
        EXPECT_THAT(command, ElementsAre("/usr/bin/xcrun", "simctl", "delete", "ABC-123"));
        result = {.status = 148, .output = "out", .error = "Invalid device\n"};
        const auto freed = cleaner(services).clean(simulator, CleanMode::permanent);
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()), "Simülatör silinemedi: Invalid device\n");
    });
}

TEST(Cleaner, NoWordForManySimulatorsIsTakenForOne) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Cleaner::Services services = Cleaner::Services::system();
        services.run = [](const std::string&, std::span<const std::string>) {
            ADD_FAILURE() << "nothing is started";
            return Shell::Result{};
        };
        for (const char* udid : {"all", "unavailable", "booted", "", "-A", "--help", "AB CD", "A,B"}) {
            Finding simulator = finding({"/"});
            simulator.action = {CleanAction::DeleteSimulator{udid}};
            const auto freed = cleaner(services).clean(simulator, CleanMode::permanent);
            ASSERT_FALSE(freed) << udid;
            EXPECT_EQ(text(freed.error()), "Simülatör silinemedi: kimliği tanınmıyor.");
        }
    });
}

TEST(Cleaner, PassesOnThatAProgramCannotBeStarted) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Finding simulator = finding({"/"});
        simulator.action = {CleanAction::DeleteSimulator{"ABC"}};
        Cleaner::Services services = Cleaner::Services::system();
        services.run = [&](const std::string&, std::span<const std::string> arguments) {
            return Shell::run(tree.path("no developer tools"), arguments);
        };
        const auto freed = cleaner(services).clean(simulator, CleanMode::trash);
        ASSERT_FALSE(freed);
        EXPECT_EQ(std::get<StartError>(freed.error()).code, std::errc::no_such_file_or_directory);
        EXPECT_EQ(text(freed.error()), "“/usr/bin/xcrun” başlatılamadı: program bu bilgisayarda yok.");
    });
}

TEST(Cleaner, RunsProgramsThroughTheSystem) {
    const std::vector<std::string> arguments = {"-c", "echo no >&2; exit 3"};
    const auto result = Cleaner::Services::system().run("/bin/sh", arguments);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 3);
    EXPECT_EQ(result->error, "no\n");
}

TEST(Cleaner, RemovesALinkAndNotWhereItLeads) {
    TempTree tree(lifelike());
    tree.add("home", {link("way", tree.path("canaries"))});
    inHome(tree, [&] {
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/way")}), CleanMode::permanent));
        EXPECT_FALSE(exists(tree.path("home/way")));
        EXPECT_TRUE(exists(tree.path("canaries/canary")));
    });
}

TEST(Cleaner, FollowsNoLinkOnTheWayToAnItem) {
    TempTree tree(lifelike());
    tree.add("home", {link("way", tree.path("canaries"))});
    inHome(tree, [&] {
        for (const CleanMode mode : {CleanMode::trash, CleanMode::permanent}) {
            const auto freed = cleaner().clean(finding({tree.path("home/way/canary")}), mode);
            ASSERT_FALSE(freed);
            EXPECT_EQ(std::get<platform::FileError>(freed.error()).code,
                      std::errc::too_many_symbolic_link_levels);
            EXPECT_TRUE(exists(tree.path("canaries/canary")));
        }
    });
}

TEST(Cleaner, AFolderThatHoldsTheHomeFolderIsProtected) {
    const TempTree tree({folder("tmp", {folder("a", {folder("home", {textFile("x", "x")})})})});
    const ScopedEnvironment environment(
        {{"HOME", tree.path("tmp/a/home")}, {"TMPDIR", tree.path("tmp")}, {"XDG_DATA_HOME", std::nullopt}});
    const auto freed = cleaner().clean(finding({tree.path("tmp/a")}), CleanMode::permanent);
    ASSERT_FALSE(freed);
    EXPECT_TRUE(std::holds_alternative<CleanError>(freed.error()));
    EXPECT_TRUE(exists(tree.path("tmp/a/home/x")));
}

TEST(Cleaner, AHomeFolderReachedThroughALinkIsProtectedUnderItsOtherNameToo) {
    const TempTree tree({folder("tmp", {folder("u", {textFile("x", "x")})}), link("home", "tmp/u")});
    inHome(tree, [&] {
        const auto freed = cleaner().clean(finding({tree.path("tmp/u")}), CleanMode::permanent);
        ASSERT_FALSE(freed);
        EXPECT_TRUE(std::holds_alternative<CleanError>(freed.error()));
        EXPECT_TRUE(exists(tree.path("tmp/u/x")));
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/x")}), CleanMode::permanent));
        EXPECT_FALSE(exists(tree.path("tmp/u/x")));
    });
}

TEST(Cleaner, WhatHoldsAnotherVolumeIsLeftAlone) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree(lifelike());
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountMemory(tree.path("home/proje/build/inner")));
        std::ofstream(tree.path("home/proje/build/inner/precious")) << "p";
        for (const CleanMode mode : {CleanMode::trash, CleanMode::permanent}) {
            const auto freed = cleaner().clean(finding({tree.path("home/proje")}), mode);
            ASSERT_FALSE(freed);
            EXPECT_EQ(std::get<platform::FileError>(freed.error()).code, std::errc::device_or_resource_busy);
            EXPECT_TRUE(exists(tree.path("home/proje/build/inner/precious")));
            EXPECT_TRUE(exists(tree.path("home/proje/main.c")));
        }
    });
}

TEST(Cleaner, AFileSystemWithoutATrashKeepsTheItem) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree(lifelike());
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountMemory(tree.path("tmp")));
        std::ofstream(tree.path("tmp/file")) << "f";
        const auto freed = cleaner().clean(finding({tree.path("tmp/file")}), CleanMode::trash);
        ASSERT_FALSE(freed);
        const auto& error = std::get<platform::FileError>(freed.error());
        EXPECT_EQ(error.code, std::errc::not_supported);
        EXPECT_EQ(text(freed.error()), "“Geçici klasör/file” kaldırılamadı: bu diskte çöp kutusu yok.");
        EXPECT_TRUE(exists(tree.path("tmp/file")));
    });
}

TEST(Cleaner, EmptiesTheTrashDirectly) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        ASSERT_TRUE(cleaner().clean(finding({tree.path("home/proje")}), CleanMode::trash));
        Cleaner::Services services = Cleaner::Services::system();
        services.runUntil = [](const std::string&, std::span<const std::string>, const std::stop_token&) {
            ADD_FAILURE() << "no program is needed";
            return Shell::Result{};
        };
        EXPECT_TRUE(cleaner(services).emptyTrash());
        EXPECT_TRUE(std::filesystem::is_empty(tree.path("home/.local/share/Trash")));
        EXPECT_TRUE(cleaner(services).emptyTrash()) << "an empty Trash is emptied";
        ASSERT_TRUE(cleaner().clean(finding({tree.path("home/one")}), CleanMode::trash))
            << "and usable again";
    });
}

TEST(Cleaner, ATrashThatKeepsOnlyTheFileBrowsersOwnFileNeedsNoProgram) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        std::filesystem::create_directories(UserFolders::ofCurrentUser().trash);
        std::ofstream(UserFolders::ofCurrentUser().trash + "/.DS_Store") << "d";
        Cleaner::Services services = withDesktopsTrash();
        int started = 0;
        services.removeItem = [](const platform::Directory&, const std::string& name,
                                 const platform::ItemIdentity&, const std::set<platform::FileNumber>&) {
            return std::expected<void, platform::FileError>(
                std::unexpect, platform::FileError{.code = {EPERM, std::generic_category()}, .path = name});
        };
        services.runUntil = [&](const std::string&, std::span<const std::string>, const std::stop_token&) {
            ++started;
            return Shell::Result{};
        };
        EXPECT_TRUE(cleaner(services).emptyTrash());
        EXPECT_EQ(started, 0);
        std::ofstream(UserFolders::ofCurrentUser().trash + "/other") << "o";
        EXPECT_FALSE(cleaner(services).emptyTrash()) << "the desktop has not removed it either";
        EXPECT_EQ(started, 1);
    });
}

TEST(Cleaner, ATrashThatCannotBeListedIsLeftToTheDesktop) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Cleaner::Services services = withDesktopsTrash();
        std::vector<std::string> command;
        services.runUntil = [&](const std::string& program, std::span<const std::string> arguments,
                                const std::stop_token&) {
            command = {program};
            command.insert(command.end(), arguments.begin(), arguments.end());
            return Shell::Result{.status = 1, .error = "no service"};
        };
        makeTrashALink(tree);
        const auto emptied = cleaner(services).emptyTrash();
        ASSERT_FALSE(emptied);
        EXPECT_EQ(text(emptied.error()), "Çöp kutusu boşaltılamadı: no service");
        EXPECT_THAT(command, ElementsAre("/desktop", "empty", UserFolders::ofCurrentUser().trash));
    });
}

TEST(Cleaner, ATrashThatIsALinkIsNotEmptiedThroughIt) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        makeTrashALink(tree);
        Cleaner::Services services = withDesktopsTrash();
        services.runUntil = [](const std::string&, std::span<const std::string>, const std::stop_token&) {
            return Shell::Result{};
        };
        EXPECT_FALSE(cleaner(services).emptyTrash()) << "nobody can tell what is left";
        EXPECT_TRUE(exists(tree.path("canaries/canary")));
    });
}

TEST(Cleaner, AsksNoDesktopToEmptyTheTrashOfAnotherHome) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        // The desktop would empty the Trash of the user who runs the test.
        Cleaner::Services services = Cleaner::Services::system();
        services.runUntil = [](const std::string&, std::span<const std::string>, const std::stop_token&) {
            ADD_FAILURE() << "the desktop was asked";
            return Shell::Result{};
        };
        services.removeItem = [](const platform::Directory&, const std::string& name,
                                 const platform::ItemIdentity&, const std::set<platform::FileNumber>&) {
            return std::expected<void, platform::FileError>(
                std::unexpect, platform::FileError{.code = {EPERM, std::generic_category()}, .path = name});
        };
        EXPECT_TRUE(cleaner(services).emptyTrash()) << "where there is no Trash, nothing is left in it";
        std::filesystem::create_directories(UserFolders::ofCurrentUser().trash);
        std::ofstream(UserFolders::ofCurrentUser().trash + "/kept") << "k";
        const auto emptied = cleaner(services).emptyTrash();
        ASSERT_FALSE(emptied);
        EXPECT_EQ(text(emptied.error()),
                  "Çöp kutusu boşaltılamadı: masaüstünün çöp kutusu başka bir klasör olabilir, ona "
                  "dokunulmadı.");
    });
}

TEST(Cleaner, NamesRunningApplicationsInTheFindingsSpelling) {
    const std::vector<std::string> running = {"Xcode", "İstanbul", "Slack"};
    EXPECT_THAT(Cleaner::runningApps(std::vector<std::string>{"xcode"}, running), ElementsAre("xcode"));
    EXPECT_THAT(Cleaner::runningApps(std::vector<std::string>{"slack", "Pages", "XCODE", "slack"}, running),
                ElementsAre("slack", "XCODE", "slack"));
    EXPECT_THAT(Cleaner::runningApps(std::vector<std::string>{}, running), IsEmpty());
    EXPECT_THAT(Cleaner::runningApps(std::vector<std::string>{}), IsEmpty());
}

TEST(Cleaner, RunningProcessesAreFoundByNameOrPattern) {
    const std::vector<std::string> running = {"wineserver", "qemu-system-x86_64", "KODI.bin"};
    const auto found = [&](std::vector<std::string> among) {
        return Cleaner::runningProcesses(among, running);
    };
    EXPECT_THAT(found({"rclone", "qemu-system-*", "WineServer"}), ElementsAre("qemu-system-*", "WineServer"));
    EXPECT_THAT(found({"kodi*", "kodi", "*"}), ElementsAre("kodi*", "*"));
    EXPECT_THAT(found({"wine", "server", "qemu-system"}), IsEmpty()) << "whole names only";
    EXPECT_THAT(found({}), IsEmpty());
    EXPECT_THAT(Cleaner::runningProcesses(std::vector<std::string>{}), IsEmpty());
}

TEST(CleanError, SaysWhatItMeansInTurkish) {
    EXPECT_EQ(errorDescription(CleanError{CleanError::Protected{"~/Library"}}),
              "~/Library korumalı bir konum; Ulvak burayı silmez.");
    EXPECT_EQ(errorDescription(CleanError{CleanError::AppsRunning{{"Xcode", "Slack"}}}),
              "Önce şunları kapat: Xcode, Slack");
    EXPECT_EQ(errorDescription(CleanError{CleanError::Failed{"Olmadı."}}), "Olmadı.");
}

TEST(CleanError, SaysWhatIsRareByItsNumberAndNeverInTheSystemsWords) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        for (int number = 1; number < 200; ++number) {
            const std::error_code code(number, std::generic_category());
            for (const CleanFailure& failure : {CleanFailure(platform::FileError{.code = code, .path = "/a"}),
                                                CleanFailure(StartError{.program = "/b", .code = code})}) {
                const std::string said = text(failure);
                EXPECT_FALSE(said.contains(code.message())) << said;
                EXPECT_TRUE(said.ends_with(".")) << said;
            }
        }
        const std::error_code rare = std::make_error_code(std::errc::protocol_error);
        EXPECT_EQ(
            text(platform::FileError{.code = rare, .path = "/a"}),
            "“/a” kaldırılamadı: sistem beklenmedik bir hata bildirdi (" + std::to_string(EPROTO) + ").");
    });
}

TEST(CleanError, IsEqualInKindAndContent) {
    const std::vector<CleanError> all = {{CleanError::Protected{"a"}},     {CleanError::Protected{"b"}},
                                         {CleanError::AppsRunning{{"a"}}}, {CleanError::AppsRunning{{"b"}}},
                                         {CleanError::Failed{"a"}},        {CleanError::Failed{"b"}}};
    for (std::size_t left = 0; left < all.size(); ++left) {
        for (std::size_t right = 0; right < all.size(); ++right)
            EXPECT_EQ(all[left] == all[right], left == right) << left << " and " << right;
    }
}

}  // namespace
}  // namespace ulvak
