#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "platform/linux/trash_world.h"
#include "support/isolation.h"
#include "support/linux/disk_image.h"

// Which Trash an item goes to, on volumes set up by the test.

namespace ulvak::platform {
namespace {

using test::exists;
using test::folder;
using test::TempTree;
namespace fs = std::filesystem;

/// A volume at "disk", next to a home on another.
class TrashPlaces : public testing::Test {
protected:
    void SetUp() override {
        if (const auto reason = test::whyNoDiskImages())
            GTEST_SKIP() << *reason;
    }

    void onVolume(const std::function<void()>& body,
                  std::source_location where = std::source_location::current()) {
        test::withPrivateMounts(
            [&] {
                const HomeIn home(tree.path("home"));
                ASSERT_TRUE(test::mountImage(tree.path("image"), disk));
                fs::create_directories(disk + "/klasör");
                std::ofstream(item) << "x";
                body();
            },
            where);
    }

    void expectNotTrashed(std::errc expected) {
        const auto moved = trash(item);
        ASSERT_FALSE(moved);
        EXPECT_EQ(moved.error().code, expected) << moved.error().code.message();
        EXPECT_EQ(test::textOf(item), "x");
        EXPECT_EQ(fs::exists(tree.path("home/.local/share/Trash/info")) &&
                      !fs::is_empty(tree.path("home/.local/share/Trash/info")),
                  false);
    }

    /// The trashed item's path in the volume; checks that its note is relative to the volume's root.
    std::string placeOnDisk() {
        const auto moved = trash(item);
        EXPECT_TRUE(moved) << moved.error().code.message();
        if (!moved)
            return "";
        EXPECT_TRUE(exists(moved->location));
        const std::string trashPath = parentOf(parentOf(moved->location));
        const std::string note = test::textOf(trashPath + "/info/x.trashinfo");
        EXPECT_NE(note.find("\nPath=klas%C3%B6r/x\n"), std::string::npos) << note;
        EXPECT_TRUE(moved->location.starts_with(disk + "/")) << moved->location;
        return moved->location.substr(disk.size() + 1);
    }

    TempTree tree = TempTree({folder("home"), folder("disk"), folder("canaries")});
    std::string disk = tree.path("disk");
    std::string item = disk + "/klasör/x";
    std::string own = ".Trash-" + std::to_string(::geteuid());
    std::string user = std::to_string(::geteuid());
};

TEST_F(TrashPlaces, AnItemOfAnotherVolumeStaysOnIt) {
    onVolume([&] {
        EXPECT_EQ(placeOnDisk(), own + "/files/x");
        struct stat info{};
        ASSERT_EQ(::lstat((disk + "/" + own).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0700U);
    });
}

TEST_F(TrashPlaces, TheSharedTrashComesFirstWhereThereIsOne) {
    onVolume([&] {
        ASSERT_EQ(::mkdir((disk + "/.Trash").c_str(), 0700), 0);
        ASSERT_EQ(::chmod((disk + "/.Trash").c_str(), 01777), 0);
        EXPECT_EQ(placeOnDisk(), ".Trash/" + user + "/files/x");
        EXPECT_FALSE(exists(disk + "/" + own));
    });
}

TEST_F(TrashPlaces, ASharedTrashThatIsALinkOrNotStickyIsNotUsed) {
    onVolume([&] {
        ASSERT_EQ(::mkdir((disk + "/real").c_str(), 0700), 0);
        ASSERT_EQ(::chmod((disk + "/real").c_str(), 01777), 0);
        ASSERT_EQ(::symlink("real", (disk + "/.Trash").c_str()), 0);
        EXPECT_EQ(placeOnDisk(), own + "/files/x");
        EXPECT_TRUE(fs::is_empty(disk + "/real"));
    });
    onVolume([&] {
        ASSERT_EQ(::mkdir((disk + "/.Trash").c_str(), 0777), 0);
        EXPECT_EQ(placeOnDisk(), own + "/files/x");
        EXPECT_TRUE(fs::is_empty(disk + "/.Trash"));
    });
}

TEST_F(TrashPlaces, ATrashThatIsALinkOrSomebodyElsesIsNotUsed) {
    onVolume([&] {
        ASSERT_EQ(::symlink(tree.path("canaries").c_str(), (disk + "/" + own).c_str()), 0);
        expectNotTrashed(std::errc::too_many_symbolic_link_levels);
    });
    onVolume([&] {
        ASSERT_EQ(::mkdir((disk + "/" + own).c_str(), 0700), 0);
        ASSERT_EQ(::chown((disk + "/" + own).c_str(), test::unprivilegedId, test::unprivilegedId), 0);
        expectNotTrashed(std::errc::not_supported);
    });
    onVolume([&] {
        fs::create_directories(disk + "/" + own);
        fs::create_directory_symlink(tree.path("canaries"), disk + "/" + own + "/files");
        expectNotTrashed(std::errc::too_many_symbolic_link_levels);
    });
    EXPECT_TRUE(fs::is_empty(tree.path("canaries")));
}

TEST_F(TrashPlaces, ATrashThatOthersMayWriteToIsClosedToThemFirst) {
    onVolume([&] {
        fs::create_directories(disk + "/" + own);
        ASSERT_EQ(::chmod((disk + "/" + own).c_str(), 0777), 0);
        EXPECT_EQ(placeOnDisk(), own + "/files/x");
        struct stat info{};
        ASSERT_EQ(::lstat((disk + "/" + own).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0700U);
    });
}

TEST_F(TrashPlaces, AVolumeWhereThisUserMayMakeNoneHasNone) {
    onVolume([&] {
        ASSERT_EQ(::chmod(disk.c_str(), 0755), 0);
        ASSERT_EQ(::chmod((disk + "/klasör").c_str(), 0777), 0);
        ASSERT_EQ(::chmod(tree.path("home").c_str(), 0777), 0);
        test::asUnprivileged([&] { expectNotTrashed(std::errc::not_supported); });
    });
}

TEST_F(TrashPlaces, AReadOnlyVolumeKeepsItsItems) {
    onVolume([&] {
        ASSERT_EQ(::mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        expectNotTrashed(std::errc::read_only_file_system);
        EXPECT_FALSE(exists(disk + "/" + own));
    });
}

TEST_F(TrashPlaces, AFolderThatIsMountedTwiceHasATrashAtEach) {
    test::withPrivateMounts([&] {
        const HomeIn home(tree.path("home"));
        fs::create_directories(tree.path("home/work"));
        fs::create_directories(tree.path("home/again"));
        std::ofstream(tree.path("home/work/x")) << "x";
        ASSERT_TRUE(test::mountAgain(tree.path("home/work"), tree.path("home/again")));
        const auto moved = trash(tree.path("home/again/x"));
        ASSERT_TRUE(moved) << moved.error().code.message();
        EXPECT_EQ(moved->location, tree.path("home/again/" + own + "/files/x"));
        EXPECT_TRUE(fs::is_empty(tree.path("home/.local/share/Trash/info"))) << "a note without an item";
    });
}

TEST_F(TrashPlaces, WhatIsKeptInMemoryHasATrashOnlyBesideAHomeThere) {
    test::withPrivateMounts([&] {
        const HomeIn home(tree.path("home"));
        ASSERT_TRUE(test::mountMemory(disk));
        fs::create_directories(disk + "/klasör");
        std::ofstream(item) << "x";
        expectNotTrashed(std::errc::not_supported);
        EXPECT_FALSE(exists(disk + "/" + own));
        const HomeIn other(disk);
        const auto moved = trash(item);
        ASSERT_TRUE(moved) << moved.error().code.message();
        EXPECT_EQ(moved->location, disk + "/.local/share/Trash/files/x");
    });
}

TEST_F(TrashPlaces, ATrashOfTheHomeThatIsALinkIsToldAndNotFollowed) {
    const HomeIn home(tree.path("home"));
    fs::create_directories(tree.path("home/.local/share"));
    fs::create_directory_symlink(tree.path("canaries"), tree.path("home/.local/share/Trash"));
    std::ofstream(tree.path("home/x")) << "x";
    const auto moved = trash(tree.path("home/x"));
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().code, std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(moved.error().detail, tree.path("home/.local/share/Trash"));
    EXPECT_TRUE(exists(tree.path("home/x")));
    EXPECT_TRUE(fs::is_empty(tree.path("canaries")));
}

TEST_F(TrashPlaces, ListsTheTrashesThatAreThere) {
    onVolume([&] {
        EXPECT_TRUE(trashFolders().folders.empty() ||
                    std::ranges::none_of(trashFolders().folders, [&](const TrashFolder& trash) {
                        return trash.path.starts_with(tree.path());
                    }));
        ASSERT_TRUE(trash(item));
        std::ofstream(tree.path("home/y")) << "y";
        ASSERT_TRUE(trash(tree.path("home/y")));
        ASSERT_EQ(::mkdir((disk + "/.Trash").c_str(), 0700), 0);
        ASSERT_EQ(::chmod((disk + "/.Trash").c_str(), 01777), 0);
        fs::create_directories(disk + "/.Trash/" + user);
        std::vector<std::string> paths;
        for (const TrashFolder& trash : trashFolders().folders) {
            if (trash.path.starts_with(tree.path()) && trash.folder)
                paths.push_back(trash.path);
        }
        EXPECT_EQ(paths, (std::vector<std::string>{tree.path("home/.local/share/Trash"),
                                                   disk + "/.Trash/" + user, disk + "/" + own}));
    });
}

}  // namespace
}  // namespace ulvak::platform
