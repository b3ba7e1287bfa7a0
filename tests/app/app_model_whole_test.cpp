// The application with the real scan, store, cleaner and Trash, in a demo home folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>

#include "core/paths.h"
#include "core/shell.h"
#include "support/app_test.h"
#include "support/environment.h"
#include "support/isolation.h"
#include "support/system.h"

namespace ulvak {
namespace {

using namespace test;

/// The system's services, except those that open windows on the desktop. The tests ask no model, so it does
/// not matter whether this machine has one.
AppServices realServices() {
    AppServices services = AppServices::system(UserFolders::ofCurrentUser());
    services.reveal = [](std::span<const std::string>) { return true; };
    services.openUrl = [](std::string_view) {};
    return services;
}

class WholeApp {
public:
    explicit WholeApp(const std::string& verdicts) : app_(realServices(), verdicts) {
        app_.scan();
        EXPECT_TRUE(waitUntil([&] { return app_.phase() == AppModel::Phase::done; }));
    }
    AppModel& operator*() { return app_; }
    AppModel* operator->() { return &app_; }

private:
    AppModel app_;
};

/// A finding that `ulvak` would clean without asking about applications.
FindingPointer cleanable(AppModel& app, const std::string& id) {
    const FindingPointer finding = app.finding(id);
    EXPECT_TRUE(finding) << id;
    EXPECT_TRUE(!finding || finding->quitApps.empty()) << id;
    return finding;
}

void useIt(const TempTree& tree) {
    const std::string home = tree.path("ev");
    const UserFolders folders = UserFolders::ofCurrentUser();
    ASSERT_EQ(folders.home, home);
    const std::string verdicts = VerdictStore::defaultPath(folders);
    ASSERT_TRUE(verdicts.starts_with(tree.path())) << verdicts;
    const std::string npm = home + "/.npm";
    const std::string pip = home + "/.cache/pip";
    const std::string odd = home + "/.cache/utf-8-de\xf0il-\xff";
    std::size_t found = 0;
    {
        WholeApp app(verdicts);
        found = app->findings().size();
        EXPECT_GT(found, 60U);
        EXPECT_GT(app->scannedFiles(), 500);
        EXPECT_GE(app->scannedBytes(), 25'000'000'000);
        EXPECT_GE(app->scanDuration().value_or(-1), 0.0);
        EXPECT_TRUE(app->disk());
        for (const SafetyLevel level : allSafetyLevels)
            EXPECT_GT(app->total(level), 0) << info(level).rawValue;
        app->setLevel(SafetyLevel::keep, npm);
        EXPECT_EQ(app->finding(npm)->level, SafetyLevel::keep);
    }
    WholeApp app(verdicts);
    EXPECT_EQ(app->findings().size(), found);
    ASSERT_TRUE(app->finding(npm));
    EXPECT_EQ(app->finding(npm)->level, SafetyLevel::keep);
    EXPECT_EQ(app->finding(npm)->source, VerdictSource::user);
    app->resetVerdict(npm);

    const FindingPointer first = cleanable(*app, npm);
    const FindingPointer second = cleanable(*app, pip);
    ASSERT_TRUE(first && second);
    runToEnd(app->clean({npm}, CleanMode::trash));
    EXPECT_FALSE(app->alert()) << app->alert()->message;
    EXPECT_FALSE(exists(npm));
    EXPECT_TRUE(exists(folders.trash + "/files/.npm"));
    EXPECT_EQ(app->trashedBytes(), first->size);
    runToEnd(app->clean({pip}, CleanMode::permanent));
    EXPECT_FALSE(exists(pip));
    EXPECT_EQ(app->freedBytes(), second->size);
    EXPECT_EQ(app->findings().size(), found - 2);

    runToEnd(app->emptyTrash());
    EXPECT_FALSE(app->alert()) << app->alert()->message;
    EXPECT_FALSE(exists(folders.trash + "/files/.npm"));
    EXPECT_EQ(app->trashedBytes(), 0);
    EXPECT_EQ(app->freedBytes(), first->size + second->size);
    EXPECT_TRUE(exists(home + "/Documents/Tez"));
    EXPECT_TRUE(exists(odd));
}

TEST(WholeApp, ScansRemembersCleansAndEmptiesTheTrash) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("ev")});
    const std::vector<std::string> arguments = {tree.path("ev"), "--macos"};
    const auto made = [&] {
        const ScopedEnvironment plain({{"LC_ALL", "C"}});  // for the system's messages below
        return Shell::run(ULVAK_SOURCE_DIR "/scripts/demo-home", arguments);
    }();
    ASSERT_TRUE(made);
    // There may be too little space, or another test may use it in the meantime.
    if (made->error.find("yeterli yer yok") != std::string::npos ||
        made->error.find("No space left") != std::string::npos)
        GTEST_SKIP() << made->error;
    ASSERT_EQ(made->status, 0) << made->error;
    const std::string home = tree.path("ev");
    const ScopedEnvironment environment({{"HOME", home},
                                         {"TMPDIR", home + "/.tmp/T"},
                                         {"XDG_DATA_HOME", home + "/.local/share"},
                                         {"XDG_CONFIG_HOME", std::nullopt}});
    useIt(tree);
}

}  // namespace
}  // namespace ulvak
