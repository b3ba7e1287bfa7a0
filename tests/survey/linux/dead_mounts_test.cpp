#include <gtest/gtest.h>

#include <string>

#include "support/environment.h"
#include "support/isolation.h"
#include "support/linux/dead_mount.h"
#include "support/temp_tree.h"
#include "survey/scanner.h"

namespace ulvak {
namespace {

using namespace test;

/// `temp` is below the home folder, where "nas" never answers.
void scanWithTemp(const std::string& temp) {
    const TempTree tree({folder("home", {folder("nas"), folder("work", {file("big", 400'000'000)})})});
    withPrivateMounts([&] {
        const ScopedEnvironment environment({{"HOME", tree.path("home")},
                                             {"TMPDIR", tree.path("home/" + temp)},
                                             {"XDG_DATA_HOME", std::nullopt}});
        const DeadMount nas(tree.path("home/nas"));
        ASSERT_TRUE(nas.isMounted());
        ScanProgress progress;
        const auto findings = Scanner{progress, UserFolders::ofCurrentUser()}.run();
        ASSERT_TRUE(findings);
        EXPECT_FALSE(findings->empty());
        EXPECT_FALSE(nas.wasAsked());
    });
}

TEST(DeadMounts, ATemporaryFolderThereKeepsNobodyFromScanning) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    scanWithTemp("nas/T");
}

TEST(DeadMounts, ATemporaryFolderBehindOneKeepsNobodyFromScanning) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    scanWithTemp("nas/../T");
}

TEST(DeadMounts, SettingsThereAreNotLookedAtByAScan) {
    if (const auto reason = DeadMount::whyNone())
        GTEST_SKIP() << *reason;
    // With a library, the scan asks what else is there; with a download, where downloads are.
    const TempTree tree({folder("home", {link(".config", "../nas/settings"), link("snap", "../nas/snap"),
                                         folder("Library", {folder("Caches", {file("x", 60'000'000)})}),
                                         file("a.iso", 310'000'000)}),
                         folder("nas")});
    withPrivateMounts([&] {
        const DeadMount nas(tree.path("nas"));
        ASSERT_TRUE(nas.isMounted());
        const UserFolders folders{
            .home = tree.path("home"), .temp = tree.path("T"), .cache = tree.path("C"), .trash = ""};
        ScanProgress progress;
        const auto findings = Scanner{progress, folders}.run();
        ASSERT_TRUE(findings);
        EXPECT_FALSE(findings->empty());
        EXPECT_FALSE(nas.wasAsked());
    });
}

}  // namespace
}  // namespace ulvak
