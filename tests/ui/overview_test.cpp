#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QtTest>
#include <cmath>

#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::waitUntil;

class OverviewTest : public test::WindowTest {
protected:
    /// Call once the layout is done.
    double width(const QString& name) {
        const QQuickItem* found = item(name);
        return found == nullptr ? 0 : found->width();
    }
};

TEST_F(OverviewTest, WelcomesWithOneButtonThatScans) {
    open();
    EXPECT_TRUE(showsText(QStringLiteral("Diskinde neler yer kaplıyor?")));
    EXPECT_FALSE(shows(QStringLiteral("segment-safe")));
    EXPECT_TRUE(shows(QStringLiteral("segment-other")));
    EXPECT_EQ(text(QStringLiteral("used")), QStringLiteral("400 GB kullanılıyor"));
    EXPECT_EQ(text(QStringLiteral("free")), QStringLiteral("100 GB boş"));
    focus(QStringLiteral("start"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return stage.count("scan") == 1; }));
}

TEST_F(OverviewTest, ShowsWhatTheScanHasCounted) {
    stage.files = 12'345;
    stage.bytes = 6'700'000'000;
    stage.scanGate.shut();
    open({QStringLiteral("--autoscan")});
    EXPECT_TRUE(waitUntil([&] { return text(QStringLiteral("scannedFiles")) == QStringLiteral("12.345"); }));
    EXPECT_TRUE(waitUntil([&] { return text(QStringLiteral("scannedBytes")) == QStringLiteral("6,7 GB"); }));
    EXPECT_TRUE(waitUntil(
        [&] { return text(QStringLiteral("currentPath")) == QStringLiteral("/home/biri/klasör"); }));
    EXPECT_TRUE(showsText(QStringLiteral("Taranıyor…")));
}

TEST_F(OverviewTest, APathThatIsTooLongIsToldWhole) {
    stage.current = "/v/" + std::string(300, 'w');
    stage.scanGate.shut();
    open({QStringLiteral("--autoscan")});
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("currentPath")).startsWith(u'/'); }));
    settle();
    QTest::mouseMove(window, item(QStringLiteral("currentPath"))->mapToScene(QPointF(40, 4)).toPoint());
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("currentTip")); }));
    EXPECT_EQ(popup(QStringLiteral("currentTip"))->property("text").toString(),
              QStringLiteral("/v/") + QString(300, u'w'));
}

TEST_F(OverviewTest, WithoutADiskThereIsNoFigureButEverythingElse) {
    stage.disk.reset();
    stage.denied = 2;
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned();
    EXPECT_FALSE(shows(QStringLiteral("reclaimable")));
    EXPECT_FALSE(shows(QStringLiteral("free")));
    EXPECT_TRUE(shows(QStringLiteral("deniedBanner")));
    EXPECT_TRUE(shows(QStringLiteral("card-safe")));
    EXPECT_TRUE(shows(QStringLiteral("largest-0")));
}

TEST_F(OverviewTest, LeadsToTheSettingsWhereTheSystemHasThem) {
    stage.denied = 2;
    stage.services.hasPrivacySettings = true;
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned();
    click(QStringLiteral("openSettings"));
    EXPECT_TRUE(waitUntil([&] { return stage.count("open x-apple.systempreferences:") == 1; }));
}

TEST_F(OverviewTest, WithoutSettingsThereIsNoButtonForThem) {
    stage.denied = 2;
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned();
    EXPECT_TRUE(shows(QStringLiteral("deniedBanner")));
    EXPECT_FALSE(shows(QStringLiteral("openSettings")));
}

TEST_F(OverviewTest, EmptyingTheTrashTurnsOneBannerIntoTheOther) {
    stage.result = {finding("/v/one", SafetyLevel::safe, 1)};
    openScanned();
    EXPECT_FALSE(shows(QStringLiteral("trashBanner")));
    app->clean({"/v/one"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("trashBanner")); }));
    EXPECT_FALSE(shows(QStringLiteral("freedBanner")));
    click(QStringLiteral("emptyTrash"));
    ASSERT_TRUE(waitUntil([&] { return !shows(QStringLiteral("trashBanner")); }));
    EXPECT_EQ(text(QStringLiteral("freedBanner")), QStringLiteral("Bu oturumda 1 bayt yer açtın."));
    EXPECT_EQ(stage.count("empty"), 1);
}

TEST_F(OverviewTest, ReturnDoesNotEmptyTheTrashAndSpaceDoes) {
    stage.result = {finding("/v/one", SafetyLevel::safe, 1)};
    openScanned();
    app->clean({"/v/one"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("trashBanner")); }));
    focus(QStringLiteral("emptyTrash"));
    key(Qt::Key_Return);
    key(Qt::Key_Enter);
    EXPECT_FALSE(model->trash()->isEmptying());
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("freedBanner")); }));
    EXPECT_EQ(stage.count("empty"), 1);
}

TEST_F(OverviewTest, ATrashThatHoldsMoreIsAskedAboutAndCancelIsTheDefault) {
    stage.result = {finding("/v/one", SafetyLevel::safe, 90'000'000)};
    stage.trash->others = 420'000'000;
    stage.trash->otherItems = 1199;
    openScanned();
    app->clean({"/v/one"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("trashBanner")); }));
    click(QStringLiteral("emptyTrash"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmEmptyTrash")); }));
    EXPECT_EQ(
        popup(QStringLiteral("confirmEmptyTrash"))->property("message").toString(),
        QStringLiteral("Çöp kutusunda toplam 510 MB (1.200 öğe) var. Bunun 90 MB (1 öğe) kadarı bu oturumda "
                       "buradan atıldı. Boşaltırsan hepsi kalıcı olarak silinir. Bu işlem geri alınamaz."));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("confirmEmptyTrash")); }));
    ASSERT_TRUE(waitUntil([&] { return !app->trashQuestion(); }));
    EXPECT_EQ(stage.count("empty"), 0);
    EXPECT_TRUE(shows(QStringLiteral("trashBanner")));

    click(QStringLiteral("emptyTrash"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmEmptyTrash")); }));
    click(inPopup(QStringLiteral("confirmEmptyTrash"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("freedBanner")); }));
    EXPECT_EQ(stage.count("empty"), 1);
    EXPECT_EQ(text(QStringLiteral("freedBanner")), QStringLiteral("Bu oturumda 510 MB yer açtın."));
}

TEST_F(OverviewTest, ATrashThatCouldNotBeSeenWholeSaysSo) {
    stage.result = {finding("/v/one", SafetyLevel::safe, 1)};
    stage.services.trashContents = [](std::span<const platform::TrashedItem>) {
        return Cleaner::TrashContents{.bytes = 5'000'000, .items = 2, .isComplete = false};
    };
    openScanned();
    app->clean({"/v/one"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("trashBanner")); }));
    click(QStringLiteral("emptyTrash"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmEmptyTrash")); }));
    EXPECT_EQ(
        popup(QStringLiteral("confirmEmptyTrash"))->property("message").toString(),
        QStringLiteral("Çöp kutusunun bir bölümüne bakılamadı. Görülen: 5 MB (2 öğe). Bunların hiçbiri bu "
                       "oturumda buradan atılmadı. Boşaltırsan hepsi kalıcı olarak silinir. Bu işlem geri "
                       "alınamaz."));
}

TEST_F(OverviewTest, WhatCanBeDoneAboutAnAbsentModelIsToldWithItsReason) {
    stage.status = AIStatus{.unavailable = "Model yok.", .hint = "ULVAK_MODEL_URL <b>ayarla</b>."};
    open();
    QTest::mouseMove(window, item(QStringLiteral("modelMessage"))->mapToScene(QPointF(4, 4)).toPoint());
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("modelHint")); }));
    EXPECT_EQ(popup(QStringLiteral("modelHint"))->property("text").toString(),
              QStringLiteral("ULVAK_MODEL_URL <b>ayarla</b>."));
    const auto* words = popup(QStringLiteral("modelHint"))->property("contentItem").value<QQuickItem*>();
    EXPECT_EQ(words->property("textFormat").toInt(), int(Qt::PlainText));
    auto* told = QAccessible::queryAccessibleInterface(item(QStringLiteral("modelMessage")));
    EXPECT_EQ(told->text(QAccessible::Description), QStringLiteral("ULVAK_MODEL_URL <b>ayarla</b>."));
}

TEST_F(OverviewTest, WithoutAModelTheUncertainBannerOffersNothingAndTheReasonStandsBelow) {
    stage.status = AIStatus{.unavailable = "Bu bilgisayarda model yok."};
    for (int number = 0; number < 5; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::unknown));
    openScanned();
    ASSERT_TRUE(shows(QStringLiteral("uncertainBanner")));
    EXPECT_TRUE(
        text(QStringLiteral("uncertainBanner")).startsWith(QStringLiteral("5 klasör bilinmiyor ya da")));
    EXPECT_FALSE(shows(QStringLiteral("analyzeAll")));
    EXPECT_FALSE(shows(QStringLiteral("cancelBatch")));
    EXPECT_EQ(text(QStringLiteral("modelMessage")), QStringLiteral("Bu bilgisayarda model yok."));
    EXPECT_GT(item(QStringLiteral("modelMessage"))->mapToScene({}).y(),
              item(QStringLiteral("uncertainBanner"))->mapToScene({}).y());
}

TEST_F(OverviewTest, ABatchShowsItsProgressAndCanBeStopped) {
    stage.result = {finding("/v/a", SafetyLevel::unknown, 2), guessed(finding("/v/b", SafetyLevel::safe, 1))};
    openScanned();
    EXPECT_FALSE(shows(QStringLiteral("batchProgress")));
    EXPECT_FALSE(shows(QStringLiteral("modelMessage")));
    stage.classifyGate.shut();
    click(QStringLiteral("analyzeAll"));
    ASSERT_TRUE(
        waitUntil([&] { return shows(QStringLiteral("batchProgress")) && stage.count("classify") == 1; }));
    EXPECT_FALSE(shows(QStringLiteral("analyzeAll")));
    EXPECT_TRUE(text(QStringLiteral("uncertainBanner")).startsWith(QStringLiteral("2 klasör")));
    click(QStringLiteral("cancelBatch"));
    EXPECT_FALSE(shows(QStringLiteral("batchProgress")));
    stage.classifyGate.open();
    EXPECT_TRUE(waitUntil(
        [&] { return text(QStringLiteral("uncertainBanner")).startsWith(QStringLiteral("1 klasör")); }));
    EXPECT_EQ(stage.count("classify"), 1);
}

TEST_F(OverviewTest, ListsTheLargestAtMostEight) {
    for (int number = 0; number < 9; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::caution, 100 - number));
    openScanned();
    EXPECT_TRUE(shows(QStringLiteral("largest-7")));
    EXPECT_FALSE(shows(QStringLiteral("largest-8")));
    focus(QStringLiteral("largest-7"));
    key(Qt::Key_Space);
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::caution});
}

TEST_F(OverviewTest, OneOfTheLargestTellsItsWholePath) {
    stage.result = {finding("/v/klasör/" + std::string(150, 'w'), SafetyLevel::caution)};
    openScanned();
    focus(QStringLiteral("largest-0"));
    settle();
    QTest::mouseMove(window, item(QStringLiteral("largest-0"))->mapToScene(QPointF(40, 10)).toPoint());
    const auto* tip = item(QStringLiteral("largest-0"))->findChild<QObject*>(QStringLiteral("largestTip"));
    ASSERT_TRUE(waitUntil([&] { return tip->property("opened").toBool(); }));
    EXPECT_TRUE(
        tip->property("text").toString().endsWith(QStringLiteral("\n/v/klasör/") + QString(150, u'w')));
}

TEST_F(OverviewTest, ListsFewerWhenThereAreFewerAndItsHeadingWithNone) {
    openScanned();
    EXPECT_TRUE(showsText(QStringLiteral("En büyükler")));
    EXPECT_FALSE(shows(QStringLiteral("largest-0")));
    stage.result = {finding("/v/a", SafetyLevel::safe), finding("/v/b", SafetyLevel::safe)};
    scanAll();
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("largest-1")); }));
    EXPECT_FALSE(shows(QStringLiteral("largest-2")));
}

TEST_F(OverviewTest, ACardLeadsToItsListAndTheKeyboardGoesAlong) {
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned();
    click(QStringLiteral("card-safe"));
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::safe});
    ASSERT_TRUE(waitUntil([&] { return row(QStringLiteral("a")) != nullptr; }));
    EXPECT_EQ(focused(), QStringLiteral("rows"));
}

TEST_F(OverviewTest, ACardKeepsTheFocusWhileFindingsChange) {
    stage.result = {finding("/v/a", SafetyLevel::safe), finding("/v/b", SafetyLevel::safe)};
    openScanned();
    focus(QStringLiteral("card-caution"));
    app->setLevel(SafetyLevel::caution, "/v/a");
    ASSERT_TRUE(waitUntil([&] {
        return item(QStringLiteral("card-caution"))
            ->property("countText")
            .toString()
            .startsWith(QStringLiteral("1 öğe"));
    }));
    EXPECT_EQ(focused(), QStringLiteral("card-caution"));
}

TEST_F(OverviewTest, FreeSpaceIsRedBelowTwentyGigabytes) {
    const auto color = [&] { return item(QStringLiteral("free"))->property("color").value<QColor>(); };
    stage.disk = DiskInfo{.total = 100'000'000'000, .available = 20'000'000'000};
    openScanned();
    EXPECT_LT(color().red(), 150);
    stage.disk->available = 19'999'999'999;
    scanAll();
    EXPECT_GT(color().red(), 150);
}

TEST_F(OverviewTest, SegmentsAreAsWideAsWhatTheyStandForAndOnePointApart) {
    stage.disk = DiskInfo{.total = 1000, .available = 300};
    stage.result = {finding("/v/a", SafetyLevel::safe, 200), finding("/v/b", SafetyLevel::keep, 100)};
    openScanned();
    settle();
    // Each segment ends at the nearest whole unit.
    const double bar = item(QStringLiteral("segment-safe"))->parentItem()->width();
    const double safe = std::round(bar * 0.2);
    const double keep = std::round(bar * (0.2 + 0.1));
    const double other = std::round(bar * (0.2 + 0.1 + 0.4));
    EXPECT_EQ(width(QStringLiteral("segment-safe")), safe);
    EXPECT_EQ(width(QStringLiteral("segment-keep")), keep - safe);
    EXPECT_EQ(width(QStringLiteral("segment-other")), other - keep);
    EXPECT_FALSE(shows(QStringLiteral("segment-caution")));
    EXPECT_EQ(item(QStringLiteral("segment-keep"))->x(), safe + 1);
    EXPECT_EQ(item(QStringLiteral("segment-other"))->x(), keep + 2);
}

TEST_F(OverviewTest, SegmentsBeyondWhatIsUsedLeaveNoOther) {
    stage.disk = DiskInfo{.total = 1000, .available = 900};
    stage.result = {finding("/v/a", SafetyLevel::safe, 200)};
    openScanned();
    EXPECT_TRUE(shows(QStringLiteral("segment-safe")));
    EXPECT_FALSE(shows(QStringLiteral("segment-other")));
}

TEST_F(OverviewTest, SegmentsBeyondTheDiskStayInTheBar) {
    stage.disk = DiskInfo{.total = 1000, .available = 900};
    stage.result = {finding("/v/a", SafetyLevel::keep, 4000)};
    openScanned();
    settle();
    const QQuickItem* bar = item(QStringLiteral("segment-keep"))->parentItem();
    const QPointF beyond = bar->mapToScene(QPointF(bar->width() + 10, bar->height() / 2));
    const QImage picture = window->grabWindow();
    const double scale = window->effectiveDevicePixelRatio();
    EXPECT_EQ(picture.pixelColor((beyond * scale).toPoint()), window->color());
}

TEST_F(OverviewTest, PartsOfTheBarAreApartInAWindowOfAnyWidth) {
    stage.disk = DiskInfo{.total = 1000, .available = 300};
    stage.result = {finding("/v/a", SafetyLevel::safe, 137), finding("/v/b", SafetyLevel::regenerable, 91),
                    finding("/v/c", SafetyLevel::caution, 53), finding("/v/d", SafetyLevel::unknown, 211),
                    finding("/v/e", SafetyLevel::keep, 77)};
    openScanned();
    const double scale = window->effectiveDevicePixelRatio();
    for (int width = 1200; width < 1240; width += 3) {
        window->resize(width, 700);
        ASSERT_TRUE(waitUntil([&] { return item(QStringLiteral("columns"))->width() == width; }));
        settle();
        const QQuickItem* row = item(QStringLiteral("segment-safe"))->parentItem();
        const QImage picture = window->grabWindow();
        const auto at = [&](double x) {
            return (row->mapToScene(QPointF(x, row->height() / 2)) * scale).toPoint();
        };
        const QRgb ground = picture.pixel(at(row->width() - 10));
        const QQuickItem* other = item(QStringLiteral("segment-other"));
        std::vector<int> gaps;
        for (QPoint pixel = at(10); pixel.x() < at(other->x() + other->width() / 2).x(); pixel.rx() += 1) {
            if (picture.pixel(pixel) != ground)
                continue;
            if (picture.pixel(pixel - QPoint(1, 0)) == ground)
                ++gaps.back();
            else
                gaps.push_back(1);
        }
        EXPECT_THAT(gaps, testing::ElementsAreArray(std::vector<int>(5, int(scale)))) << width;
    }
}

/// The focused button disappears, and the view does not scroll.
TEST_F(OverviewTest, StaysWhereItIsWhenTheTrashHasBeenEmptied) {
    stage.result.push_back(finding("/v/trash", SafetyLevel::safe, 1000));
    for (int number = 0; number < 8; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::caution, 100 - number));
    openScanned();
    app->clean({"/v/trash"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("emptyTrash")); }));
    window->resize(1000, 640);
    settle();
    QQuickItem* overview = item(QStringLiteral("overview"));
    const auto top = [&] { return overview->property("contentY").toDouble(); };
    focus(QStringLiteral("emptyTrash"));
    overview->setProperty("contentY", 90);
    model->trash()->empty();
    ASSERT_TRUE(waitUntil([&] { return !shows(QStringLiteral("emptyTrash")); }));
    settle();
    EXPECT_EQ(top(), 90);
    EXPECT_NE(focused(), QStringLiteral("emptyTrash")) << "a key must not press what cannot be seen";
}

TEST_F(OverviewTest, TheKeyboardGoesFromTheButtonThatScansToTheOneThatStops) {
    stage.scanGate.shut();
    open();
    focus(QStringLiteral("start"));
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return app->phase() == AppModel::Phase::scanning; }));
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("scan"); })) << focused().toStdString();
    EXPECT_TRUE(item(QStringLiteral("scan"))->property("visualFocus").toBool());
    key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return app->phase() == AppModel::Phase::idle; }));
}

TEST_F(OverviewTest, TheKeyboardStaysWithAScanThatTakesACardAway) {
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned();
    stage.scanGate.shut();
    focus(QStringLiteral("card-safe"));
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("scan"); })) << focused().toStdString();
}

TEST_F(OverviewTest, TheKeyboardGoesFromABatchsButtonToTheOneThatStopsItAndBack) {
    stage.result = {finding("/v/a", SafetyLevel::unknown, 2), guessed(finding("/v/b", SafetyLevel::safe, 1))};
    openScanned();
    stage.classifyGate.shut();
    focus(QStringLiteral("analyzeAll"));
    key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("cancelBatch"); }))
        << focused().toStdString();
    key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("analyzeAll"); }))
        << focused().toStdString();
    stage.classifyGate.open();
}

TEST_F(OverviewTest, KeysScrollWhatNoControlReaches) {
    for (int number = 0; number < 8; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::caution, 100 - number));
    openScanned();
    window->resize(1000, 640);
    focus(QStringLiteral("card-safe"));
    settle();
    auto* overview = item(QStringLiteral("overview"));
    const auto bottom = [&] { return overview->property("contentHeight").toDouble() - overview->height(); };
    ASSERT_TRUE(waitUntil([&] { return bottom() > 0; }));
    key(Qt::Key_End);
    EXPECT_DOUBLE_EQ(overview->property("contentY").toDouble(), bottom());
    key(Qt::Key_Home);
    EXPECT_DOUBLE_EQ(overview->property("contentY").toDouble(), 0);
}

}  // namespace
}  // namespace ulvak
