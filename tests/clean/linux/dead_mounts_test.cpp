#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include "clean/clean_support.h"
#include "support/linux/dead_mount.h"

// A server that no longer answers must not block cleaning elsewhere.

namespace ulvak {
namespace {

using namespace test;

using Names = std::vector<std::string>;

std::vector<TreeEntry> withNas() {
    std::vector<TreeEntry> entries = lifelike();
    entries.front().children.push_back(folder("nas"));
    entries.front().children.push_back(folder(".config"));
    return entries;
}

/// Runs the body with a dead server at "home/nas" of the tree, which must not receive any request.
void besideADeadServer(const TempTree& tree, const std::function<void()>& body) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    withPrivateMounts([&] {
        const AtHome environment(tree);
        const DeadMount nas(tree.path("home/nas"));
        ASSERT_TRUE(nas.isMounted());
        body();
        EXPECT_FALSE(nas.wasAsked()) << "this would never have ended";
    });
}

void expectCleaned(const TempTree& tree) {
    for (const auto& [item, mode] :
         {std::pair("home/one", CleanMode::permanent), std::pair("home/proje/build", CleanMode::permanent),
          std::pair("home/two", CleanMode::trash)}) {
        const auto freed = cleaner().clean(finding({tree.path(item)}), mode);
        EXPECT_TRUE(freed) << item << ": " << text(freed.error());
        EXPECT_FALSE(exists(tree.path(item)));
    }
}

TEST(DeadMounts, AFolderOfTheUsersThatASettingNamesIsNotLookedAt) {
    TempTree tree(withNas());
    tree.add("home/.config", {textFile("user-dirs.dirs",
                                       "XDG_VIDEOS_DIR=\"$HOME/nas/Videos\"\n"
                                       "XDG_MUSIC_DIR=\"" +
                                           tree.path("home/nas") + "\"\n")});
    besideADeadServer(tree, [&] { expectCleaned(tree); });
}

TEST(DeadMounts, AKeptFolderThatIsALinkIsNotFollowedThere) {
    TempTree tree(withNas());
    tree.add("home", {link("Music", "nas/Music"), link("Pictures", tree.path("home/nas")),
                      link("way", "Music"), link("Movies", "way/of/mine"), link(".ssh", "nas/../nas/ssh")});
    besideADeadServer(tree, [&] { expectCleaned(tree); });
}

TEST(DeadMounts, WhatIsKeptThereIsKeptByItsPath) {
    TempTree tree(withNas());
    tree.add("home", {folder("shelf", {link("Pictures", "../nas/Pictures")}),
                      link("Pictures", "shelf/Pictures"), link("Movies", "nas/../shelf/Movies")});
    besideADeadServer(tree, [&] {
        for (const char* item : {"home/Pictures", "home/nas/Pictures", "home/nas", "home/Movies"}) {
            const auto freed = cleaner().clean(finding({tree.path(item)}), CleanMode::permanent);
            ASSERT_FALSE(freed) << item;
            EXPECT_TRUE(std::holds_alternative<CleanError>(freed.error())) << item << text(freed.error());
        }
    });
}

TEST(DeadMounts, TheServersOwnFolderIsRefusedWithoutALook) {
    TempTree tree(withNas());
    besideADeadServer(tree, [&] {
        for (const CleanMode mode : {CleanMode::permanent, CleanMode::trash}) {
            const auto whole = cleaner().clean(finding({tree.path("home/one"), tree.path("home/nas")}), mode);
            ASSERT_FALSE(whole);
            EXPECT_EQ(std::get<platform::FileError>(whole.error()).code, std::errc::device_or_resource_busy);
            const auto part =
                cleaner().clean(finding({tree.path("home/one"), tree.path("home/nas/x")}), mode);
            ASSERT_FALSE(part);
            EXPECT_EQ(std::get<platform::FileError>(part.error()).code, std::errc::cross_device_link);
            EXPECT_TRUE(exists(tree.path("home/one"))) << "all items are judged first";
        }
    });
}

TEST(DeadMounts, ATemporaryFolderThereKeepsNobodyFromCleaningTheHome) {
    TempTree tree(withNas());
    besideADeadServer(tree, [&] {
        const ScopedEnvironment temporary({{"TMPDIR", tree.path("home/nas/tmp")}});
        expectCleaned(tree);
    });
}

TEST(DeadMounts, ACacheIsNotLookedForThere) {
    TempTree tree(withNas());
    besideADeadServer(tree, [&] {
        const ScopedEnvironment temporary({{"TMPDIR", tree.path("home/nas/T")}});
        expectCleaned(tree);
    });
}

TEST(DeadMounts, NothingGoesWhenWhatIsKeptCannotBeReadThere) {
    TempTree tree(withNas());
    besideADeadServer(tree, [&] {
        const ScopedEnvironment settings({{"XDG_CONFIG_HOME", tree.path("home/nas/settings")}});
        const auto freed = cleaner().clean(finding({tree.path("home/one")}), CleanMode::permanent);
        ASSERT_FALSE(freed);
        EXPECT_EQ(text(freed.error()),
                  "Hiçbir şeye dokunulmadı: korunacak klasörleri sayan "
                  "“~/nas/settings/user-dirs.dirs” dosyası, yanıt vermeyebilecek bir diskte.");
        EXPECT_TRUE(exists(tree.path("home/one")));
    });
}

TEST(DeadMounts, RunningApplicationsAreFoundAllTheSame) {
    TempTree tree(withNas());
    tree.add(
        "home",
        {folder(
             ".local",
             {folder(
                 "share",
                 {folder(
                     "applications",
                     {textFile("there.desktop", "[Desktop Entry]\nType=Application\nName=There\nExec=" +
                                                    tree.path("home/nas/bin/there") + " %U\n"),
                      textFile("searched.desktop",
                               "[Desktop Entry]\nType=Application\nName=Searched\nExec=searched\n"
                               "TryExec=searched\n"),
                      textFile("tested.desktop", "[Desktop Entry]\nType=Application\nName=Tested\nTryExec=" +
                                                     tree.path("home/nas/tested") + "\nExec=sleep\n"),
                      link("linked.desktop", "../../../nas/linked.desktop"),
                      link("folder", "../../../nas/entries")})})}),
         link("bin", "nas/bin")});
    besideADeadServer(tree, [&] {
        const ScopedEnvironment searched(
            {{"PATH", tree.path("home/nas/bin") + ":" + tree.path("home/bin") + ":/usr/bin:/bin"},
             {"XDG_DATA_DIRS", tree.path("home/nas/share") + ":/usr/share"}});
        EXPECT_THAT(Cleaner::runningApps(Names{"There", "Searched", "Linked"}), testing::IsEmpty());
    });
}

}  // namespace
}  // namespace ulvak
