#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "core/paths.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"
#include "survey/scanner.h"

namespace ulvak {
namespace {

using namespace test;
using testing::Contains;

using testing::IsEmpty;
using testing::Not;

constexpr std::size_t megabyte = 1'000'000;

/// The home folder of the account that runs the test, for as long as the mounts are private.
class AccountsHome : public testing::Test {
protected:
    void SetUp() override {
        if (const auto reason = whyNoPrivateMounts())
            GTEST_SKIP() << *reason;
    }

    void inside(const std::optional<std::string>& data, const Body& body) const {
        withPrivateMounts([&] {
            const std::string accounts = tree.path("passwd");
            std::ofstream(accounts) << "ayse:x:" << ::getuid() << ":" << ::getgid() << "::" << home
                                    << ":/bin/sh\n";
            ASSERT_EQ(::mount(accounts.c_str(), "/etc/passwd", nullptr, MS_BIND, nullptr), 0);
            const ScopedEnvironment environment({{"HOME", home},
                                                 {"TMPDIR", tree.path("T")},
                                                 {"XDG_CACHE_HOME", std::nullopt},
                                                 {"XDG_CONFIG_HOME", std::nullopt},
                                                 {"XDG_DATA_HOME", data},
                                                 {"XDG_STATE_HOME", std::nullopt}});
            body();
        });
    }

    static std::vector<std::string> trashes() {
        const FurtherPlaces further = FurtherPlaces::of(UserFolders::ofCurrentUser());
        EXPECT_THAT(further.systems, Contains("/var/cache"));
        return further.trashes;
    }

    TempTree tree{
        {folder("ev", {folder(".cache", {file("büyük", 60 * megabyte)})}), folder("T"), folder("veri")}};
    std::string home = tree.path("ev");
};

TEST_F(AccountsHome, ItsOwnTrashNeedsNoPlaceBesideIt) {
    inside(std::nullopt, [&] {
        tree.add("ev", {folder(".local", {folder("share", {folder("Trash", {folder("files")})})})});
        EXPECT_THAT(trashes(), Not(Contains(home + "/.local/share/Trash")));
    });
}

TEST_F(AccountsHome, ATrashThatTheUserHasMovedElsewhereIsLookedAt) {
    tree.add("veri", {folder("Trash", {folder("files", {file("x", 60 * megabyte)})})});
    inside(tree.path("veri") + "//", [&] {
        EXPECT_THAT(trashes(), Contains(tree.path("veri/Trash")));
        const UserFolders folders = UserFolders::ofCurrentUser();
        ScanProgress progress;
        const auto findings =
            Scanner{progress, folders, FurtherPlaces{.trashes = {folders.trash}, .systems = {}}}.run();
        ASSERT_TRUE(findings);
        EXPECT_EQ(std::ranges::count_if(*findings, isTrash), 1);
    });
}

TEST_F(AccountsHome, ALinkToAnotherFolderIsNoTrash) {
    tree.add(
        "ev",
        {folder(".local", {folder("share", {link("Trash", home + "/.cache")})}),
         folder("snap", {folder("program",
                                {folder("1", {folder(".local", {folder("share", {folder("Trash")})})})})})});
    inside(std::nullopt, [&] {
        EXPECT_THAT(trashes(), Not(Contains(home + "/.local/share/Trash")));
        EXPECT_THAT(trashes(), Contains(home + "/snap/program/1/.local/share/Trash"));
    });
}

TEST_F(AccountsHome, AnotherHomeFolderHasNoFurtherPlaces) {
    inside(std::nullopt, [&] {
        const ScopedEnvironment trial({{"HOME", tree.path("veri")}});
        const FurtherPlaces further = FurtherPlaces::of(UserFolders::ofCurrentUser());
        EXPECT_THAT(further.trashes, IsEmpty());
        EXPECT_THAT(further.systems, IsEmpty());
    });
}

}  // namespace
}  // namespace ulvak
