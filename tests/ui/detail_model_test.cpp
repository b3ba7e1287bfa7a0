#include "ui/detail_model.h"

#include <gtest/gtest.h>

#include "core/words.h"
#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::simulator;
using test::uncleanable;

class DetailModelTest : public test::ModelTest {
protected:
    DetailModelTest() { start(); }

    DetailModel& show(Finding finding) {
        model->detail()->setFinding(std::make_shared<const Finding>(std::move(finding)));
        return *model->detail();
    }
};

TEST_F(DetailModelTest, ASafeFindingCanGoBothWaysWithoutAQuestion) {
    for (const SafetyLevel level : {SafetyLevel::safe, SafetyLevel::regenerable}) {
        const DetailModel& detail = show(finding("/v/a", level));
        EXPECT_EQ(detail.action(), DetailModel::Action::Trash);
        EXPECT_TRUE(detail.offersPermanent());
        EXPECT_FALSE(detail.asksBeforeTrash());
    }
}

TEST_F(DetailModelTest, ACautiousFindingGoesToTheTrashAtOnceAndNotForGood) {
    const DetailModel& detail = show(finding("/v/a", SafetyLevel::caution));
    EXPECT_FALSE(detail.offersPermanent());
    EXPECT_FALSE(detail.asksBeforeTrash());
}

TEST_F(DetailModelTest, WhatIsToBeKeptOrUnknownIsAskedAbout) {
    for (const SafetyLevel level : {SafetyLevel::keep, SafetyLevel::unknown}) {
        const DetailModel& detail = show(finding("/v/a", level));
        EXPECT_FALSE(detail.offersPermanent());
        EXPECT_TRUE(detail.asksBeforeTrash());
    }
}

TEST_F(DetailModelTest, TellsHowMuchIsFreedWhereThatIsLessThanTheSize) {
    Finding shared = finding("/v/a", SafetyLevel::safe);
    shared.size = 3'000'000'000;
    EXPECT_EQ(show(shared).freedText(), QString());
    shared.heldElsewhere = 2'700'000'000;
    EXPECT_EQ(show(shared).freedText(),
              QStringLiteral("Silince 300 MB boşalır: kalanı başka yerlerde de duruyor"));
    EXPECT_EQ(show(shared).sizeText(), QStringLiteral("3 GB"));
    shared.heldElsewhere = 4096;
    EXPECT_EQ(show(shared).freedText(), QString()) << "nobody would see the difference";
    shared.heldElsewhere = shared.size;
    EXPECT_TRUE(show(shared).freedText().startsWith(QStringLiteral("Silince ") + Texts::bytes(0)));
    shared.heldElsewhere = shared.size + 1;
    EXPECT_TRUE(show(shared).freedText().startsWith(QStringLiteral("Silince ") + Texts::bytes(0)))
        << "of members of a group that hold files together, each counts what the others have";
}

TEST_F(DetailModelTest, OtherActions) {
    EXPECT_EQ(show(simulator(finding("/v/a", SafetyLevel::safe))).action(), DetailModel::Action::Simulator);
    const DetailModel& detail = show(uncleanable(finding("/v/a", SafetyLevel::safe), "Sistemindir."));
    EXPECT_EQ(detail.action(), DetailModel::Action::None);
    EXPECT_EQ(detail.reason(), QStringLiteral("Sistemindir."));
}

TEST_F(DetailModelTest, TheButtonHasTheLevelsColourAndThatOfASimulatorWarns) {
    EXPECT_EQ(show(finding("/v/a", SafetyLevel::regenerable)).actionColor(), QStringLiteral("teal"));
    EXPECT_EQ(show(finding("/v/a", SafetyLevel::keep)).actionColor(), QStringLiteral("red"));
    EXPECT_EQ(show(simulator(finding("/v/a", SafetyLevel::safe))).actionColor(), QStringLiteral("green"));
    EXPECT_EQ(show(simulator(finding("/v/a", SafetyLevel::keep))).actionColor(), QStringLiteral("orange"));
}

TEST_F(DetailModelTest, NamesWhatIsToBeQuit) {
    Finding shown = finding("/v/a", SafetyLevel::safe);
    EXPECT_TRUE(show(shown).quitText().isEmpty());
    shown.quitApps = {"Bir", "İki"};
    EXPECT_EQ(show(shown).quitText(), QStringLiteral("Silmeden önce kapat: Bir, İki"));
    shown.processes = {"bir-bin", "üç-*"};
    EXPECT_EQ(show(shown).quitText(), QStringLiteral("Silmeden önce kapat: Bir, İki, üç"));
    shown.quitApps.clear();
    EXPECT_EQ(show(shown).quitText(), QStringLiteral("Silmeden önce kapat: bir-bin, üç"));
}

TEST_F(DetailModelTest, ListsTwelveContentsAndCountsTheRest) {
    Finding shown = finding("/v/a", SafetyLevel::safe);
    const auto withChildren = [&](int count) -> DetailModel& {
        shown.children.assign(static_cast<std::size_t>(count),
                              ChildSummary{.name = "x", .size = 1000, .isDirectory = true});
        return show(shown);
    };
    EXPECT_EQ(withChildren(0).contents()->count(), 0);
    EXPECT_EQ(withChildren(12).contents()->count(), 12);
    EXPECT_TRUE(withChildren(12).moreContents().isEmpty());
    EXPECT_EQ(withChildren(13).contents()->count(), 12);
    EXPECT_EQ(withChildren(13).moreContents(), QStringLiteral("ve 1 öğe daha"));
    EXPECT_EQ(withChildren(40).moreContents(), QStringLiteral("ve 28 öğe daha"));
}

TEST_F(DetailModelTest, ContentsKnowWhereTheyLie) {
    Finding shown = finding("/v/a", SafetyLevel::safe);
    shown.children = {{.name = "bir", .size = 2}};
    const auto location = [&] { return show(shown).contents()->records().front().location; };
    EXPECT_EQ(location(), QStringLiteral("/v/a/bir"));
    shown.urls = {"/v/a", "/w/bir"};
    EXPECT_EQ(location(), QStringLiteral("/w/bir"));
    shown.urls = {"/w/bir"};
    shown.groupKey = "grup";
    EXPECT_EQ(location(), QStringLiteral("/w/bir"));
}

TEST_F(DetailModelTest, AGroupHasFilesAndAnItemHasContents) {
    Finding shown = finding("/v/a", SafetyLevel::safe);
    EXPECT_EQ(show(shown).contentsTitle(), QStringLiteral("İçindekiler"));
    shown.urls.emplace_back("/v/b");
    EXPECT_EQ(show(shown).contentsTitle(), QStringLiteral("Dosyalar"));
}

TEST_F(DetailModelTest, TheModelIsForWhatNoRuleIsSureOf) {
    EXPECT_FALSE(show(finding("/v/a", SafetyLevel::safe)).showsModel());
    EXPECT_TRUE(show(guessed(finding("/v/a", SafetyLevel::safe))).showsModel());
    EXPECT_TRUE(show(finding("/v/a", SafetyLevel::unknown)).showsModel());
    Finding personal = finding("/v/a", SafetyLevel::keep);
    personal.isPersonal = true;
    EXPECT_TRUE(show(personal).showsModel());
    Finding relabelled = finding("/v/a", SafetyLevel::safe);
    relabel(relabelled, SafetyLevel::safe);
    EXPECT_TRUE(show(relabelled).showsModel());
    EXPECT_TRUE(show(relabelled).canReset());
    resetVerdict(relabelled);
    EXPECT_FALSE(show(relabelled).canReset());
}

TEST_F(DetailModelTest, MetadataLeavesOutADateThatNobodyKnows) {
    Finding shown = finding("/v/a", SafetyLevel::safe);
    shown.fileCount = 12'345;
    const std::vector<MetadataLine>& lines = show(shown).metadata()->records();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines.at(0).value, QStringLiteral("/v/a"));
    EXPECT_EQ(lines.at(1).value, QStringLiteral("12.345"));
}

TEST_F(DetailModelTest, BadgesCarryAConfidenceOnlyWhereThereIsOne) {
    Finding shown = guessed(finding("/v/a", SafetyLevel::safe));
    EXPECT_EQ(show(shown).badge(), QStringLiteral("Tahmin"));
    EXPECT_TRUE(show(shown).confidenceText().isEmpty());
    shown.source = VerdictSource::ai;
    shown.confidence = 85;
    EXPECT_EQ(show(shown).badge(), Texts::fixed(words().model) + QStringLiteral(" %85"));
    EXPECT_EQ(show(shown).confidenceText(), QStringLiteral("%85"));
    shown.source = VerdictSource::rule;
    EXPECT_TRUE(show(shown).badge().isEmpty());
}

TEST_F(DetailModelTest, TheQuestionsNameTheFindingAndWhatItIs) {
    const DetailModel& detail = show(finding("/v/%1 a\n", SafetyLevel::keep, 1'500'000'000));
    EXPECT_EQ(detail.trashQuestion(), QStringLiteral("%1 a\uFFFD çöp kutusuna taşınsın mı?"));
    EXPECT_EQ(detail.trashMessage(), QStringLiteral("Bu öğe \"Dokunma\" olarak etiketli. Emin misin?"));
    EXPECT_EQ(detail.permanentQuestion(), QStringLiteral("%1 a\uFFFD kalıcı olarak silinsin mi?"));
    EXPECT_EQ(detail.permanentButton(), QStringLiteral("Kalıcı Olarak Sil (1,5 GB)"));
}

TEST_F(DetailModelTest, TheModelIsAskedAgainAboutWhatItHasSaid) {
    Finding shown = guessed(finding("/v/a", SafetyLevel::safe));
    EXPECT_EQ(show(shown).analyzeText(), QStringLiteral("Analiz Et"));
    EXPECT_FALSE(show(shown).showsModelWarning());
    shown.source = VerdictSource::ai;
    EXPECT_EQ(show(shown).analyzeText(), QStringLiteral("Yeniden Analiz Et"));
    EXPECT_TRUE(show(shown).showsModelWarning());
}

TEST_F(DetailModelTest, WithoutAFindingNothingIsRead) {
    DetailModel& detail = *model->detail();
    detail.setFinding(nullptr);
    EXPECT_TRUE(detail.metadata()->records().empty());
    EXPECT_TRUE(detail.findingId().isEmpty());
}

}  // namespace
}  // namespace ulvak
