#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/staged_window.h"

// Closing the window while something is being cleaned.

namespace ulvak {
namespace {

using test::finding;
using test::waitUntil;

class ClosingTest : public test::WindowTest {
protected:
    void SetUp() override {
        stage.result = {finding("/v/a", SafetyLevel::safe, 3'000'000'000),
                        finding("/v/b", SafetyLevel::safe, 2'000'000'000)};
        openScanned(QStringLiteral("safe"));
    }
    void cleanBoth() {
        stage.cleanGate.shut();
        app->clean({"/v/a", "/v/b"}, CleanMode::permanent);
        ASSERT_TRUE(waitUntil([&] { return stage.count("clean") == 1; }));
    }
    void closeAndSee(const QString& popupName) {
        EXPECT_FALSE(window->close());
        ASSERT_TRUE(waitUntil([&] { return isOpen(popupName); }));
    }
    void answer(const QString& button) {
        click(inPopup(QStringLiteral("confirmClose"), button));
        ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("confirmClose")); }));
    }
};

TEST_F(ClosingTest, IsNotAskedAboutWhenNothingIsCleaned) {
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ClosingTest, StaysOpenAndCleansOnWhenTheQuestionIsCancelled) {
    cleanBoth();
    closeAndSee(QStringLiteral("confirmClose"));
    key(Qt::Key_Return);  // the button that keeps the window open has the focus
    ASSERT_TRUE(waitUntil([&] { return !isOpen(QStringLiteral("confirmClose")); }));
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return !app->isCleaning(); }));
    EXPECT_EQ(stage.count("clean"), 2);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(app->alert());
}

TEST_F(ClosingTest, EndsAfterTheItemAndTellsWhatIsLeftBeforeTheWindowGoes) {
    cleanBoth();
    closeAndSee(QStringLiteral("confirmClose"));
    answer(QStringLiteral("confirm"));
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("stoppingNote")); }));
    EXPECT_TRUE(window->isVisible());
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("alert")); }));
    EXPECT_FALSE(isOpen(QStringLiteral("stoppingNote")));
    EXPECT_EQ(inPopup(QStringLiteral("alert"), QStringLiteral("dialogTitle"))->property("text").toString(),
              QStringLiteral("Temizlik durduruldu"));
    EXPECT_EQ(inPopup(QStringLiteral("alert"), QStringLiteral("dialogMessage"))->property("text").toString(),
              QStringLiteral("2 öğeden yalnız 1 tanesi temizlendi. Kalanlar:\n• b: dokunulmadı."));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(stage.count("clean"), 1);
    click(inPopup(QStringLiteral("alert"), QStringLiteral("cancel")));
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(ClosingTest, ClosesByItselfWhenNothingIsLeft) {
    stage.cleanGate.shut();
    app->clean({"/v/a"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean") == 1; }));
    closeAndSee(QStringLiteral("confirmClose"));
    answer(QStringLiteral("confirm"));
    stage.cleanGate.open();
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(ClosingTest, ClosesAtOnceWhenTheCleaningEndedBeforeTheAnswer) {
    cleanBoth();
    closeAndSee(QStringLiteral("confirmClose"));
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return !app->isCleaning(); }));
    EXPECT_TRUE(window->isVisible());
    answer(QStringLiteral("confirm"));
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
    EXPECT_EQ(stage.count("clean"), 2);
}

TEST_F(ClosingTest, EmptyingTheTrashIsAskedAboutAndToldOfAsWell) {
    stage.trash->fromHere = 1;
    stage.trash->itemsFromHere = 3;
    stage.emptyGate.shut();
    app->emptyTrash();
    ASSERT_TRUE(waitUntil([&] { return stage.count("empty") == 1; }));
    closeAndSee(QStringLiteral("confirmClose"));
    answer(QStringLiteral("confirm"));
    stage.emptyGate.open();
    ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("alert")); }));
    EXPECT_EQ(inPopup(QStringLiteral("alert"), QStringLiteral("dialogMessage"))->property("text").toString(),
              QStringLiteral("Çöp kutusunun boşaltılması durduruldu.\nÇöp kutusunda 3 öğe kaldı."));
    EXPECT_TRUE(window->isVisible());
    click(inPopup(QStringLiteral("alert"), QStringLiteral("cancel")));
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(ClosingTest, WhoClosesAgainDoesNotWait) {
    cleanBoth();
    closeAndSee(QStringLiteral("confirmClose"));
    answer(QStringLiteral("confirm"));
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
    stage.cleanGate.open();
    app->finishLasting();
    EXPECT_EQ(stage.count("clean"), 1);
}

TEST_F(ClosingTest, NobodyIsAskedWhenTheSessionEnds) {
    cleanBoth();
    model->closeUnasked();
    EXPECT_TRUE(window->close());
    stage.cleanGate.open();
}

TEST_F(ClosingTest, ASessionThatGoesOnAfterAllTakesNoWindowAlong) {
    cleanBoth();
    model->closeUnasked();
    EXPECT_FALSE(model->isStopping());
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return !app->isCleaning(); }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(stage.count("clean"), 2);
}

}  // namespace
}  // namespace ulvak
