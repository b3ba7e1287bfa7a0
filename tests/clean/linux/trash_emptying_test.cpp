#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "clean/clean_support.h"
#include "support/linux/disk_image.h"

namespace ulvak {
namespace {

using namespace test;
namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::int64_t oneMegabyte = 1'048'576;

/// A home with one megabyte to be trashed, and a Trash with four from someone else.
std::vector<TreeEntry> homeWithTrash() {
    return {
        folder(
            "home",
            {folder("mine", {file("f", oneMegabyte)}), textFile("new", "n"),
             folder(".local",
                    {folder("share",
                            {folder("Trash",
                                    {folder("files", {folder("theirs", {file("g", 4 * oneMegabyte)})}),
                                     folder("info", {textFile("theirs.trashinfo", "[Trash Info]\n")})})})})}),
        folder("tmp"), folder("disk")};
}

std::vector<platform::TrashedItem> trashed(const std::vector<std::string>& paths) {
    CleanRun run;
    const auto freed = cleaner().clean(finding(paths), CleanMode::trash, run);
    EXPECT_TRUE(freed) << text(freed.error());
    return run.trashed;
}

const std::string trashFolder = "home/.local/share/Trash";

TEST(TrashContents, TellsWhatCameFromHere) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto ours = trashed({tree.path("home/mine"), tree.path("home/new")});
        const auto contents = Cleaner::trashContents(ours);
        EXPECT_EQ(contents.items, 3);
        EXPECT_EQ(contents.itemsFromHere, 2);
        EXPECT_GE(contents.bytes, 5 * oneMegabyte);
        EXPECT_GE(contents.bytesFromHere, oneMegabyte);
        EXPECT_LT(contents.bytesFromHere, 2 * oneMegabyte);
        EXPECT_TRUE(contents.isComplete);
        EXPECT_FALSE(contents.isAllFromHere());
        fs::rename(tree.path(trashFolder + "/files/theirs"), tree.path("home/restored"));
        EXPECT_TRUE(Cleaner::trashContents(ours).isAllFromHere());
    });
}

TEST(TrashContents, KnowsItsOwnItemsAgainByMoreThanTheirNames) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto ours = trashed({tree.path("home/one"), tree.path("home/two")});
        EXPECT_TRUE(Cleaner::trashContents(ours).isAllFromHere());
        fs::rename(ours[0].location, tree.path("home/one"));
        std::ofstream(ours[0].location) << "another file of that name";
        const auto contents = Cleaner::trashContents(ours);
        EXPECT_EQ(contents.items, 2);
        EXPECT_EQ(contents.itemsFromHere, 1);
        EXPECT_FALSE(contents.isAllFromHere());
    });
}

TEST(TrashContents, WithoutATrashThereIsNothing) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto contents = Cleaner::trashContents({});
        EXPECT_EQ(contents.items, 0);
        EXPECT_TRUE(contents.isAllFromHere());
        const auto emptied = cleaner().emptyTrash(contents);
        EXPECT_TRUE(emptied.isDone());
        EXPECT_EQ(emptied.bytes, 0);
    });
}

TEST(TrashContents, WhatCannotBeLookedAtIsNotTakenForNothing) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        makeTrashALink(tree);
        EXPECT_FALSE(Cleaner::trashContents({}).isAllFromHere());
    });
    const TempTree locked(lifelike(), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(locked.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const AtHome environment(locked);
        const auto ours = trashed({locked.path("home/proje")});
        ASSERT_EQ(::chmod((ours[0].location + "/build").c_str(), 0), 0);
        EXPECT_FALSE(Cleaner::trashContents(ours).isComplete);
        ASSERT_EQ(::chmod((ours[0].location + "/build").c_str(), 0700), 0);
        EXPECT_TRUE(Cleaner::trashContents(ours).isAllFromHere());
    });
}

TEST(EmptyTrash, TakesNoNoteOfItemsThatCannotBeLookedAt) {
    const TempTree tree(lifelike(), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const AtHome environment(tree);
        const auto ours = trashed({tree.path("home/proje")});
        const std::string items = tree.path(trashFolder + "/files");
        ASSERT_EQ(::chmod(items.c_str(), 0600), 0);
        const auto contents = Cleaner::trashContents(ours);
        EXPECT_FALSE(contents.isComplete);
        EXPECT_FALSE(cleaner().emptyTrash(contents).isDone());
        ASSERT_EQ(::chmod(items.c_str(), 0700), 0);
        EXPECT_TRUE(exists(tree.path(trashFolder + "/info/proje.trashinfo")));
    });
}

TEST(TrashContents, WhatOtherProgramsKeepThereForThemselvesIsNoItem) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        const auto ours = trashed({tree.path("home/proje")});
        Cleaner::recordTrashedFolders(ours);
        fs::create_directories(tree.path(trashFolder + "/expunged"));
        EXPECT_THAT(textOf(tree.path(trashFolder + "/directorysizes")), testing::EndsWith(" proje\n"));
        for (const char* name : {"/.ulvak-0123456789abcdef.tmp", "/directorysizes.A1B2C3"})
            std::ofstream(tree.path(trashFolder + name)) << "a list of sizes that is being written";
        EXPECT_TRUE(Cleaner::trashContents(ours).isAllFromHere());
        for (const char* name : {"/.ulvak-0123456789abcdef.tmp", "/directorysizes.A1B2C3"})
            fs::remove(tree.path(trashFolder + name));
        std::ofstream(tree.path(trashFolder + "/expunged/1")) << "x";
        EXPECT_FALSE(Cleaner::trashContents(ours).isAllFromHere());
        EXPECT_TRUE(cleaner().emptyTrash());
        EXPECT_TRUE(fs::is_empty(tree.path(trashFolder)));
    });
}

TEST(EmptyTrash, TakesNoNoteThatMayAwaitItsItem) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto ours = trashed({tree.path("home/mine")});
        const std::string notes = tree.path(trashFolder + "/info/");
        for (const char* name : {"on-its-way", "left-behind"})
            std::ofstream(notes + name + ".trashinfo") << "[Trash Info]\n";
        fs::last_write_time(notes + "left-behind.trashinfo",
                            fs::file_time_type::clock::now() - std::chrono::minutes(2));
        EXPECT_TRUE(cleaner().emptyTrash(Cleaner::trashContents(ours)).isDone());
        EXPECT_THAT(platform::listNames(notes), testing::ElementsAre("on-its-way.trashinfo"));
    });
}

TEST(EmptyTrash, CountsWhatWent) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto contents = Cleaner::trashContents(trashed({tree.path("home/mine")}));
        const auto emptied = cleaner().emptyTrash(contents);
        EXPECT_TRUE(emptied.isDone());
        EXPECT_EQ(emptied.bytes, contents.bytes);
        EXPECT_EQ(emptied.itemsNew, 0);
        EXPECT_TRUE(fs::is_empty(tree.path(trashFolder)));
    });
}

TEST(EmptyTrash, CountsNothingAsFreedThatHasANameElsewhere) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        fs::create_hard_link(tree.path(trashFolder + "/files/theirs/g"), tree.path("home/kept"));
        fs::create_hard_link(tree.path("home/mine/f"), tree.path(trashFolder + "/files/name"));
        const auto contents = Cleaner::trashContents({});
        EXPECT_EQ(contents.bytes, 5 * oneMegabyte);
        const auto emptied = cleaner().emptyTrash(contents);
        EXPECT_TRUE(emptied.isDone());
        EXPECT_EQ(emptied.bytes, 0);
    });
}

TEST(EmptyTrash, TakesNothingThatHasComeSinceItWasLookedAt) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto contents = Cleaner::trashContents(trashed({tree.path("home/mine")}));
        const auto late = trashed({tree.path("home/new")});
        // A listed name, now with different contents.
        fs::rename(tree.path(trashFolder + "/files/theirs"), tree.path("home/restored"));
        std::ofstream(tree.path(trashFolder + "/files/theirs")) << "late";
        const auto emptied = cleaner().emptyTrash(contents);
        EXPECT_EQ(emptied.itemsNew, 2);
        EXPECT_TRUE(emptied.isDone());
        EXPECT_FALSE(emptied.mayAskDesktop);
        EXPECT_GE(emptied.bytes, oneMegabyte);
        EXPECT_LT(emptied.bytes, 2 * oneMegabyte);
        EXPECT_EQ(textOf(late[0].location), "n");
        EXPECT_TRUE(exists(tree.path(trashFolder + "/info/new.trashinfo")));
        EXPECT_EQ(textOf(tree.path(trashFolder + "/files/theirs")), "late");
        EXPECT_TRUE(exists(tree.path(trashFolder + "/info/theirs.trashinfo")));
        EXPECT_FALSE(exists(tree.path(trashFolder + "/files/mine")));
        EXPECT_TRUE(exists(tree.path("home/restored/g")));
    });
}

TEST(EmptyTrash, EmptiesThoseOfOtherVolumesToo) {
    if (const auto reason = whyNoDiskImages())
        GTEST_SKIP() << *reason;
    const TempTree tree(homeWithTrash());
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountImage(tree.path("image"), tree.path("disk")));
        const std::string own = tree.path("disk/.Trash-" + std::to_string(::geteuid()));
        fs::create_directories(own + "/files/theirs");
        fs::create_directories(own + "/info");
        ASSERT_EQ(::chmod(own.c_str(), 0700), 0);
        std::ofstream(own + "/files/theirs/f") << std::string(100'000, 'x');
        std::ofstream(own + "/info/theirs.trashinfo") << "[Trash Info]\n";
        const auto ours = trashed({tree.path("home/mine")});
        fs::rename(tree.path(trashFolder + "/files/theirs"), tree.path("home/restored"));
        const auto contents = Cleaner::trashContents(ours);
        EXPECT_EQ(contents.items, 2);
        EXPECT_FALSE(contents.isAllFromHere());
        const auto emptied = cleaner().emptyTrash(contents);
        EXPECT_TRUE(emptied.isDone());
        EXPECT_EQ(emptied.bytes, contents.bytes);
        EXPECT_TRUE(fs::is_empty(own));
    });
}

TEST(EmptyTrash, IsNotDoneWhileAnotherVolumesIsFull) {
    if (const auto reason = whyNoDiskImages())
        GTEST_SKIP() << *reason;
    const TempTree tree(homeWithTrash());
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountImage(tree.path("image"), tree.path("disk")));
        const std::string own = tree.path("disk/.Trash-" + std::to_string(::geteuid()));
        fs::create_directories(own + "/files/theirs");
        ASSERT_EQ(::chmod(own.c_str(), 0700), 0);
        ASSERT_TRUE(hasRun({"/usr/bin/mount", "-o", "remount,ro", tree.path("disk")}));
        const auto emptied = cleaner().emptyTrash(Cleaner::trashContents({}));
        EXPECT_FALSE(emptied.isDone());
        EXPECT_EQ(emptied.itemsLeft, 1);
        ASSERT_TRUE(emptied.failure);
        EXPECT_THAT(text(*emptied.failure), HasSubstr("disk salt okunur."));
        EXPECT_FALSE(exists(tree.path(trashFolder + "/files/theirs"))) << "the home's went all the same";
        EXPECT_FALSE(cleaner().emptyTrash());
    });
}

TEST(EmptyTrash, CountsWhatWentOfAnItemThatStays) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        Cleaner::Services services = Cleaner::Services::system();
        services.removeItem = [&](const platform::Directory& parent, const std::string& name,
                                  const platform::ItemIdentity&, const std::set<platform::FileNumber>&) {
            EXPECT_EQ(name, "theirs");
            fs::remove(tree.path(trashFolder + "/files/theirs/g"));
            EXPECT_TRUE(platform::entryIdentity(parent, name));
            return std::expected<void, platform::FileError>(
                std::unexpect, platform::FileError{.code = {EIO, std::generic_category()}, .path = name});
        };
        const auto emptied = cleaner(services).emptyTrash(Cleaner::trashContents({}));
        EXPECT_EQ(emptied.itemsLeft, 1);
        EXPECT_EQ(emptied.bytes, 4 * oneMegabyte);
    });
}

TEST(EmptyTrash, AskedToStopItEndsBeforeTheNextItem) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        (void)trashed({tree.path("home/mine"), tree.path("home/new")});
        std::stop_source stop;
        Cleaner::Services services = Cleaner::Services::system();
        services.removeItem = [&](const platform::Directory& parent, const std::string& name,
                                  const platform::ItemIdentity& item,
                                  const std::set<platform::FileNumber>& kept) {
            stop.request_stop();
            return Cleaner::Services::system().removeItem(parent, name, item, kept);
        };
        const auto emptied = cleaner(services).emptyTrash(Cleaner::trashContents({}), stop.get_token());
        EXPECT_EQ(emptied.itemsLeft, 2);
        EXPECT_FALSE(emptied.isDone());
        EXPECT_FALSE(emptied.mayAskDesktop);
    });
}

/// A desktop whose emptying program is this script.
Cleaner::Services withDesktop(const std::string& script) {
    Cleaner::Services services = Cleaner::Services::system();
    services.removeItem = [](const platform::Directory&, const std::string& name,
                             const platform::ItemIdentity&, const std::set<platform::FileNumber>&) {
        return std::expected<void, platform::FileError>(
            std::unexpect, platform::FileError{.code = {EPERM, std::generic_category()}, .path = name});
    };
    services.trashEmptyingCommand = [script](const std::string&) {
        return platform::Command{.program = "/bin/sh", .arguments = {"-c", script}};
    };
    return services;
}

TEST(EmptyTrashByDesktop, CountsWhatTheDesktopRemoves) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto services = withDesktop("rm -r '" + tree.path(trashFolder) + "'/*/theirs*");
        const auto freed = cleaner(services).emptyTrash();
        ASSERT_TRUE(freed) << text(freed.error());
        EXPECT_EQ(*freed, 4 * oneMegabyte);
    });
}

TEST(EmptyTrashByDesktop, IsNotDoneBecauseTheDesktopSaysSo) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto freed = cleaner(withDesktop("exit 0")).emptyTrash();
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()), "Çöp kutusu boşaltılamadı: masaüstü hepsini kaldıramadı.");
    });
}

TEST(EmptyTrashByDesktop, WaitsForNoProgramThatNeverEnds) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        auto services = withDesktop("exec sleep 100000");
        services.desktopLimit = std::chrono::milliseconds(100);
        const auto freed = cleaner(services).emptyTrash();
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()), "Çöp kutusu boşaltılamadı: masaüstü zamanında yanıt vermedi.");
        std::stop_source stop;
        stop.request_stop();
        services.desktopLimit = std::chrono::hours(1);
        EXPECT_FALSE(
            cleaner(services).emptyTrashByDesktop(Cleaner::trashContents({}), stop.get_token()).isDone());
    });
}

TEST(EmptyTrashByDesktop, IsNotAskedWhereItWouldTakeWhatHasComeSince) {
    const TempTree tree(homeWithTrash());
    inHome(tree, [&] {
        const auto services = withDesktop("rm -r '" + tree.path(trashFolder) + "'/files");
        const auto contents = Cleaner::trashContents({});
        const auto late = trashed({tree.path("home/new")});
        EXPECT_FALSE(cleaner(services).emptyTrash(contents).mayAskDesktop);
        const auto emptied = cleaner(services).emptyTrashByDesktop(contents, {});
        EXPECT_EQ(emptied.itemsNew, 1);
        EXPECT_TRUE(exists(late[0].location));
    });
}

}  // namespace
}  // namespace ulvak
