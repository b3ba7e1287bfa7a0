#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/linux/trash_folder.h"
#include "platform/linux/trash_world.h"
#include "platform/process.h"
#include "platform/trash.h"
#include "platform/user_folders.h"
#include "platform/volume.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"
#include "support/linux/disk_image.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using test::DeadMount;
using test::folder;
using test::link;
using test::TempTree;

TEST(DeadMounts, ALinkToOneLeadsToNothing) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    TempTree tree({folder("nas"), folder("near"), link("out", "nas/room"), link("up", "nas/../near"),
                   link("chain", "out"), link("itself", "nas"), link("good", "near")});
    tree.add({link("absolute", tree.path("nas/room")), link("absolute-good", tree.path("near"))});
    test::withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        for (const char* name : {"out", "up", "chain", "itself", "absolute"})
            EXPECT_FALSE(existsIn(tree.path(), name)) << name;
        for (const char* name : {"good", "absolute-good"})
            EXPECT_TRUE(existsIn(tree.path(), name)) << name;
        EXPECT_FALSE(nas.wasAsked());
    });
}

TEST(DeadMounts, AreKnownFromTheSystemsTable) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("nas"), folder("memory"), folder("again"), folder("room")});
    test::withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        ASSERT_TRUE(test::mountMemory(tree.path("memory")));
        ASSERT_TRUE(test::mountAgain(tree.path("room"), tree.path("again")));
        const auto all = mounts();
        const auto at = [&](const std::string& path) { return *std::ranges::find(all, path, &Mount::path); };
        EXPECT_TRUE(at(tree.path("nas")).mayHang);
        EXPECT_FALSE(at(tree.path("memory")).mayHang);
        EXPECT_FALSE(at("/").mayHang);
        const Reach reach({&tree.path(), 1}, Reach::Others::none);
        EXPECT_TRUE(reach.includes(tree.path("again"))) << "the same volume, a second time";
        EXPECT_FALSE(reach.includes(tree.path("memory")));
        EXPECT_FALSE(reach.includes(tree.path("nas/x")));
        EXPECT_FALSE(nas.wasAsked());
    });
}

TEST(DeadMounts, AHomeTrashThereIsThatOfAnotherVolume) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    if (const auto reason = test::whyNoDiskImages())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home")});
    const std::string home = tree.path("home");
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountImage(tree.path("image"), home));
        ASSERT_EQ(::mkdir((home + "/nas").c_str(), 0700), 0);
        ASSERT_EQ(::mkdir((home + "/item").c_str(), 0700), 0);
        const DeadMount nas(home + "/nas");
        ASSERT_TRUE(nas.isMounted());
        const test::ScopedEnvironment environment({{"HOME", home}, {"XDG_DATA_HOME", home + "/nas/data"}});
        const std::string own = home + "/.Trash-" + std::to_string(::geteuid());
        const auto moved = trash(home + "/item");
        ASSERT_TRUE(moved) << moved.error().code.message();
        EXPECT_EQ(moved->location, own + "/files/item");
        const TrashFolders trashes = trashFolders();
        EXPECT_NE(std::ranges::find(trashes.folders, own, &TrashFolder::path), trashes.folders.end());
        EXPECT_FALSE(trashes.isAll);
        EXPECT_FALSE(nas.wasAsked());
    });
}

TEST(DeadMounts, ATemporaryFolderThatTheEnvironmentNamesIsNotLookedAt) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home", {folder("nas"), folder("set"), link("temp", "nas/tmp")})});
    test::withPrivateMounts([&] {
        const DeadMount nas(tree.path("home/nas"));
        ASSERT_TRUE(nas.isMounted());
        const test::ScopedEnvironment environment({{"HOME", tree.path("home")},
                                                   {"TMPDIR", tree.path("home/temp")},
                                                   {"XDG_DATA_HOME", tree.path("home/nas/data")}});
        EXPECT_EQ(temporaryDirectory(), tree.path("home/temp"));
        EXPECT_FALSE(nas.wasAsked());
    });
}

TEST(DeadMounts, ATrashThereIsNeitherLookedAtNorUsed) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home", {folder("nas"), folder(".local", {link("share", "../nas/share")})})});
    test::withPrivateMounts([&] {
        const DeadMount nas(tree.path("home/nas"));
        ASSERT_TRUE(nas.isMounted());
        for (const auto& data : {std::optional(tree.path("home/nas/data")), std::optional<std::string>()}) {
            const test::ScopedEnvironment environment({{"HOME", tree.path("home")}, {"XDG_DATA_HOME", data}});
            const auto trash = homeTrash();
            ASSERT_FALSE(trash);
            EXPECT_EQ(trash.error(), std::errc::cross_device_link) << "as any Trash on another volume";
            EXPECT_FALSE(trashFolders().isAll);
            EXPECT_FALSE(nas.wasAsked());
        }
    });
}

TEST(DeadMounts, WhatIsInstalledThereIsUnknownAndNotAskedFor) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("nas"), folder("share", {link("applications", "../nas/applications")})});
    test::withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        const test::ScopedEnvironment environment(
            {{"HOME", tree.path()}, {"PATH", tree.path("nas/bin")}, {"XDG_DATA_HOME", tree.path("share")}});
        EXPECT_EQ(hasCommand("ulvak-absent"), std::nullopt);
        EXPECT_EQ(hasCommand("sh"), true);
        const auto installed = installedApplications();
        ASSERT_TRUE(installed);
        EXPECT_FALSE(installed->isComplete);
        EXPECT_FALSE(nas.wasAsked());
    });
}

}  // namespace
}  // namespace ulvak::platform
