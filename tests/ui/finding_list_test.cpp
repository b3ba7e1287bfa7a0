#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest>

#include "core/words.h"
#include "ui/shown.h"
#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::simulator;
using test::uncleanable;
using test::waitUntil;
using testing::ElementsAre;

class FindingListTest : public test::WindowTest {
protected:
    static bool has(QQuickItem* row, const char* name) {
        const auto* found = row->findChild<QQuickItem*>(QString::fromLatin1(name));
        return found != nullptr && found->isVisible();
    }
    void openMenu(const QString& title) {
        click(row(title), Qt::RightButton);
        ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    }
    QQuickItem* menuItem(const char* name) {
        return inPopup(QStringLiteral("rowMenu"), QString::fromLatin1(name));
    }
    void closeMenu() {
        key(Qt::Key_Escape);
        ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("rowMenu")); }));
    }
    std::string selected() {
        std::string names;
        for (const std::string& id : model->list()->selection()->ids())
            names += id.substr(3);
        return names;
    }
    void openLetters() {
        for (const char* name : {"a", "b", "c", "d", "e"})
            stage.result.push_back(finding(std::string("/v/") + name, SafetyLevel::safe, 2000 - name[0]));
        openScanned(QStringLiteral("safe"));
        focus(QStringLiteral("rows"));
    }
};

TEST_F(FindingListTest, ARescanShowsOnlyThatItScans) {
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned(QStringLiteral("safe"));
    ASSERT_NE(row(QStringLiteral("a")), nullptr);
    stage.scanGate.shut();
    key(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("listScanning")); }));
    EXPECT_TRUE(showsText(QStringLiteral("Taranıyor…")));
    EXPECT_FALSE(shows(QStringLiteral("rows")));
    EXPECT_EQ(app->findings().size(), 1U);
    stage.scanGate.open();
    EXPECT_TRUE(waitUntil([&] { return row(QStringLiteral("a")) != nullptr; }));
}

TEST_F(FindingListTest, AnEmptyListSaysWhy) {
    open({QStringLiteral("--level=keep")});
    EXPECT_TRUE(showsText(QStringLiteral("Henüz tarama yapılmadı")));
    EXPECT_TRUE(showsText(QStringLiteral("Başlamak için Tara'ya bas.")));
    scanAll();
    ASSERT_TRUE(waitUntil([&] { return showsText(QStringLiteral("Burada bir şey yok")); }));
    EXPECT_TRUE(showsText(QStringLiteral("Kişisel dosyaların ya da sistemin ihtiyaç duyduğu veriler.")));
    EXPECT_FALSE(shows(QStringLiteral("listSubtitle")));
}

TEST_F(FindingListTest, TheToolbarAnalysesWhereThereIsAGuess) {
    stage.result = {finding("/v/c", SafetyLevel::caution), guessed(finding("/v/g", SafetyLevel::safe)),
                    finding("/v/u", SafetyLevel::unknown)};
    openScanned(QStringLiteral("caution"));
    EXPECT_FALSE(shows(QStringLiteral("analyzeList")));
    model->setSidebar(SidebarItem{SafetyLevel::unknown});
    EXPECT_TRUE(shows(QStringLiteral("analyzeList")));
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    stage.classifyGate.shut();
    click(QStringLiteral("analyzeList"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("classify") == 1; }));
    EXPECT_TRUE(shows(QStringLiteral("analyzeList")));
    EXPECT_FALSE(isEnabled(QStringLiteral("analyzeList")));
    stage.classifyGate.open();
    EXPECT_TRUE(waitUntil([&] { return stage.count("classify") == 2; }));
}

TEST_F(FindingListTest, TheKeyboardGoesFromTheToolbarsButtonToTheRowsThatAreAnalysed) {
    stage.result = {guessed(finding("/v/g", SafetyLevel::safe))};
    openScanned(QStringLiteral("safe"));
    stage.classifyGate.shut();
    focus(QStringLiteral("analyzeList"));
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return stage.count("classify") == 1; }));
    EXPECT_EQ(focused(), QStringLiteral("rows"));
    stage.classifyGate.open();
}

TEST_F(FindingListTest, AVerdictByHandShowsAndCanBeTakenBack) {
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned(QStringLiteral("safe"));
    EXPECT_FALSE(has(row(QStringLiteral("a")), "rowBadge"));
    openMenu(QStringLiteral("a"));
    EXPECT_FALSE(model->list()->menuInfo(QStringLiteral("/v/a")).canReset);
    closeMenu();
    app->setLevel(SafetyLevel::safe, "/v/a");
    ASSERT_TRUE(waitUntil([&] { return has(row(QStringLiteral("a")), "rowBadge"); }));
    EXPECT_TRUE(showsText(QStringLiteral("Senin etiketin")));

    openMenu(QStringLiteral("a"));
    for (int line = 0; line < 3; ++line)
        key(Qt::Key_Down);
    key(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("levelMenu")); }));
    ASSERT_NE(inPopup(QStringLiteral("levelMenu"), QStringLiteral("reset")), nullptr);
    click(inPopup(QStringLiteral("levelMenu"), QStringLiteral("reset")));
    ASSERT_TRUE(waitUntil([&] { return !has(row(QStringLiteral("a")), "rowBadge"); }));
    EXPECT_EQ(app->finding("/v/a")->source, VerdictSource::rule);
    openMenu(QStringLiteral("a"));
    EXPECT_FALSE(popup(QStringLiteral("rowMenu"))->property("about").value<RowMenuInfo>().canReset);
    closeMenu();
}

TEST_F(FindingListTest, TheSubmenuRelabels) {
    stage.result = {finding("/v/a", SafetyLevel::safe), finding("/v/b", SafetyLevel::safe)};
    openScanned(QStringLiteral("safe"));
    openMenu(QStringLiteral("b"));
    for (int line = 0; line < 3; ++line)
        key(Qt::Key_Down);
    key(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("levelMenu")); }));
    settle();
    double above = -1;
    for (const char* level : {"safe", "regenerable", "caution", "keep", "unknown"}) {
        const QQuickItem* line =
            inPopup(QStringLiteral("levelMenu"), QStringLiteral("level-") + QString::fromLatin1(level));
        ASSERT_NE(line, nullptr) << level;
        EXPECT_GT(line->mapToScene({}).y(), above) << level;
        above = line->mapToScene({}).y();
    }
    click(inPopup(QStringLiteral("levelMenu"), QStringLiteral("level-keep")));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_EQ(app->finding("/v/b")->level, SafetyLevel::keep);
    EXPECT_EQ(app->finding("/v/b")->source, VerdictSource::user);
}

TEST_F(FindingListTest, TheMenuGoesWithItsRow) {
    stage.result = {finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    openMenu(QStringLiteral("b"));
    app->setLevel(SafetyLevel::keep, "/v/a");
    EXPECT_TRUE(isOpen(QStringLiteral("rowMenu")));
    app->setLevel(SafetyLevel::keep, "/v/b");
    EXPECT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("rowMenu")); }));
}

TEST_F(FindingListTest, TheMenuDoesWhatItSaysToItsRow) {
    stage.result = {finding("/v/a", SafetyLevel::keep, 2), finding("/v/b", SafetyLevel::keep, 1)};
    openScanned(QStringLiteral("keep"));
    openMenu(QStringLiteral("b"));
    click(menuItem("reveal"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("reveal /v/b") == 1; }));
    openMenu(QStringLiteral("b"));
    click(menuItem("analyze"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("classify /v/b ") == 1; }));
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    ASSERT_TRUE(waitUntil([&] { return row(QStringLiteral("a")) != nullptr; }));
    openMenu(QStringLiteral("a"));
    click(menuItem("trash"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean trash /v/a") == 1; }));
}

TEST_F(FindingListTest, TheMenuActsOnItsFindingAlsoWhenRowsChangeUnderIt) {
    stage.result = {finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    openMenu(QStringLiteral("b"));
    app->clean({"/v/a"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    click(menuItem("trash"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/a", "clean trash /v/b"));
}

TEST_F(FindingListTest, WhatCannotBeCleanedHasNoItemForIt) {
    stage.result = {uncleanable(finding("/v/a", SafetyLevel::safe, 2)),
                    finding("/v/b", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    openMenu(QStringLiteral("a"));
    EXPECT_EQ(menuItem("trash"), nullptr);
    EXPECT_NE(menuItem("reveal"), nullptr);
    closeMenu();
    openMenu(QStringLiteral("b"));
    EXPECT_NE(menuItem("trash"), nullptr);
    closeMenu();
}

TEST_F(FindingListTest, WhatIsBeingCleanedCannotBeCleanedFromItsMenu) {
    stage.result = {finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    stage.cleanGate.shut();
    app->clean({"/v/a"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return !app->cleaning().empty(); }));
    openMenu(QStringLiteral("a"));
    EXPECT_FALSE(menuItem("trash")->isEnabled());
    closeMenu();
    openMenu(QStringLiteral("b"));
    EXPECT_TRUE(menuItem("trash")->isEnabled());
    app->clean({"/v/b"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return app->cleaning().contains("/v/b"); }));
    EXPECT_FALSE(menuItem("trash")->isEnabled()) << "also in a menu that is open already";
    closeMenu();
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
}

TEST_F(FindingListTest, WithoutAModelTheMenuDoesNotOfferIt) {
    stage.status = AIStatus{.unavailable = "Yok."};
    stage.result = {finding("/v/a", SafetyLevel::safe)};
    openScanned(QStringLiteral("safe"));
    openMenu(QStringLiteral("a"));
    EXPECT_EQ(menuItem("analyze"), nullptr);
    closeMenu();
}

TEST_F(FindingListTest, IconsTellWhatKindOfItemItIs) {
    Finding group = finding("/v/group", SafetyLevel::safe, 3);
    group.urls.emplace_back("/v/other.app");
    stage.result = {simulator(finding("/v/sim.app", SafetyLevel::safe, 4)), group,
                    finding("/v/Uygulama.app", SafetyLevel::safe, 2),
                    finding("/v/dir", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    const auto icon = [&](const char* title) {
        return row(QString::fromLatin1(title))->property("icon").toString();
    };
    EXPECT_EQ(icon("sim.app"), QStringLiteral("iphone"));
    EXPECT_EQ(icon("group"), QStringLiteral("doc.on.doc"));
    EXPECT_EQ(icon("Uygulama.app"), QStringLiteral("app"));
    EXPECT_EQ(icon("dir"), QStringLiteral("folder"));
}

TEST_F(FindingListTest, ATinyRowStillHasABar) {
    stage.result = {finding("/v/huge", SafetyLevel::safe, 100'000'000'000),
                    finding("/v/tiny", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    const auto bar = [&](const char* title) {
        return row(QString::fromLatin1(title))->findChild<QQuickItem*>(QStringLiteral("filled"))->width();
    };
    EXPECT_EQ(bar("tiny"), 3);
    EXPECT_EQ(bar("huge"), 72);
}

TEST_F(FindingListTest, WhatIsBeingAnalysedSpinsInsteadOfItsBadge) {
    stage.result = {guessed(finding("/v/a", SafetyLevel::safe))};
    stage.classifyGate.shut();
    openScanned(QStringLiteral("safe"));
    EXPECT_TRUE(has(row(QStringLiteral("a")), "rowBadge"));
    app->analyze("/v/a", "");
    ASSERT_TRUE(waitUntil([&] { return has(row(QStringLiteral("a")), "rowSpinner"); }));
    EXPECT_FALSE(has(row(QStringLiteral("a")), "rowBadge"));
    stage.classifyGate.open();
    ASSERT_TRUE(waitUntil([&] {
        return row(QStringLiteral("Yorum")) != nullptr && !has(row(QStringLiteral("Yorum")), "rowSpinner");
    }));
    EXPECT_EQ(row(QStringLiteral("Yorum"))
                  ->findChild<QQuickItem*>(QStringLiteral("rowBadge"))
                  ->property("badge")
                  .toString(),
              Texts::fixed(words().model) + QStringLiteral(" %85"));
    EXPECT_TRUE(showsText(QStringLiteral("%85")));
}

TEST_F(FindingListTest, MouseSelectsWithShiftAndControl) {
    openLetters();
    click(row(QStringLiteral("b")));
    EXPECT_EQ(selected(), "b");
    click(row(QStringLiteral("d")), Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "bcd");
    click(row(QStringLiteral("c")), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(selected(), "bd");
}

TEST_F(FindingListTest, KeysSelect) {
    openLetters();
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), "a");
    key(Qt::Key_Down);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "bc");
    key(Qt::Key_Down, Qt::ControlModifier);
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(selected(), "bcd");
    key(Qt::Key_End);
    EXPECT_EQ(selected(), "e");
    key(Qt::Key_PageUp);
    EXPECT_EQ(selected(), "a");
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selected(), "abcde");
    key(Qt::Key_Escape);
    EXPECT_EQ(selected(), "");
}

TEST_F(FindingListTest, TypingFindsARow) {
    openLetters();
    type(QStringLiteral("d"));
    EXPECT_EQ(selected(), "d");
}

TEST_F(FindingListTest, TypingGoesOnFromLetterToLetterAndOtherKeysAreNone) {
    for (const char* name : {"elma", "el feneri", "el arabası"})
        stage.result.push_back(finding(std::string("/v/") + name, SafetyLevel::safe, 2000 - name[3]));
    openScanned(QStringLiteral("safe"));
    focus(QStringLiteral("rows"));
    QTest::keyClick(window, Qt::Key_Backspace);
    type(QStringLiteral("el a"));
    EXPECT_EQ(selected(), "el arabası");
}

TEST_F(FindingListTest, AnotherLevelsListBeginsAtItsTop) {
    for (const SafetyLevel level : {SafetyLevel::safe, SafetyLevel::caution}) {
        for (int number = 0; number < 200; ++number)
            stage.result.push_back(finding("/v/" + std::to_string(int(level)) + "-" + std::to_string(number),
                                           level, 10'000 - number));
    }
    openScanned(QStringLiteral("safe"));
    focus(QStringLiteral("rows"));
    key(Qt::Key_End);
    const auto scrolled = [&] {
        const QQuickItem* rows = item(QStringLiteral("rows"));
        return rows->property("contentY").toDouble() - rows->property("originY").toDouble();
    };
    settle();
    ASSERT_GT(scrolled(), 1000);
    click(QStringLiteral("row-caution"));
    settle();
    EXPECT_LE(scrolled(), 0);
    EXPECT_NE(row(shown(model->list()->rows()->at(0)->title)), nullptr);
}

TEST_F(FindingListTest, AMenuGoesWithItsFindingAndNotWithAnother) {
    openLetters();
    openMenu(QStringLiteral("b"));
    app->clean({"/v/a", "/v/d"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 3; }));
    settle();
    EXPECT_TRUE(isOpen(QStringLiteral("rowMenu")));
    app->clean({"/v/b"}, CleanMode::trash);
    EXPECT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("rowMenu")); }));
}

TEST_F(FindingListTest, TheMenuKeyOpensTheMenuAndArrowsChooseInIt) {
    openLetters();
    key(Qt::Key_Down);
    key(Qt::Key_Menu);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return stage.count("reveal /v/a") == 1; }));
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("rows"); })) << focused().toStdString();
}

TEST_F(FindingListTest, TheArrowsOfAMenuPassOverWhatItDoesNotShow) {
    stage.status = AIStatus{.unavailable = "Yok."};
    stage.result = {uncleanable(finding("/v/a", SafetyLevel::safe))};
    openScanned(QStringLiteral("safe"));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Down);
    key(Qt::Key_Menu);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    key(Qt::Key_Down);  // past the analysis item
    key(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("levelMenu")); }));
    key(Qt::Key_Left);
    ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("levelMenu")); }));
    key(Qt::Key_Down);  // skips the Trash item
    EXPECT_TRUE(window->activeFocusItem()->isVisible());
    EXPECT_EQ(window->activeFocusItem()->property("text").toString(), QStringLiteral("Etiketi Değiştir"));
}

TEST_F(FindingListTest, OnlyTheRowsInSightExist) {
    for (int number = 0; number < 5000; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::safe, 10'000 - number));
    openScanned(QStringLiteral("safe"));
    EXPECT_EQ(rowCount(), 5000);
    const auto rows = [&] {
        int count = 0;
        for (const QQuickItem* child :
             item(QStringLiteral("rows"))->property("contentItem").value<QQuickItem*>()->childItems())
            count += child->property("findingId").isValid() ? 1 : 0;
        return count;
    };
    EXPECT_LT(rows(), 40);
    focus(QStringLiteral("rows"));
    key(Qt::Key_End);
    ASSERT_TRUE(waitUntil([&] { return row(QStringLiteral("4999")) != nullptr; }));
    EXPECT_LT(rows(), 60);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(text(QStringLiteral("severalCount")), QStringLiteral("5000 öğe seçili"));
}

TEST_F(FindingListTest, WhatIsNotUtf8IsShownWithMarksAndCleanedAllTheSame) {
    stage.result = {finding("/v/ad\xff\xfe", SafetyLevel::safe, 2),
                    finding("/v/ad\xfe\xff", SafetyLevel::safe, 1)};
    openScanned(QStringLiteral("safe"));
    ASSERT_EQ(rowCount(), 2);
    focus(QStringLiteral("rows"));
    key(Qt::Key_End);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("moveToTrash")); }));
    EXPECT_EQ(text(QStringLiteral("detailTitle")), QStringLiteral("ad\uFFFD\uFFFD"));
    click(QStringLiteral("moveToTrash"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/ad\xfe\xff"));
}

TEST_F(FindingListTest, NamesArePlainText) {
    Finding tricky = finding("/v/a", SafetyLevel::safe);
    tricky.title = "<b>kalın</b> & <img src='x'>";
    stage.result = {tricky};
    openScanned(QStringLiteral("safe"));
    click(row(QString::fromStdString(tricky.title)));
    EXPECT_EQ(text(QStringLiteral("detailTitle")), QString::fromStdString(tricky.title));
    EXPECT_EQ(item(QStringLiteral("detailTitle"))->property("textFormat").toInt(), int(Qt::PlainText));
    click(QStringLiteral("removePermanently"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("confirmPermanent")); }));
    const QQuickItem* title = inPopup(QStringLiteral("confirmPermanent"), QStringLiteral("dialogTitle"));
    EXPECT_TRUE(title->property("text").toString().startsWith(QString::fromStdString(tricky.title)));
    EXPECT_EQ(title->property("textFormat").toInt(), int(Qt::PlainText));
}

}  // namespace
}  // namespace ulvak
