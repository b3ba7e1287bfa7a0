#include "ui/finding_selection.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ui/shown.h"
#include "ui/staged_window.h"

namespace ulvak {
namespace {

using test::finding;

/// Five safe findings, "/v/0" to "/v/4", largest first.
class FindingSelectionTest : public test::ModelTest {
protected:
    FindingSelectionTest() {
        for (int number = 0; number < 5; ++number)
            stage.result.push_back(finding("/v/" + std::to_string(number), SafetyLevel::safe, 1000 - number));
        start();
        scanAll();
        model->setSidebar(SidebarItem{SafetyLevel::safe});
    }

    FindingSelection& selection() { return *model->list()->selection(); }
    std::string selected() {
        std::string numbers;
        for (const std::string& id : selection().ids())
            numbers += id.back();
        return numbers;
    }
};

TEST_F(FindingSelectionTest, APressSelectsOneRowAlone) {
    selection().press(1, Qt::NoModifier);
    selection().press(3, Qt::NoModifier);
    EXPECT_EQ(selected(), "3");
    EXPECT_EQ(selection().currentRow(), 3);
}

TEST_F(FindingSelectionTest, ControlTakesARowInAndOut) {
    selection().press(1, Qt::NoModifier);
    selection().press(3, Qt::ControlModifier);
    EXPECT_EQ(selected(), "13");
    selection().press(1, Qt::ControlModifier);
    EXPECT_EQ(selected(), "3");
}

TEST_F(FindingSelectionTest, ShiftExtendsFromTheLastPressWithoutItInEitherDirection) {
    selection().press(2, Qt::NoModifier);
    selection().press(4, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "234");
    selection().press(0, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "012");
}

TEST_F(FindingSelectionTest, ShiftAndControlTogetherKeepTheOthers) {
    selection().press(0, Qt::NoModifier);
    selection().press(2, Qt::ControlModifier);
    selection().press(3, int(Qt::ShiftModifier | Qt::ControlModifier));
    EXPECT_EQ(selected(), "023");
}

TEST_F(FindingSelectionTest, APressForAMenuLeavesASelectionAloneThatHoldsTheRow) {
    selection().press(0, Qt::NoModifier);
    selection().press(1, Qt::ControlModifier);
    selection().pressForMenu(1);
    EXPECT_EQ(selected(), "01");
    selection().pressForMenu(4);
    EXPECT_EQ(selected(), "4");
}

TEST_F(FindingSelectionTest, KeysStopAtTheEnds) {
    selection().moveTo(-7, Qt::NoModifier);
    EXPECT_EQ(selected(), "0");
    selection().moveTo(99, Qt::NoModifier);
    EXPECT_EQ(selected(), "4");
}

TEST_F(FindingSelectionTest, KeysWithShiftExtendAndWithControlMoveTheFocusAlone) {
    selection().moveTo(1, Qt::NoModifier);
    selection().moveTo(2, Qt::ShiftModifier);
    selection().moveTo(3, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "123");
    selection().moveTo(2, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "12");
    selection().moveTo(4, Qt::ControlModifier);
    EXPECT_EQ(selected(), "12");
    EXPECT_EQ(selection().currentRow(), 4);
    selection().toggleCurrent();
    EXPECT_EQ(selected(), "124");
    selection().toggleCurrent();
    EXPECT_EQ(selected(), "12");
}

TEST_F(FindingSelectionTest, AllAndNone) {
    selection().selectAll();
    EXPECT_EQ(selected(), "01234");
    selection().clear();
    EXPECT_EQ(selected(), "");
}

TEST_F(FindingSelectionTest, StaysWithTheItemsWhenRowsGo) {
    selection().press(3, Qt::NoModifier);
    app->clean({"/v/0"}, CleanMode::trash);
    ASSERT_TRUE(test::waitUntil([&] { return model->list()->rows()->count() == 4; }));
    EXPECT_EQ(selected(), "3");
    EXPECT_EQ(selection().currentRow(), 2);
}

TEST_F(FindingSelectionTest, HoldsTheFindingsInTheOrderOfTheRowsWhileSomeGoAndSomeChange) {
    const auto held = [&] {
        std::string numbers;
        for (const FindingPointer& finding : selection().findings()) {
            EXPECT_EQ(finding, app->finding(finding->id));
            numbers += finding->id.back();
        }
        return numbers;
    };
    selection().selectAll();
    selection().press(2, Qt::ControlModifier);
    EXPECT_EQ(held(), "0134");
    app->clean({"/v/3", "/v/2"}, CleanMode::trash);
    ASSERT_TRUE(test::waitUntil([&] { return model->list()->rows()->count() == 3; }));
    EXPECT_EQ(held(), "014");
    std::ranges::reverse(stage.result);
    for (std::size_t index = 0; index < stage.result.size(); ++index)
        stage.result[index].size = 2000 - static_cast<std::int64_t>(index);
    scanAll();
    EXPECT_EQ(held(), "410");
    app->clean({"/v/4"}, CleanMode::trash);
    ASSERT_TRUE(test::waitUntil([&] { return !app->finding("/v/4"); }));
    EXPECT_EQ(held(), "10");
    EXPECT_EQ(model->several()->items(), selection().findings());
}

TEST_F(FindingSelectionTest, TheFocusPassesToTheRowAfterOneThatGoes) {
    selection().press(2, Qt::NoModifier);
    app->clean({"/v/2"}, CleanMode::trash);
    ASSERT_TRUE(test::waitUntil([&] { return model->list()->rows()->count() == 4; }));
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(model->detailKind(), WindowModel::DetailKind::Empty);
    EXPECT_EQ(selection().currentRow(), 2);
    EXPECT_EQ(model->list()->rows()->at(selection().currentRow())->id, "/v/3");
}

TEST_F(FindingSelectionTest, TheFocusPassesToTheNewLastRowWhenTheLastGoes) {
    selection().press(4, Qt::NoModifier);
    app->clean({"/v/4"}, CleanMode::trash);
    ASSERT_TRUE(test::waitUntil([&] { return model->list()->rows()->count() == 4; }));
    EXPECT_EQ(selection().currentRow(), 3);
}

TEST_F(FindingSelectionTest, ALabelThatTakesARowAwayTakesItOutOfTheSelection) {
    selection().selectAll();
    app->setLevel(SafetyLevel::keep, "/v/1");
    EXPECT_EQ(selected(), "0234");
    EXPECT_EQ(model->several()->countText(), QStringLiteral("4 öğe seçili"));
}

TEST_F(FindingSelectionTest, SoDoesALabelThatIsTakenBack) {
    app->setLevel(SafetyLevel::keep, "/v/1");
    app->setLevel(SafetyLevel::keep, "/v/2");
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    selection().selectAll();
    ASSERT_EQ(selected(), "12");
    app->resetVerdict("/v/1");
    EXPECT_EQ(selected(), "2");
}

TEST_F(FindingSelectionTest, SoDoesWhatTheModelSays) {
    app->setLevel(SafetyLevel::unknown, "/v/1");
    app->setLevel(SafetyLevel::unknown, "/v/2");
    model->setSidebar(SidebarItem{SafetyLevel::unknown});
    selection().selectAll();
    app->analyze("/v/1", "");
    ASSERT_TRUE(test::waitUntil([&] { return model->list()->rows()->count() == 1; }));
    EXPECT_EQ(selected(), "2");
}

TEST_F(FindingSelectionTest, SoDoesAScanThatFindsItNoMore) {
    selection().selectAll();
    stage.result.erase(stage.result.begin() + 1);
    scanAll();
    EXPECT_EQ(selected(), "0234");
}

TEST_F(FindingSelectionTest, WhatMovesInTheListStaysSelectedAllTheTime) {
    selection().press(1, Qt::NoModifier);
    selection().press(3, Qt::ControlModifier);
    bool wasEverLess = false;
    QObject::connect(&selection(), &FindingSelection::changed, &selection(), [&] {
        wasEverLess =
            wasEverLess || selected() != "13" || model->detailKind() != WindowModel::DetailKind::Several;
    });
    std::ranges::reverse(stage.result);
    for (std::size_t index = 0; index < stage.result.size(); ++index)
        stage.result[index].size = 2000 - static_cast<std::int64_t>(index);
    scanAll();
    ASSERT_EQ(model->list()->rows()->at(0)->id, "/v/4");
    EXPECT_EQ(selected(), "13");
    EXPECT_EQ(selection().currentRow(), 1);
    EXPECT_FALSE(wasEverLess);
}

TEST_F(FindingSelectionTest, WhatComesBackIsNotSelected) {
    selection().press(1, Qt::NoModifier);
    app->setLevel(SafetyLevel::keep, "/v/1");
    app->resetVerdict("/v/1");
    ASSERT_EQ(model->list()->rows()->count(), 5);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(model->detailKind(), WindowModel::DetailKind::Empty);
}

TEST_F(FindingSelectionTest, ShiftDoesNotExtendFromWhatHasGone) {
    selection().press(1, Qt::NoModifier);
    app->setLevel(SafetyLevel::keep, "/v/1");
    app->resetVerdict("/v/1");
    selection().press(3, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "3");
    selection().press(4, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "34");
}

TEST_F(FindingSelectionTest, TheFocusMovesWithItsRow) {
    selection().press(2, Qt::NoModifier);
    app->setLevel(SafetyLevel::keep, "/v/2");  // focus moves to the row of "/v/3"
    app->setLevel(SafetyLevel::keep, "/v/0");
    ASSERT_EQ(selection().currentRow(), 1);
    EXPECT_EQ(model->list()->rows()->at(1)->id, "/v/3");
}

TEST_F(FindingSelectionTest, WhatHasNoRowCannotBeSelected) {
    app->setLevel(SafetyLevel::keep, "/v/2");
    selection().set({"/v/1", "/v/2", "/v/gone"});
    EXPECT_EQ(selected(), "1");
    EXPECT_EQ(model->detailKind(), WindowModel::DetailKind::One);
}

TEST_F(FindingSelectionTest, RowsThatAreNotThereAreIgnored) {
    selection().press(5, Qt::NoModifier);
    selection().press(-1, Qt::ShiftModifier);
    selection().pressForMenu(17);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(selection().currentRow(), -1);
}

TEST_F(FindingSelectionTest, IdsNeedNotBeText) {
    const QString id = idText("/v/\xff");
    stage.result.push_back(finding("/v/\xff", SafetyLevel::safe));
    scanAll();
    const FindingListModel& rows = *model->list()->rows();
    const QModelIndex row = rows.index(rows.rowOf("/v/\xff"), 0);
    EXPECT_EQ(rows.data(row, FindingsModel::idRole), id);
    EXPECT_EQ(rows.data(row, FindingsModel::isSelectedRole), false);
    selection().set({"/v/\xff"});
    EXPECT_EQ(rows.data(row, FindingsModel::isSelectedRole), true);
}

TEST_F(FindingSelectionTest, AnotherChoiceInTheSidebarEmptiesIt) {
    selection().selectAll();
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(selection().currentRow(), -1);
}

}  // namespace
}  // namespace ulvak
