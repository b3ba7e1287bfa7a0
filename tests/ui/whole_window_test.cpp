#include <gtest/gtest.h>
#include <QProcess>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "core/paths.h"
#include "support/system.h"
#include "support/temp_tree.h"
#include "ui/shown.h"
#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::exists;
using test::TempTree;
using test::waitUntil;

/// Over the program's real services, with a home folder made by the test and run in a child process.
class WholeWindow : public test::WindowTest {
protected:
    void start() override {
        const UserFolders folders = UserFolders::ofCurrentUser();
        app = std::make_unique<AppModel>(AppServices::system(folders), VerdictStore::defaultPath(folders));
        model = std::make_unique<WindowModel>(*app);
    }
};

/// Run by the test below in a process whose HOME is a temporary tree; refuses any other.
TEST_F(WholeWindow, DISABLED_InAHomeOfItsOwn) {
    const std::string home = qgetenv("ULVAK_TEST_HOME").toStdString();
    ASSERT_FALSE(home.empty());
    ASSERT_EQ(UserFolders::ofCurrentUser().home, home);
    open();
    key(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return app->phase() == AppModel::Phase::done; }));

    // A cache is relabelled with the keyboard, and found under its new label.
    const std::string npm = home + "/.npm";
    ASSERT_NE(app->finding(npm), nullptr);
    ASSERT_EQ(app->finding(npm)->level, SafetyLevel::regenerable);
    focus(QStringLiteral("sidebar"));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    ASSERT_EQ(text(QStringLiteral("listTitle")), QStringLiteral("Yeniden oluşur"));
    const QString title = shown(app->finding(npm)->title);
    ASSERT_TRUE(waitUntil([&] { return row(title) != nullptr; }));
    click(row(title));
    click(QStringLiteral("relabel"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("detailLevels")); }));
    click(inPopup(QStringLiteral("detailLevels"), QStringLiteral("level-keep")));
    ASSERT_TRUE(waitUntil([&] { return row(title) == nullptr; }));
    click(QStringLiteral("row-keep"));
    ASSERT_TRUE(waitUntil([&] { return row(title) != nullptr; }));

    // It is trashed after confirmation, and its row disappears.
    click(row(title));
    click(QStringLiteral("moveToTrash"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmTrash")); }));
    EXPECT_TRUE(exists(npm));
    click(inPopup(QStringLiteral("confirmTrash"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return row(title) == nullptr; }))
        << (app->alert() ? app->alert()->message : "no alert");
    EXPECT_TRUE(showsText(QStringLiteral("Bir öğe seç")));
    EXPECT_FALSE(app->alert().has_value());
    engine.reset();
    model.reset();
    app.reset();  // all pending writes are done
}

TEST(WholeWindowFromOutside, MovesToTheTrashAndRemembersALabel) {
    if (const auto reason = test::whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const TempTree tree({test::folder("home", {test::folder(".npm", {test::file("veri", 150'000'000)}),
                                               test::folder("tmp"), test::folder("data")})});
    const std::string home = tree.path("home");
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto set = [&](const char* name, const std::string& value) {
        environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
    };
    set("HOME", home);
    set("ULVAK_TEST_HOME", home);
    set("TMPDIR", home + "/tmp");
    set("XDG_DATA_HOME", home + "/data");
    set("ULVAK_MODEL_OFF", "1");
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=WholeWindow.*"),
                                                          QStringLiteral("--gtest_also_run_disabled_tests")});
    ASSERT_TRUE(child.waitForFinished(250'000));
    ASSERT_EQ(child.exitCode(), 0) << child.readAll().toStdString();

    EXPECT_FALSE(exists(home + "/.npm"));
    EXPECT_TRUE(exists(home + "/data/Trash/files/.npm/veri"));
    EXPECT_TRUE(exists(home + "/data/Trash/info/.npm.trashinfo"));
    std::ifstream file(home + "/data/Ulvak/verdicts.json");
    const std::string verdicts(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(verdicts.find(home + "/.npm"), std::string::npos) << verdicts;
    EXPECT_NE(verdicts.find("\"user\""), std::string::npos) << verdicts;
}

TEST(WholeWindowFromOutside, WithoutADisplayItEndsWithAStatusOfItsOwn) {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(display));
    // Nor must it hand over to a window that the user who runs the tests has open.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
    child.setProcessEnvironment(environment);
    child.start(QStringLiteral(ULVAK_WINDOW_PROGRAM), QStringList());
    ASSERT_TRUE(child.waitForFinished(250'000));
    EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(child.exitCode(), EXIT_FAILURE);
    EXPECT_FALSE(child.readAllStandardError().isEmpty()) << "nobody is told why";
}

}  // namespace
}  // namespace ulvak
