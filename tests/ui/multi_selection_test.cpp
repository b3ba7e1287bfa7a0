#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/words.h"
#include "ui/multi_selection_model.h"
#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::simulator;
using test::uncleanable;
using test::waitUntil;
using testing::ElementsAre;

class MultiSelectionTest : public test::WindowTest {
protected:
    /// Opens one level's list with everything selected.
    void selectAll(std::vector<Finding> findings) {
        const QString level = QString::fromUtf8(info(findings.front().level).rawValue.data());
        stage.result = std::move(findings);
        openScanned(level);
        focus(QStringLiteral("rows"));
        key(Qt::Key_A, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("multiSelection")); }));
    }
    QQuickItem* dialogItem(const char* name) {
        return inPopup(QStringLiteral("confirmSeveral"), QString::fromLatin1(name));
    }
    bool isAsking() { return isOpen(QStringLiteral("confirmSeveral")); }
    /// Bypasses the list, which only ever contains one level.
    MultiSelectionModel& modelOf(const std::vector<Finding>& findings) {
        start();
        Findings items;
        for (const Finding& each : findings)
            items.push_back(std::make_shared<const Finding>(each));
        model->several()->setItems(std::move(items));
        return *model->several();
    }
};

TEST_F(MultiSelectionTest, SafeOnesGoToTheTrashWithoutAQuestionInTheirOrder) {
    selectAll({finding("/v/b", SafetyLevel::safe, 3'000'000'000),
               finding("/v/a", SafetyLevel::safe, 2'000'000'000),
               finding("/v/c", SafetyLevel::safe, 1'000'000'000)});
    EXPECT_EQ(text(QStringLiteral("severalCount")), QStringLiteral("3 öğe seçili"));
    EXPECT_EQ(text(QStringLiteral("severalTotal")), QStringLiteral("6 GB"));
    click(QStringLiteral("cleanSeveral"));
    EXPECT_FALSE(isAsking());
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_THAT(stage.calls(),
                ElementsAre("scan", "clean trash /v/b", "clean trash /v/a", "clean trash /v/c"));
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailEmpty")); }));
}

TEST_F(MultiSelectionTest, CautiousOnesAreAskedAboutFirst) {
    selectAll({finding("/v/a", SafetyLevel::caution), finding("/v/b", SafetyLevel::caution)});
    click(QStringLiteral("cleanSeveral"));
    ASSERT_TRUE(waitUntil([&] { return isAsking(); }));
    EXPECT_EQ(stage.count("clean"), 0);
    EXPECT_EQ(dialogItem("dialogTitle")->property("text").toString(),
              QStringLiteral("Seçilenler temizlensin mi?"));
    EXPECT_EQ(dialogItem("dialogMessage")->property("text").toString(),
              QStringLiteral("2 öğe \"Dikkat\", \"Bilinmiyor\" ya da \"Dokunma\" olarak etiketli. ") +
                  Texts::fixed(words().cleaningDoes));
    EXPECT_EQ(dialogItem("confirm")->property("text").toString(), QStringLiteral("Temizle (2 GB)"));
    click(dialogItem("confirm"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_EQ(stage.count("clean trash"), 2);
}

TEST_F(MultiSelectionTest, EnterAndEscapeCancel) {
    selectAll({finding("/v/a", SafetyLevel::caution), finding("/v/b", SafetyLevel::caution)});
    for (const Qt::Key cancel : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        click(QStringLiteral("cleanSeveral"));
        ASSERT_TRUE(waitUntil([&] { return isAsking(); }));
        key(cancel);
        ASSERT_TRUE(waitUntil([&] { return !isAsking(); })) << cancel;
        EXPECT_TRUE(app->cleaning().empty()) << cancel;
        EXPECT_EQ(stage.count("clean"), 0) << cancel;
    }
}

TEST_F(MultiSelectionTest, CleansWhatWasAskedAboutWhateverBecomesOfTheSelection) {
    selectAll({finding("/v/a", SafetyLevel::caution, 3), finding("/v/b", SafetyLevel::caution, 2),
               finding("/v/c", SafetyLevel::caution, 1)});
    key(Qt::Key_Home);
    key(Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_EQ(text(QStringLiteral("severalCount")), QStringLiteral("2 öğe seçili"));
    click(QStringLiteral("cleanSeveral"));
    ASSERT_TRUE(waitUntil([&] { return isAsking(); }));
    model->list()->selection()->set({"/v/b", "/v/c"});
    click(dialogItem("confirm"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/a", "clean trash /v/b"));
}

TEST_F(MultiSelectionTest, WhatCannotBeCleanedIsSkippedAndCounted) {
    selectAll({uncleanable(finding("/v/a", SafetyLevel::safe)), finding("/v/b", SafetyLevel::safe)});
    EXPECT_EQ(text(QStringLiteral("skipped")),
              QStringLiteral("1 öğe Ulvak tarafından silinmiyor ve atlanacak."));
    click(QStringLiteral("cleanSeveral"));
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/b"));
    // One of the two is left and shown as a single finding.
    EXPECT_TRUE(waitUntil([&] { return text(QStringLiteral("detailTitle")) == QStringLiteral("a"); }));
}

TEST_F(MultiSelectionTest, WithNothingToCleanTheButtonIsDisabled) {
    selectAll(
        {uncleanable(finding("/v/a", SafetyLevel::safe)), uncleanable(finding("/v/b", SafetyLevel::safe))});
    EXPECT_FALSE(isEnabled(QStringLiteral("cleanSeveral")));
    key(Qt::Key_Delete);
    EXPECT_EQ(stage.count("clean"), 0);
    EXPECT_FALSE(isAsking());
}

TEST_F(MultiSelectionTest, OneListHasOneLineOfLevels) {
    selectAll({finding("/v/a", SafetyLevel::keep), finding("/v/b", SafetyLevel::keep)});
    ASSERT_TRUE(shows(QStringLiteral("count-keep")));
    for (const char* level : {"safe", "regenerable", "caution", "unknown"})
        EXPECT_FALSE(shows(QStringLiteral("count-") + QString::fromLatin1(level))) << level;
}

TEST_F(MultiSelectionTest, DeleteInTheListAsksAsTheButtonDoes) {
    selectAll({finding("/v/a", SafetyLevel::keep), finding("/v/b", SafetyLevel::keep)});
    key(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return isAsking(); }));
    EXPECT_EQ(stage.count("clean"), 0);
    key(Qt::Key_Delete);
    EXPECT_EQ(stage.count("clean"), 0);
    key(Qt::Key_Tab);
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !isAsking(); }));
    EXPECT_TRUE(app->cleaning().empty()) << "Return is no confirmation, wherever the focus is";
    EXPECT_EQ(stage.count("clean"), 0);
}

TEST_F(MultiSelectionTest, OneCautiousAmongSafeOnesIsOneToBeAskedAbout) {
    MultiSelectionModel& several =
        modelOf({finding("/v/a", SafetyLevel::caution), finding("/v/b", SafetyLevel::safe)});
    EXPECT_TRUE(several.asksFirst());
    EXPECT_TRUE(several.warning().startsWith(QStringLiteral("1 öğe ")));
    EXPECT_EQ(several.levels()->count(), 2);
}

TEST_F(MultiSelectionTest, OnlyWhatIsCleanedCountsAsRisky) {
    const MultiSelectionModel& several =
        modelOf({uncleanable(finding("/v/a", SafetyLevel::keep)), finding("/v/b", SafetyLevel::safe)});
    EXPECT_FALSE(several.asksFirst());
    EXPECT_EQ(several.cleanText(), QStringLiteral("Temizle (1 GB)"));
    EXPECT_EQ(several.totalText(), QStringLiteral("2 GB"));
}

TEST_F(MultiSelectionTest, ReturnMovesToTheTrashButDeletesNoSimulator) {
    selectAll({simulator(finding("/v/a", SafetyLevel::safe)), finding("/v/b", SafetyLevel::safe, 2),
               finding("/v/c", SafetyLevel::safe, 1)});
    focus(QStringLiteral("cleanSeveral"));
    key(Qt::Key_Return);
    EXPECT_TRUE(app->cleaning().empty());
    model->list()->selection()->set({"/v/b", "/v/c"});
    focus(QStringLiteral("cleanSeveral"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 1; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/b", "clean trash /v/c"));
}

TEST_F(MultiSelectionTest, WhileOneIsBeingCleanedTheButtonWaits) {
    selectAll({finding("/v/a", SafetyLevel::safe, 2), finding("/v/b", SafetyLevel::safe, 1)});
    stage.cleanGate.shut();
    click(QStringLiteral("cleanSeveral"));
    ASSERT_TRUE(waitUntil([&] { return stage.count("clean") == 1; }));
    EXPECT_FALSE(isEnabled(QStringLiteral("cleanSeveral")));
    focus(QStringLiteral("rows"));
    key(Qt::Key_Delete);
    stage.cleanGate.open();
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_EQ(stage.count("clean"), 2);
}

TEST_F(MultiSelectionTest, TheQuestionSpeaksOfSimulatorsThatAreSelected) {
    const MultiSelectionModel& several =
        modelOf({simulator(finding("/v/a", SafetyLevel::caution)), finding("/v/b", SafetyLevel::caution)});
    EXPECT_TRUE(
        several.warning().endsWith(QStringLiteral(" Dosyalar çöp kutusuna taşınır, simülatörler silinir.")));
}

TEST_F(MultiSelectionTest, SimulatorsAreCleanedWithTheOthers) {
    const MultiSelectionModel& several =
        modelOf({simulator(finding("/v/a", SafetyLevel::safe)), finding("/v/b", SafetyLevel::safe)});
    EXPECT_TRUE(several.canClean());
    EXPECT_TRUE(several.skippedText().isEmpty());
    EXPECT_THAT(several.cleanableIds(), ElementsAre("/v/a", "/v/b"));
}

TEST_F(MultiSelectionTest, WhatWasRelabelledOutOfTheListIsNotCleaned) {
    selectAll({finding("/v/a", SafetyLevel::safe, 3), finding("/v/b", SafetyLevel::safe, 2),
               finding("/v/c", SafetyLevel::safe, 1)});
    for (const bool isByKey : {true, false}) {
        click(row(QStringLiteral("a")));
        click(QStringLiteral("relabel"));
        ASSERT_TRUE(waitUntil([&] { return isOpen(QStringLiteral("detailLevels")); }));
        click(inPopup(QStringLiteral("detailLevels"), QStringLiteral("level-keep")));
        ASSERT_TRUE(waitUntil([&] { return rowCount() == 2; }));
        EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("detailEmpty")); }));
        focus(QStringLiteral("rows"));
        if (isByKey) {
            key(Qt::Key_A, Qt::ControlModifier);
        } else {
            click(row(QStringLiteral("b")), Qt::LeftButton, Qt::ControlModifier);
            click(row(QStringLiteral("c")), Qt::LeftButton, Qt::ControlModifier);
        }
        EXPECT_EQ(text(QStringLiteral("severalCount")), QStringLiteral("2 öğe seçili"));
        if (isByKey) {
            app->resetVerdict("/v/a");
            ASSERT_TRUE(waitUntil([&] { return row(QStringLiteral("a")) != nullptr; }));
        }
    }
    key(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return rowCount() == 0; }));
    EXPECT_THAT(stage.calls(), ElementsAre("scan", "clean trash /v/b", "clean trash /v/c"));
    EXPECT_EQ(app->finding("/v/a")->level, SafetyLevel::keep);
}

TEST_F(MultiSelectionTest, WhatIsToBeAskedAboutIsNotCleanedUnasked) {
    modelOf({finding("/v/a", SafetyLevel::caution), finding("/v/b", SafetyLevel::safe)});
    model->several()->clean();
    model->several()->cleanAsked();
    EXPECT_TRUE(app->cleaning().empty());
    EXPECT_EQ(stage.count("clean"), 0);
}

TEST_F(MultiSelectionTest, AnAnswerCountsOnce) {
    modelOf({finding("/v/a", SafetyLevel::caution), finding("/v/b", SafetyLevel::safe)});
    model->several()->ask();
    EXPECT_THAT(model->several()->takeAsked(), ElementsAre("/v/a", "/v/b"));
    EXPECT_THAT(model->several()->takeAsked(), testing::IsEmpty());
}

}  // namespace
}  // namespace ulvak
