#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/durable_file.h"
#include "support/app_test.h"

namespace ulvak {
namespace {

using namespace test;
using testing::IsEmpty;
using testing::SizeIs;

class AppModelLabel : public AppTest {
protected:
    /// A guess that the model has judged.
    static Finding judged(const std::string& id) {
        Finding finding = guessed(id, SafetyLevel::unknown);
        setCurrentVerdict(finding, answer());
        return finding;
    }
};

TEST_F(AppModelLabel, TheUsersLevelKeepsTheTextsAndDropsTheConfidence) {
    startWith({judged("/a"), staged("/b")});
    app().setLevel(SafetyLevel::keep, "/a");
    const Finding& labelled = *app().finding("/a");
    EXPECT_EQ(currentVerdict(labelled), (Verdict{.level = SafetyLevel::keep,
                                                 .title = "modelin adı",
                                                 .explanation = "modelin açıklaması",
                                                 .source = VerdictSource::user}));
    EXPECT_EQ(labelled.original, judged("/a").original);
    ASSERT_TRUE(app().store().entries().contains("/a"));
    EXPECT_EQ(app().store().entries().find("/a")->second.verdict, currentVerdict(labelled));
    EXPECT_THAT(app().store().entries(), SizeIs(1));
    EXPECT_EQ(currentVerdict(*app().finding("/b")), currentVerdict(staged("/b")));
}

TEST_F(AppModelLabel, TheLevelThatAFindingHasBecomesTheUsersToo) {
    startWith({staged("/a", SafetyLevel::keep)});
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_EQ(app().finding("/a")->source, VerdictSource::user);
    EXPECT_TRUE(waitUntil([&] { return remembered().contains("/a"); }));
}

TEST_F(AppModelLabel, AnUnknownIdIsNotLabelledAndNothingIsWritten) {
    startWith({staged("/a")});
    signalled = std::make_shared<Record<std::string>>();
    app().setLevel(SafetyLevel::keep, "/b");
    app().resetVerdict("/b");
    EXPECT_THAT(signalled->values(), IsEmpty());
    EXPECT_THAT(app().store().entries(), IsEmpty());
    // A real label is written after everything queued before it.
    start();
    EXPECT_THAT(remembered(), IsEmpty());
    EXPECT_FALSE(platform::readFile(verdictsPath, 1000));
}

TEST_F(AppModelLabel, AResetRestoresAllThatTheAnalysisSaidAndForgetsTheLabel) {
    startWith({judged("/a")});
    app().setLevel(SafetyLevel::keep, "/a");
    ASSERT_TRUE(waitUntil([&] { return remembered().contains("/a"); }));
    app().resetVerdict("/a");
    EXPECT_EQ(currentVerdict(*app().finding("/a")), judged("/a").original);
    EXPECT_THAT(app().store().entries(), IsEmpty());
    EXPECT_TRUE(waitUntil([&] { return remembered().empty(); }));
}

TEST_F(AppModelLabel, OfTwoFindingsWithOneIdTheFirstIsLabelled) {
    startWith({staged("/a", SafetyLevel::safe, 1), staged("/a", SafetyLevel::safe, 2)});
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_EQ(app().findings()[0]->level, SafetyLevel::keep);
    EXPECT_EQ(app().findings()[1]->level, SafetyLevel::safe);
}

TEST_F(AppModelLabel, WhatAnotherWindowHasLabelledIsSeenWithTheNextLabel) {
    startWith({staged("/a"), staged("/b"), staged("/c")});
    const std::int64_t safeBytes = app().total(SafetyLevel::safe);
    Finding theirs = staged("/b");
    relabel(theirs, SafetyLevel::keep);
    VerdictStore(verdictsPath).save(currentVerdict(theirs), theirs);
    EXPECT_EQ(app().finding("/b")->level, SafetyLevel::safe);
    app().setLevel(SafetyLevel::caution, "/c");
    ASSERT_TRUE(waitUntil([&] { return app().finding("/b")->level == SafetyLevel::keep; }));
    EXPECT_EQ(currentVerdict(*app().finding("/b")), currentVerdict(theirs));
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::safe);
    EXPECT_EQ(app().finding("/c")->level, SafetyLevel::caution);
    EXPECT_EQ(app().total(SafetyLevel::safe), safeBytes / 3);
}

TEST_F(AppModelLabel, LabelsAreGivenWhileAScanRuns) {
    startWith({staged("/a")});
    const auto gate = std::make_shared<Gate>();
    stage({.findings = {staged("/a")}, .gate = gate});
    app().scan();
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::keep);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::keep);
}

TEST_F(AppModelLabel, LabelsAreThereAfterARestart) {
    const std::string odd = "/utf-8-de\xf0il-\xff\n";
    startWith({staged("/a"), staged(odd)});
    app().setLevel(SafetyLevel::keep, "/a");
    app().setLevel(SafetyLevel::unknown, odd);
    startWith({staged("/a"), staged(odd)});
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::keep);
    EXPECT_EQ(app().finding(odd)->level, SafetyLevel::unknown);
}

TEST_F(AppModelLabel, AFileThatCannotBeReadLeavesNoLabelsAndRaisesNothing) {
    tree.add({folder("veri", {textFile("verdicts.json", "{ bozuk")})});
    EXPECT_THAT(startWith({staged("/a")}).store().entries(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelLabel, AChangeIsAnotherRecordSoThatWhoeverHoldsOneKeepsIt) {
    startWith({staged("/a")});
    const FindingPointer before = app().finding("/a");
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_EQ(before->level, SafetyLevel::safe);
    EXPECT_NE(app().finding("/a"), before);
}

}  // namespace
}  // namespace ulvak
