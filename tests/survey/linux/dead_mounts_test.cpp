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

}  // namespace
}  // namespace ulvak
