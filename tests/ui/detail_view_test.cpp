#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QtTest>

#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::simulator;
using test::uncleanable;
using test::waitUntil;
using testing::ElementsAre;

class DetailViewTest : public test::WindowTest {
protected:
    /// Opens the list of the first finding's level, selects that finding and focuses the list.
    void show(std::vector<Finding> findings) {
        const QString level = QString::fromUtf8(info(findings.front().level).rawValue.data());
        const QString title = QString::fromStdString(findings.front().title);
        stage.result = std::move(findings);
        openScanned(level);
        focus(QStringLiteral("rows"));
        key(Qt::Key_Home);
        ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == title; }));
    }
    QString dialogText(const char* dialog, const char* name) {
        QQuickItem* shown = inPopup(QString::fromLatin1(dialog), QString::fromLatin1(name));
        return shown == nullptr ? QString() : shown->property("text").toString();
    }
    void waitForDialog(const char* dialog) {
        ASSERT_TRUE(waitUntil([&] { return isOpen(QString::fromLatin1(dialog)); })) << dialog;
    }
    void waitForNoDialog(const char* dialog) {
        ASSERT_TRUE(waitUntil([&] { return !isOpen(QString::fromLatin1(dialog)); })) << dialog;
    }
};

TEST_F(DetailViewTest, WhatIsToBeKeptIsAskedAboutByItsLevel) {
    show({finding("/v/a", SafetyLevel::keep)});
    click(QStringLiteral("moveToTrash"));
    waitForDialog("confirmTrash");
    EXPECT_EQ(dialogText("confirmTrash", "dialogTitle"), QStringLiteral("a çöp kutusuna taşınsın mı?"));
    EXPECT_EQ(dialogText("confirmTrash", "dialogMessage"),
              QStringLiteral("Bu öğe \"Dokunma\" olarak etiketli. Emin misin?"));
    EXPECT_EQ(dialogText("confirmTrash", "confirm"), QStringLiteral("Çöp Kutusuna Taşı"));
    EXPECT_EQ(stage.count("clean"), 0);
    click(inPopup(QStringLiteral("confirmTrash"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean trash /v/a") == 1; }));
}

TEST_F(DetailViewTest, WhatStaysElsewhereIsToldUnderTheSize) {
    Finding shared = finding("/v/a", SafetyLevel::safe, 3'000'000'000);
    shared.heldElsewhere = 2'700'000'000;
    show({shared, finding("/v/b", SafetyLevel::safe, 2'000'000'000)});
    EXPECT_TRUE(shows(QStringLiteral("freedNote")));
    EXPECT_EQ(text(QStringLiteral("freedNote")),
              QStringLiteral("Silince 300 MB boşalır: kalanı başka yerlerde de duruyor"));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Down);
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("b"); }));
    EXPECT_FALSE(shows(QStringLiteral("freedNote")));
}

TEST_F(DetailViewTest, ACautiousOneMovesAtOnceAndCannotBeDeletedForGood) {
    show({finding("/v/a", SafetyLevel::caution)});
    EXPECT_FALSE(shows(QStringLiteral("removePermanently")));
    click(QStringLiteral("moveToTrash"));
    EXPECT_FALSE(isOpen(QStringLiteral("confirmTrash")));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean trash /v/a") == 1; }));
}

TEST_F(DetailViewTest, ASafeOneCanBeDeletedForGoodAfterAQuestion) {
    show({finding("/v/a", SafetyLevel::safe, 3'200'000'000)});
    EXPECT_EQ(text(QStringLiteral("removePermanently")), QStringLiteral("Kalıcı Sil…"));
    click(QStringLiteral("removePermanently"));
    waitForDialog("confirmPermanent");
    EXPECT_EQ(dialogText("confirmPermanent", "dialogTitle"), QStringLiteral("a kalıcı olarak silinsin mi?"));
    EXPECT_EQ(dialogText("confirmPermanent", "dialogMessage"),
              QStringLiteral("Bu işlem geri alınamaz. Dosyalar çöp kutusuna gitmez."));
    EXPECT_EQ(dialogText("confirmPermanent", "confirm"), QStringLiteral("Kalıcı Olarak Sil (3,2 GB)"));
    EXPECT_EQ(focused(), QStringLiteral("cancel"));
    click(inPopup(QStringLiteral("confirmPermanent"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean permanent /v/a") == 1; }));
}

TEST_F(DetailViewTest, TheTrashIsEmptiedAfterAQuestionAndNothingElse) {
    stage.trash->others = 500;
    show({test::trash(finding("/v/Trash", SafetyLevel::safe, 500))});
    EXPECT_FALSE(shows(QStringLiteral("moveToTrash")));
    EXPECT_FALSE(shows(QStringLiteral("removePermanently")));
    EXPECT_EQ(text(QStringLiteral("emptyTrashFinding")), QStringLiteral("Çöp Kutusunu Boşalt"));
    click(QStringLiteral("emptyTrashFinding"));
    waitForDialog("confirmEmptyTrash");
    EXPECT_EQ(stage.trash->others, 500);
    EXPECT_EQ(focused(), QStringLiteral("cancel"));
    click(inPopup(QStringLiteral("confirmEmptyTrash"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return stage.trash->others == 0; }));
}

TEST_F(DetailViewTest, ACommandCanBeCopiedAndIsNotRun) {
    Finding docker = test::uncleanable(finding("/v/docker", SafetyLevel::keep));
    docker.command = "docker system prune -a";
    show({docker, finding("/v/b", SafetyLevel::keep, 1)});
    ASSERT_TRUE(shows(QStringLiteral("copyCommand")));
    QGuiApplication::clipboard()->setText(QStringLiteral("başka"));
    click(QStringLiteral("copyCommand"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("docker system prune -a"));
    EXPECT_EQ(text(QStringLiteral("copyCommand")), QStringLiteral("Kopyalandı"));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Down);
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("b"); }));
    EXPECT_FALSE(shows(QStringLiteral("copyCommand")));
}

TEST_F(DetailViewTest, EnterAndEscapeNeverDelete) {
    show({finding("/v/a", SafetyLevel::safe)});
    for (const Qt::Key cancel : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        for (const bool fromConfirm : {false, true}) {
            click(QStringLiteral("removePermanently"));
            waitForDialog("confirmPermanent");
            if (fromConfirm)
                inPopup(QStringLiteral("confirmPermanent"), QStringLiteral("confirm"))
                    ->forceActiveFocus(Qt::TabFocusReason);
            key(cancel);
            waitForNoDialog("confirmPermanent");
            EXPECT_EQ(stage.count("clean"), 0) << cancel;
        }
    }
    click(QStringLiteral("removePermanently"));
    waitForDialog("confirmPermanent");
    inPopup(QStringLiteral("confirmPermanent"), QStringLiteral("confirm"))
        ->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean permanent /v/a") == 1; }));
}

TEST_F(DetailViewTest, TheDialogActsOnTheFindingItWasOpenedFor) {
    show({finding("/v/a", SafetyLevel::keep, 3), finding("/v/b", SafetyLevel::keep, 2),
          finding("/v/c", SafetyLevel::keep, 1)});
    key(Qt::Key_Down);
    ASSERT_EQ(text(QStringLiteral("detailTitle")), QStringLiteral("b"));
    click(QStringLiteral("moveToTrash"));
    waitForDialog("confirmTrash");
    // The other rows change, and so does the finding itself.
    app->clean({"/v/a"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 2; }));
    app->setLevel(SafetyLevel::keep, "/v/b");
    ASSERT_TRUE(isOpen(QStringLiteral("confirmTrash")));
    click(inPopup(QStringLiteral("confirmTrash"), QStringLiteral("confirm")));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/a", "clean trash /v/b"));
}

TEST_F(DetailViewTest, AnotherSelectionTakesTheDialogAwayWithoutAnAction) {
    show({finding("/v/a", SafetyLevel::keep, 3), finding("/v/b", SafetyLevel::keep, 2)});
    click(QStringLiteral("moveToTrash"));
    waitForDialog("confirmTrash");
    model->list()->selection()->set({"/v/b"});
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("b"); }));
    EXPECT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("confirmTrash")); }));
    EXPECT_EQ(stage.count("clean"), 0);
}

TEST_F(DetailViewTest, ASimulatorIsDeletedWithoutAQuestion) {
    show({simulator(finding("/v/a", SafetyLevel::safe))});
    EXPECT_FALSE(shows(QStringLiteral("moveToTrash")));
    focus(QStringLiteral("deleteSimulator"));
    key(Qt::Key_Return);
    EXPECT_TRUE(app->cleaning().empty()) << "Return never deletes";
    click(QStringLiteral("deleteSimulator"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean permanent /v/a") == 1; }));
}

TEST_F(DetailViewTest, WhatCannotBeCleanedSaysWhyAndOffersTheRest) {
    show({uncleanable(finding("/v/a", SafetyLevel::safe), "Sistem kendisi yönetir.")});
    ASSERT_TRUE(shows(QStringLiteral("reason")));
    EXPECT_EQ(text(QStringLiteral("reason")), QStringLiteral("Sistem kendisi yönetir."));
    for (const char* button : {"moveToTrash", "removePermanently", "deleteSimulator"})
        EXPECT_FALSE(shows(QString::fromLatin1(button))) << button;
    click(QStringLiteral("revealButton"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("reveal /v/a") == 1; }));
    click(QStringLiteral("relabel"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("detailLevels")); }));
    EXPECT_EQ(inPopup(QStringLiteral("detailLevels"), QStringLiteral("reset")), nullptr);
    click(inPopup(QStringLiteral("detailLevels"), QStringLiteral("level-caution")));
    EXPECT_TRUE(waitUntil([&] { return app->finding("/v/a")->level == SafetyLevel::caution; }));
}

TEST_F(DetailViewTest, WhatOpensAMenuShowsIt) {
    show({finding("/v/a", SafetyLevel::keep)});
    const auto arrows = [&](const char* button) {
        QStringList names;
        for (const QQuickItem* image : item(QString::fromLatin1(button))->findChildren<QQuickItem*>()) {
            if (image->isVisible() &&
                image->property("name").toString().startsWith(QStringLiteral("chevron")))
                names.append(image->property("name").toString());
        }
        return names;
    };
    EXPECT_EQ(arrows("relabel"), QStringList(QStringLiteral("chevron.down")));
    EXPECT_EQ(arrows("moveToTrash"), QStringList());
}

TEST_F(DetailViewTest, TheKeyboardWaitsInTheModelsSectionForItsAnswer) {
    show({guessed(finding("/v/a", SafetyLevel::safe))});
    stage.classifyGate.shut();
    focus(QStringLiteral("analyze"));
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return !isEnabled(QStringLiteral("analyze")); }));
    EXPECT_EQ(focused(), QStringLiteral("modelSection"));
    stage.classifyGate.open();
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("analyze"); })) << focused().toStdString();
}

TEST_F(DetailViewTest, LevelsAreChosenByKeyboardFromTheFirstOn) {
    show({finding("/v/a", SafetyLevel::safe)});
    app->setLevel(SafetyLevel::safe, "/v/a");
    focus(QStringLiteral("relabel"));
    key(Qt::Key_Tab);
    key(Qt::Key_Backtab, Qt::ShiftModifier);  // so that it has keyboard focus
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("detailLevels")); }));
    settle();
    double above = -1;
    for (const char* name :
         {"level-safe", "level-regenerable", "level-caution", "level-keep", "level-unknown", "reset"}) {
        const QQuickItem* line = inPopup(QStringLiteral("detailLevels"), QString::fromLatin1(name));
        ASSERT_NE(line, nullptr) << name;
        EXPECT_GT(line->mapToScene({}).y(), above) << name;
        above = line->mapToScene({}).y();
    }
    EXPECT_EQ(focused(), QStringLiteral("level-safe"));
    key(Qt::Key_Down);
    EXPECT_EQ(focused(), QStringLiteral("level-regenerable"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return app->finding("/v/a")->level == SafetyLevel::regenerable; }));
}

TEST_F(DetailViewTest, FortyChildrenAreTwelveAndALine) {
    Finding full = finding("/v/a", SafetyLevel::safe);
    for (int number = 0; number < 40; ++number)
        full.children.push_back({.name = "çocuk " + std::to_string(number), .size = 1000 - number});
    show({full});
    EXPECT_TRUE(showsText(QStringLiteral("İçindekiler")));
    EXPECT_TRUE(showsText(QStringLiteral("çocuk 11")));
    EXPECT_FALSE(showsText(QStringLiteral("çocuk 12")));
    EXPECT_EQ(text(QStringLiteral("moreContents")), QStringLiteral("ve 28 öğe daha"));
}

TEST_F(DetailViewTest, WithoutChildrenThereIsNoHeading) {
    show({finding("/v/a", SafetyLevel::safe)});
    EXPECT_FALSE(showsText(QStringLiteral("İçindekiler")));
}

TEST_F(DetailViewTest, TheModelSectionComesWithALabelByHand) {
    show({finding("/v/a", SafetyLevel::safe)});
    EXPECT_FALSE(shows(QStringLiteral("modelSection")));
    app->setLevel(SafetyLevel::safe, "/v/a");
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("modelSection")); }));
    EXPECT_FALSE(shows(QStringLiteral("modelWarning")));
}

TEST_F(DetailViewTest, WithoutAModelTheSectionHoldsOnlyTheReason) {
    stage.status = AIStatus{.unavailable = "Model yok."};
    show({finding("/v/a", SafetyLevel::unknown)});
    EXPECT_EQ(text(QStringLiteral("sectionText")), QStringLiteral("Model yok."));
    for (const char* part : {"note", "analyze", "modelWarning"})
        EXPECT_FALSE(shows(QString::fromLatin1(part))) << part;
}

TEST_F(DetailViewTest, AsksTheModelOnceAtATimeWithTheNote) {
    show({finding("/v/a", SafetyLevel::unknown, 2), finding("/v/b", SafetyLevel::unknown, 1)});
    stage.classifyGate.shut();
    focus(QStringLiteral("note"));
    type(QStringLiteral("benim notum"));
    EXPECT_FALSE(shows(QStringLiteral("placeholder")));
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("analyze"));
    EXPECT_EQ(text(QStringLiteral("analyze")), QStringLiteral("Analiz Et"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return stage.count("classify /v/a benim notum") == 1; }));
    EXPECT_EQ(text(QStringLiteral("analyze")), QStringLiteral("Düşünüyor…"));
    EXPECT_FALSE(isEnabled(QStringLiteral("analyze")));
    click(QStringLiteral("analyze"));
    click(row(QStringLiteral("a")), Qt::RightButton);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    const int requests = stage.statusRequests;
    click(inPopup(QStringLiteral("rowMenu"), QStringLiteral("analyze")));
    ASSERT_TRUE(waitUntil([&] { return stage.statusRequests > requests; }));
    // Sync point: a permitted analysis started after the one that must not run. By the time it runs, the
    // other would have too.
    app->analyze("/v/b", "");
    ASSERT_TRUE(waitUntil([&] { return stage.count("classify /v/b") == 1; }));
    stage.classifyGate.open();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    ASSERT_TRUE(waitUntil([&] { return row(QStringLiteral("Yorum")) != nullptr; }));
    EXPECT_EQ(stage.count("classify /v/a"), 1);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 2; }));
    click(row(QStringLiteral("Yorum")));
    EXPECT_EQ(text(QStringLiteral("analyze")), QStringLiteral("Yeniden Analiz Et"));
    EXPECT_TRUE(shows(QStringLiteral("modelWarning")));
    EXPECT_EQ(text(QStringLiteral("note")), QString());
}

TEST_F(DetailViewTest, ANoteBelongsToOneFinding) {
    show({finding("/v/a", SafetyLevel::unknown, 2), finding("/v/b", SafetyLevel::unknown, 1)});
    focus(QStringLiteral("note"));
    type(QStringLiteral("not"));
    click(row(QStringLiteral("b")));
    EXPECT_EQ(text(QStringLiteral("note")), QString());
    EXPECT_TRUE(shows(QStringLiteral("placeholder")));
}

TEST_F(DetailViewTest, ANoteDoesNotComeBackWithTheNextFinding) {
    show({finding("/v/a", SafetyLevel::unknown, 2), finding("/v/b", SafetyLevel::unknown, 1)});
    focus(QStringLiteral("note"));
    type(QStringLiteral("not"));
    click(row(QStringLiteral("b")));
    focus(QStringLiteral("note"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(QStringLiteral("note")), QString());
}

TEST_F(DetailViewTest, AButtonHeldDownDoesNotActOnTheNextFinding) {
    show({finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)});
    settle();
    const QQuickItem* button = item(QStringLiteral("moveToTrash"));
    const QPoint middle = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, middle);
    ASSERT_TRUE(button->property("down").toBool());
    model->list()->selection()->set({"/v/b"});
    ASSERT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("b"); }));
    settle();
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, middle);
    settle();
    EXPECT_EQ(stage.count("clean"), 0);
    // The button still works afterwards.
    click(QStringLiteral("moveToTrash"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/b"));
}

TEST_F(DetailViewTest, CleaningFromTheMenuLeavesNothingSelected) {
    show({finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)});
    click(row(QStringLiteral("a")), Qt::RightButton);
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("rowMenu")); }));
    click(inPopup(QStringLiteral("rowMenu"), QStringLiteral("trash")));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_TRUE(waitUntil([&] { return showsText(QStringLiteral("Bir öğe seç")); }));
}

TEST_F(DetailViewTest, WhileItIsBeingCleanedItCannotBeCleanedAgain) {
    show({finding("/v/a", SafetyLevel::safe)});
    stage.cleanGate.shut();
    click(QStringLiteral("moveToTrash"));
    ASSERT_TRUE(waitUntil([&] { return !isEnabled(QStringLiteral("moveToTrash")); }));
    EXPECT_FALSE(isEnabled(QStringLiteral("removePermanently")));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Delete);
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_EQ(stage.count("clean"), 1);
}

TEST_F(DetailViewTest, TheKeyboardReturnsToTheListWhenItsButtonGoes) {
    show({finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)});
    focus(QStringLiteral("moveToTrash"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_TRUE(waitUntil([&] { return focused() == QStringLiteral("rows"); })) << focused().toStdString();
    key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("b"); }));
}

TEST_F(DetailViewTest, DeleteInTheListPressesTheMainButton) {
    show({finding("/v/a", SafetyLevel::keep, 2)});
    key(Qt::Key_Delete);
    waitForDialog("confirmTrash");
    EXPECT_EQ(stage.count("clean"), 0);
    key(Qt::Key_Escape);
    waitForNoDialog("confirmTrash");
    EXPECT_EQ(focused(), QStringLiteral("rows"));
}

TEST_F(DetailViewTest, TextsCanBeSelected) {
    show({finding("/v/a", SafetyLevel::safe)});
    focus(QStringLiteral("explanation"));
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(item(QStringLiteral("explanation"))->property("selectedText").toString(),
              QStringLiteral("Açıklama."));
    EXPECT_TRUE(item(QStringLiteral("explanation"))->property("readOnly").toBool());
}

}  // namespace
}  // namespace ulvak
