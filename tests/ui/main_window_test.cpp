#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QtTest>
#include <array>
#include <set>

#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::waitUntil;

class MainWindowTest : public test::WindowTest {
protected:
    MainWindowTest() {
        stage.result = {finding("/v/keep", SafetyLevel::keep, 3'000'000'000),
                        finding("/v/safe", SafetyLevel::safe, 2'000'000'000)};
    }
    QColor diskTint() { return item(QStringLiteral("diskProgress"))->property("tint").value<QColor>(); }
    static QString rowSize(QQuickItem* row) {
        const auto* size = row->findChild<QQuickItem*>(QStringLiteral("rowSize"));
        return size->isVisible() ? size->property("text").toString() : QString();
    }
};

TEST_F(MainWindowTest, HasItsTitleAndSize) {
    open();
    EXPECT_EQ(window->objectName(), QStringLiteral("main"));
    EXPECT_EQ(window->title(), QStringLiteral("Ulvak"));
    EXPECT_EQ(window->size(), QSize(1320, 840));
    EXPECT_EQ(window->minimumSize(), QSize(1000, 640));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Tara"));
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    EXPECT_EQ(window->title(), QStringLiteral("Dokunma"));
}

/// On a large screen, and on the small ones this also runs on: with room for a window frame.
TEST_F(MainWindowTest, IsNeverLargerThanItsScreen) {
    open();
    const QSize room = window->screen()->availableSize();
    for (const QSize size : {window->size(), window->minimumSize()}) {
        EXPECT_LE(size.width(), room.width());
        EXPECT_LE(size.height(), room.height() - 40);
    }
    window->resize(window->minimumSize());
    ASSERT_TRUE(waitUntil([&] {
        const QQuickItem* detail = item(QStringLiteral("detailContainer"));
        return detail->mapToScene(QPointF(detail->width(), 0)).x() <= window->width();
    }));
}

TEST_F(MainWindowTest, OpensOnALevelAndScansAtOnce) {
    stage.scanGate.shut();
    open({QStringLiteral("--level=keep"), QStringLiteral("--autoscan")});
    EXPECT_EQ(text(QStringLiteral("listTitle")), QStringLiteral("Dokunma"));
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("listScanning")); }));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Durdur"));
    stage.scanGate.open();
    EXPECT_TRUE(waitUntil([&] { return row(QStringLiteral("keep")) != nullptr; }));
}

TEST_F(MainWindowTest, WrongLevelsLeaveTheSummary) {
    open({QStringLiteral("--level=Keep")});
    EXPECT_TRUE(shows(QStringLiteral("start")));
    model->launch({QStringLiteral("--level=x"), QStringLiteral("--level=safe")});
    EXPECT_TRUE(shows(QStringLiteral("start")));
}

TEST_F(MainWindowTest, ControlRScansUnlessAScanRuns) {
    open();
    stage.scanGate.shut();
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Durdur"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("scan") == 1; }));
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Durdur"));
    stage.scanGate.open();
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("scan")) == QStringLiteral("Yeniden Tara"); }));
    EXPECT_EQ(stage.count("scan"), 1);
}

TEST_F(MainWindowTest, StoppingLeadsBackToWhatWasThere) {
    open();
    stage.scanGate.shut();
    click(QStringLiteral("scan"));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Durdur"));
    click(QStringLiteral("scan"));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Tara"));
    stage.scanGate.open();
    scanAll();
    stage.scanGate.shut();
    click(QStringLiteral("scan"));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Durdur"));
    click(QStringLiteral("scan"));
    EXPECT_EQ(text(QStringLiteral("scan")), QStringLiteral("Yeniden Tara"));
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("card-keep")); }));
}

TEST_F(MainWindowTest, TheMenuScansToo) {
    open();
    key(Qt::Key_F10);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("mainMenu")); }));
    EXPECT_EQ(inPopup(QStringLiteral("mainMenu"), QStringLiteral("menuScan"))->property("text").toString(),
              QStringLiteral("Tara"));
    stage.scanGate.shut();
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return stage.count("scan") == 1; }));
    click(QStringLiteral("menuButton"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("mainMenu")); }));
    EXPECT_FALSE(inPopup(QStringLiteral("mainMenu"), QStringLiteral("menuScan"))->isEnabled());
    stage.scanGate.open();
}

TEST_F(MainWindowTest, TheSidebarListsTheLevelsInOrderAndTheirSizesOnceKnown) {
    open();
    double above = -1;
    for (const char* name :
         {"row-overview", "row-safe", "row-regenerable", "row-caution", "row-unknown", "row-keep"}) {
        QQuickItem* row = item(QString::fromLatin1(name));
        ASSERT_NE(row, nullptr) << name;
        EXPECT_GT(row->mapToScene({}).y(), above) << name;
        above = row->mapToScene({}).y();
    }
    EXPECT_EQ(rowSize(item(QStringLiteral("row-keep"))), QString());
    stage.scanGate.shut();
    click(QStringLiteral("scan"));
    EXPECT_EQ(rowSize(item(QStringLiteral("row-keep"))), QString());
    stage.scanGate.open();
    EXPECT_TRUE(
        waitUntil([&] { return rowSize(item(QStringLiteral("row-keep"))) == QStringLiteral("3 GB"); }));
    EXPECT_EQ(rowSize(item(QStringLiteral("row-caution"))), QStringLiteral("Sıfır KB"));
}

TEST_F(MainWindowTest, EveryRowOfTheSidebarStaysOnOneLine) {
    stage.result.clear();
    for (const SafetyLevel level : allSafetyLevels)
        stage.result.push_back(finding("/v/" + std::string(info(level).rawValue), level, 888'888'888'888));
    openScanned();
    for (const SafetyLevel level : displayedSafetyLevels()) {
        model->setSidebar(SidebarItem{level});
        settle();
        const QQuickItem* row = item(QStringLiteral("row-") + Texts::fixed(info(level).rawValue));
        EXPECT_EQ(row->height(), item(QStringLiteral("row-overview"))->height()) << info(level).title;
        const auto* size = row->findChild<QQuickItem*>(QStringLiteral("rowSize"));
        EXPECT_LE(size->mapToItem(row, QPointF(size->width(), 0)).x(), row->width()) << info(level).title;
    }
}

TEST_F(MainWindowTest, TheDiskIsRedOnlyBelowTwentyGigabytes) {
    stage.disk = DiskInfo{.total = 100'000'000'000, .available = 20'000'000'000};
    open();
    const QColor accent = diskTint();
    EXPECT_EQ(text(QStringLiteral("diskText")), QStringLiteral("20 GB boş · 100 GB"));
    stage.disk->available -= 1;
    scanAll();
    EXPECT_NE(diskTint(), accent);
    EXPECT_GT(diskTint().red(), 2 * diskTint().blue());
}

TEST_F(MainWindowTest, WithoutADiskThereIsNoBlock) {
    stage.disk.reset();
    open();
    EXPECT_FALSE(shows(QStringLiteral("diskBlock")));
    EXPECT_FALSE(shows(QStringLiteral("used")));
}

TEST_F(MainWindowTest, AnotherRowOfTheSidebarEmptiesTheSelection) {
    openScanned(QStringLiteral("keep"));
    click(row(QStringLiteral("keep")));
    EXPECT_EQ(text(QStringLiteral("detailTitle")), QStringLiteral("keep"));
    click(QStringLiteral("row-safe"));
    EXPECT_TRUE(model->list()->selection()->ids().empty());
    EXPECT_TRUE(waitUntil([&] { return showsText(QStringLiteral("Bir öğe seç")); }));
    click(QStringLiteral("row-overview"));
    EXPECT_TRUE(waitUntil([&] { return showsText(QStringLiteral("Bir etiket seç")); }));
}

TEST_F(MainWindowTest, ControlTakesTheSidebarsSelectionAway) {
    openScanned(QStringLiteral("keep"));
    click(item(QStringLiteral("row-keep")), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(model->sidebar(), std::nullopt);
    EXPECT_TRUE(shows(QStringLiteral("overview")));
    key(Qt::Key_End);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::keep});
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(model->sidebar(), std::nullopt);
}

TEST_F(MainWindowTest, ArrowsGoThroughTheSidebar) {
    open();
    EXPECT_TRUE(focused() == QStringLiteral("sidebar")) << focused().toStdString();
    key(Qt::Key_Down);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::safe});
    key(Qt::Key_End);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::keep});
    key(Qt::Key_Down);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::keep});
    key(Qt::Key_Up);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::unknown});
    key(Qt::Key_Home);
    EXPECT_EQ(model->sidebar(), SidebarItem{});
}

TEST_F(MainWindowTest, AnAlertIsModalUntilItIsDismissedAndANewerTakesItsPlace) {
    stage.running = {"Bir Uygulama"};
    stage.result.front().quitApps = {"Bir Uygulama"};
    stage.result.back().quitApps = {"Bir Uygulama"};
    openScanned(QStringLiteral("keep"));
    const auto title = [&] {
        QQuickItem* shown = inPopup(QStringLiteral("alert"), QStringLiteral("dialogTitle"));
        return shown == nullptr ? QString() : shown->property("text").toString();
    };
    app->clean({"/v/keep"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("alert")); }));
    EXPECT_EQ(title(), QStringLiteral("keep temizlenemedi"));
    click(QStringLiteral("scan"));
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(app->phase(), AppModel::Phase::done);
    EXPECT_EQ(stage.count("scan"), 1) << "a modal alert lets nothing through";
    app->clean({"/v/safe"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return title() == QStringLiteral("safe temizlenemedi"); }));
    EXPECT_TRUE(isOpen(QStringLiteral("alert")));
    click(inPopup(QStringLiteral("alert"), QStringLiteral("cancel")));
    ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("alert")); }));
    EXPECT_FALSE(app->alert().has_value());
    app->clean({"/v/safe"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("alert")); }));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !app->alert().has_value(); }));
}

TEST_F(MainWindowTest, LightAndDarkFollowTheDesktopWhileTheWindowIsOpen) {
    const QPalette before = QGuiApplication::palette();
    open();
    window->setProperty("appearance", QString());
    const auto lightness = [&] { return window->color().lightnessF(); };
    QGuiApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
    EXPECT_TRUE(waitUntil([&] { return lightness() < 0.3; }));
    QGuiApplication::setPalette(QPalette(QColor(0xf0, 0xf0, 0xf0)));
    EXPECT_TRUE(waitUntil([&] { return lightness() > 0.7; }));
    QGuiApplication::setPalette(before);
}

TEST_F(MainWindowTest, EveryLevelHasAColourOfItsOwn) {
    open();
    std::set<QRgb> colours;
    for (const SafetyLevel level : allSafetyLevels) {
        const QString name = QStringLiteral("row-") + Texts::fixed(info(level).rawValue);
        ASSERT_TRUE(shows(name)) << name.toStdString();
        colours.insert(item(name)->property("tint").value<QColor>().rgb());
    }
    EXPECT_EQ(colours.size(), allSafetyLevels.size());
}

TEST_F(MainWindowTest, DraggedColumnsAreRememberedOnlyWhileTheWindowIsOpen) {
    openScanned(QStringLiteral("keep"));
    settle();
    const auto width = [&] { return item(QStringLiteral("sidebar"))->width(); };
    const double before = width();
    const QPoint edge = item(QStringLiteral("sidebar"))->mapToScene(QPointF(before, 300)).toPoint();
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, edge);
    QTest::mouseMove(window, edge + QPoint(20, 0));
    QTest::mouseMove(window, edge + QPoint(60, 0));
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, edge + QPoint(60, 0));
    EXPECT_TRUE(waitUntil([&] { return width() > before + 30; }));
    const double dragged = width();
    click(QStringLiteral("row-overview"));
    click(QStringLiteral("row-safe"));
    settle();
    EXPECT_EQ(width(), dragged);
    engine.reset();
    open();
    EXPECT_EQ(width(), before);
}

TEST_F(MainWindowTest, ColumnsKeepTheirLeastWidthsInTheSmallestWindow) {
    openScanned(QStringLiteral("keep"));
    const auto columns = [&] {
        return std::array{item(QStringLiteral("sidebar"))->width(), item(QStringLiteral("content"))->width(),
                          item(QStringLiteral("detailContainer"))->width()};
    };
    EXPECT_EQ(columns()[0], 230);
    EXPECT_EQ(columns()[2], 380);
    window->resize(1000, 640);
    ASSERT_TRUE(waitUntil([&] { return columns()[0] + columns()[1] + columns()[2] <= 1000; }));
    EXPECT_GE(columns()[0], 210);
    EXPECT_GE(columns()[1], 420);
    EXPECT_GE(columns()[2], 320);
}

TEST_F(MainWindowTest, ColumnsThatGaveWayInANarrowWindowGrowBack) {
    openScanned(QStringLiteral("keep"));
    settle();
    const auto width = [&](const char* name) { return item(QString::fromLatin1(name))->width(); };
    const auto widths = [&] { return std::array{width("sidebar"), width("detailContainer")}; };
    const auto resize = [&](int to) {
        window->resize(to, 700);
        ASSERT_TRUE(waitUntil([&] { return item(QStringLiteral("columns"))->width() == to; }));
        settle();
    };
    resize(1000);
    EXPECT_LT(widths()[1], 380);
    resize(1320);
    EXPECT_EQ(widths(), (std::array{230.0, 380.0}));
    const QPoint edge = item(QStringLiteral("detailContainer"))->mapToScene(QPointF(0, 300)).toPoint();
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, edge);
    QTest::mouseMove(window, edge - QPoint(20, 0));
    QTest::mouseMove(window, edge - QPoint(60, 0));
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, edge - QPoint(60, 0));
    ASSERT_TRUE(waitUntil([&] { return widths()[1] > 400; }));
    const auto dragged = widths();
    resize(1000);
    EXPECT_LT(widths()[1], dragged[1]);
    resize(1320);
    EXPECT_EQ(widths(), dragged);
}

}  // namespace
}  // namespace ulvak
