#include "ui/finding_list_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <map>
#include <random>

#include "support/app_test.h"
#include "ui/shown.h"

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class FindingListModelTest : public AppTest {
protected:
    /// The rows of the safe findings, checked by the model tester from now on.
    FindingListModel& watch(std::optional<SafetyLevel> level = SafetyLevel::safe) {
        findings_ = std::make_unique<FindingsModel>(app());
        findingsTester_ = std::make_unique<QAbstractItemModelTester>(
            findings_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        model_ = std::make_unique<FindingListModel>(*findings_);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        model_->setLevel(level);
        return *model_;
    }
    FindingListModel& model() { return *model_; }
    QVariant data(int row, int role) { return model_->data(model_->index(row, 0), role); }
    std::vector<std::string> rows() {
        std::vector<std::string> result;
        for (int row = 0; row < model_->count(); ++row)
            result.push_back(model_->at(row)->id);
        return result;
    }
    void TearDown() override {
        tester_.reset();
        model_.reset();
        findingsTester_.reset();
        findings_.reset();
    }

private:
    std::unique_ptr<FindingsModel> findings_;
    std::unique_ptr<QAbstractItemModelTester> findingsTester_;
    std::unique_ptr<FindingListModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

TEST_F(FindingListModelTest, WithoutALevelThereAreNoRows) {
    startWith({staged("/a")});
    watch(std::nullopt);
    EXPECT_EQ(model().rowCount(), 0);
    scanFor({staged("/b")});
    EXPECT_EQ(model().rowCount(), 0);
}

TEST_F(FindingListModelTest, RowsAreTheFindingsOfTheLevelInOrder) {
    startWith({staged("/3"), staged("/keep", SafetyLevel::keep), staged("/1")});
    watch();
    EXPECT_THAT(rows(), ElementsAre("/3", "/1"));
    model().setLevel(SafetyLevel::keep);
    EXPECT_THAT(rows(), ElementsAre("/keep"));
    model().setLevel(std::nullopt);
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(FindingListModelTest, ARowThatGoesLeavesTheOthersInPlace) {
    startWith({staged("/1"), staged("/2"), staged("/3")});
    watch();
    const QPersistentModelIndex last(model().index(2, 0));
    QSignalSpy removed(&model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy counted(&model(), &FindingListModel::countChanged);
    clean({"/2"});
    EXPECT_THAT(rows(), ElementsAre("/1", "/3"));
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(counted.count(), 1);
    EXPECT_EQ(last.row(), 1);
}

TEST_F(FindingListModelTest, ARelabelledFindingChangesLists) {
    startWith({staged("/1"), staged("/2")});
    watch();
    app().setLevel(SafetyLevel::keep, "/1");
    EXPECT_THAT(rows(), ElementsAre("/2"));
    app().resetVerdict("/1");
    EXPECT_THAT(rows(), ElementsAre("/1", "/2"));
}

TEST_F(FindingListModelTest, AChangedFindingKeepsItsRowAndOnlyThatRowIsTold) {
    startWith({staged("/1"), staged("/2"), staged("/3")});
    watch();
    QSignalSpy changed(&model(), &QAbstractItemModel::dataChanged);
    app().setLevel(SafetyLevel::safe, "/2");
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(data(1, FindingsModel::sourceLabelRole), "Senin etiketin");
}

TEST_F(FindingListModelTest, ANewResultIsToldInOneGo) {
    startWith({staged("/1"), staged("/2"), staged("/3")});
    watch();
    QSignalSpy changed(&model(), &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&model(), &QAbstractItemModel::modelReset);
    scanFor({staged("/1"), staged("/2"), staged("/3")});
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(FindingListModelTest, AResultThatDiffersInManyPlacesResetsTheRows) {
    std::vector<Finding> first;
    std::vector<Finding> second;
    for (int number = 0; number < 400; ++number) {
        first.push_back(staged("/" + std::to_string(number)));
        second.push_back(staged("/" + std::to_string(number + (number % 2) * 1000)));
    }
    startWith(first);
    watch();
    QSignalSpy removed(&model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model(), &QAbstractItemModel::modelReset);
    scanFor(second);
    EXPECT_EQ(removed.count(), 0);
    EXPECT_EQ(reset.count(), 1);
    ASSERT_EQ(model().count(), 400);
    EXPECT_EQ(model().at(0)->id, "/0");
    EXPECT_EQ(model().at(1)->id, "/1001");
}

TEST_F(FindingListModelTest, EveryRoleOfARow) {
    Finding large = guessed("/home/x/Ad.app", SafetyLevel::safe);
    large.size = 9'100'000'000;
    startWith({large, staged("/b", SafetyLevel::safe, 4'550'000'000)});
    watch();
    using Model = FindingsModel;
    EXPECT_EQ(idOf(data(0, Model::idRole).toString()), large.id);
    EXPECT_EQ(data(0, Model::titleRole), "ad /home/x/Ad.app");
    EXPECT_EQ(data(0, Qt::DisplayRole), "ad /home/x/Ad.app");
    EXPECT_EQ(data(0, Model::locationRole), "/home/x/Ad.app");
    EXPECT_EQ(data(0, Qt::ToolTipRole), "/home/x/Ad.app");
    EXPECT_EQ(data(0, Model::sizeTextRole), "9,1 GB");
    EXPECT_EQ(data(0, Model::fractionRole), 1.0);
    EXPECT_EQ(data(1, Model::fractionRole), 0.5);
    EXPECT_EQ(data(0, Model::iconRole), "app");
    EXPECT_EQ(data(1, Model::iconRole), "folder");
    EXPECT_EQ(data(0, Model::colorRole), "green");
    EXPECT_EQ(data(0, Model::sourceLabelRole), "Tahmin");
    EXPECT_EQ(data(0, Model::sourceSymbolRole), "wand.and.stars");
    EXPECT_EQ(data(0, Model::badgeRole).toString(), QString::fromStdString(badgeText(currentVerdict(large))));
    EXPECT_EQ(data(1, Model::badgeRole), "");
    EXPECT_EQ(data(0, Model::confidenceRole), "");
    EXPECT_EQ(data(0, Model::isAnalyzingRole), false);
    EXPECT_EQ(data(0, Model::isCleaningRole), false);
    EXPECT_EQ(data(0, Model::isSelectedRole), false);
    EXPECT_FALSE(data(0, Qt::DecorationRole).isValid());
    EXPECT_FALSE(data(7, Model::titleRole).isValid());
    EXPECT_EQ(model().roleNames().size(), 14);
}

TEST_F(FindingListModelTest, IconsTellGroupsAndSimulators) {
    Finding group = staged("/a");
    group.urls = {"/a", "/b.app"};
    Finding simulator = staged("/s");
    simulator.action = {CleanAction::DeleteSimulator{"udid"}};
    startWith({group, simulator});
    watch();
    EXPECT_EQ(data(0, FindingsModel::iconRole), "doc.on.doc");
    EXPECT_EQ(data(1, FindingsModel::iconRole), "iphone");
}

TEST_F(FindingListModelTest, HostileNamesAreHarmlessAndStayThemselves) {
    Finding hostile = staged("/a\n\x1b[31m\xff");
    hostile.title = "<b>\u202Eters\n";
    Finding twin = staged("/a\n\x1b[31m\xfe");
    startWith({hostile, twin});
    watch();
    const QString location = data(0, FindingsModel::locationRole).toString();
    EXPECT_EQ(location, data(1, FindingsModel::locationRole).toString());
    for (const QString& text : {location, data(0, FindingsModel::titleRole).toString()}) {
        for (const QChar character : text) {
            EXPECT_NE(character.category(), QChar::Other_Control);
            EXPECT_NE(character, QChar(0x202E));
        }
    }
    EXPECT_EQ(idOf(data(0, FindingsModel::idRole).toString()), hostile.id);
    EXPECT_EQ(idOf(data(1, FindingsModel::idRole).toString()), twin.id);
    EXPECT_EQ(model().rowOf(twin.id), 1);
}

TEST_F(FindingListModelTest, AFindingWithoutSizeHasNoFraction) {
    startWith({staged("/a", SafetyLevel::safe, 0)});
    watch();
    EXPECT_EQ(data(0, FindingsModel::fractionRole), 0.0);
}

TEST_F(FindingListModelTest, FractionsFollowTheLargest) {
    startWith({staged("/1", SafetyLevel::safe, 400), staged("/2", SafetyLevel::safe, 100)});
    watch();
    EXPECT_EQ(data(1, FindingsModel::fractionRole), 0.25);
    clean({"/1"});
    EXPECT_EQ(data(0, FindingsModel::fractionRole), 1.0);
}

TEST_F(FindingListModelTest, RowsShowWhatIsBeingDoneAlsoToAListThatComesLater) {
    const auto gate = std::make_shared<Gate>();
    services.classify = [gate](const Finding&, std::string_view, const FolderContext::Applications&,
                               const std::stop_token& stop) -> AIClassifier::Result {
        gate->pass(stop);
        return answer(SafetyLevel::safe);
    };
    services.clean = [gate](const Finding&, CleanMode,
                            CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
        gate->pass();
        return std::unexpected(CleanError{});
    };
    startWith({staged("/1"), staged("/2")});
    watch();
    const auto analysis = app().analyze("/1", "");
    const auto cleaning = app().clean({"/2"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    EXPECT_EQ(data(0, FindingsModel::isAnalyzingRole), true);
    EXPECT_EQ(data(0, FindingsModel::isCleaningRole), false);
    EXPECT_EQ(data(1, FindingsModel::isCleaningRole), true);
    FindingsModel all(app());
    FindingListModel later(all);
    later.setLevel(SafetyLevel::safe);
    EXPECT_EQ(later.data(later.index(0, 0), FindingsModel::isAnalyzingRole), true);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return analysis.isReady() && cleaning.isReady(); }));
    EXPECT_EQ(data(0, FindingsModel::isAnalyzingRole), false);
    EXPECT_EQ(data(1, FindingsModel::isCleaningRole), false);
}

/// Random lists over few ids, so that most of a list reappears in the next, in other positions.
class FindingListModelProperty : public FindingListModelTest, public testing::WithParamInterface<unsigned> {
protected:
    std::size_t below(std::size_t bound) { return engine() % bound; }
    SafetyLevel anyLevel() { return below(3) > 0 ? SafetyLevel::safe : SafetyLevel::keep; }

    std::vector<Finding> anyList() {
        std::vector<Finding> list;
        for (std::size_t id = 0; id < 30; ++id) {
            if (below(4) > 0)
                list.push_back(
                    staged("/" + std::to_string(id), anyLevel(), static_cast<std::int64_t>(below(1000))));
        }
        std::ranges::shuffle(list, engine);
        return list;
    }
    /// A slightly modified copy of the current list.
    std::vector<Finding> disturbed() {
        std::vector<Finding> list;
        for (const FindingPointer& finding : app().findings()) {
            if (below(8) > 0)
                list.push_back(*finding);
        }
        if (list.size() > 1)
            std::swap(list[below(list.size())], list[below(list.size())]);
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(below(list.size() + 1)),
                    staged("/n" + std::to_string(next++)));
        return list;
    }
    void changeSomething() {
        const std::string id = "/" + std::to_string(below(30));
        switch (below(6)) {
            case 0:
                return scanFor(anyList());
            case 1:
                return scanFor(disturbed());
            case 2:
                return clean({id});
            case 3:
                return app().resetVerdict(id);
            case 4:
                return model().setLevel(anyLevel());
            default:
                return app().setLevel(anyLevel(), id);
        }
    }

    std::mt19937 engine{GetParam()};
    int next = 0;
};

TEST_P(FindingListModelProperty, RowsAlwaysEqualTheListAndThoseThatStayKeepTheirIndex) {
    startWith(anyList());
    watch();
    for (int step = 0; step < 150; ++step) {
        const auto levelBefore = model().level();
        std::vector<std::pair<std::string, QPersistentModelIndex>> held;
        for (int row = 0; row < model().count(); ++row)
            held.emplace_back(model().at(row)->id, model().index(row, 0));
        changeSomething();

        const Findings wanted = app().findings(*model().level());
        ASSERT_EQ(static_cast<std::size_t>(model().count()), wanted.size());
        for (int row = 0; row < model().count(); ++row)
            ASSERT_EQ(model().at(row), wanted[static_cast<std::size_t>(row)]) << step;
        if (model().level() != levelBefore)
            continue;
        std::vector<int> kept;
        bool allStay = true;
        for (const auto& [id, index] : held) {
            const int row = model().rowOf(id);
            // A moved row may have been removed and reinserted; a persistent index that is still valid is on
            // its finding's row.
            if (index.isValid()) {
                ASSERT_EQ(index.row(), row) << step << " " << id;
            }
            if (row >= 0)
                kept.push_back(row);
            allStay = allStay && (row < 0 || index.isValid());
        }
        if (std::ranges::is_sorted(kept)) {
            EXPECT_TRUE(allStay) << step << ": nothing moved, but a row that stays was lost";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, FindingListModelProperty, testing::Range(1U, 9U));

}  // namespace
}  // namespace ulvak
