#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "support/app_test.h"

namespace ulvak {
namespace {

using namespace test;
using Progress = AppModel::BatchProgress;
using testing::ElementsAre;
using testing::IsEmpty;

/// A question put to a staged model.
struct Question {
    std::string id;
    std::string note;
    std::vector<std::string> running;
};

class AppModelAnalyze : public AppTest {
protected:
    AppModelAnalyze() {
        services.classify = [questions = questions, gate = gate](
                                const Finding& finding, std::string_view note,
                                const FolderContext::Applications& apps,
                                const std::stop_token& stop) -> AIClassifier::Result {
            questions->add({.id = finding.id, .note = std::string(note), .running = apps.running});
            gate->pass(stop);
            return answer();
        };
    }

    [[nodiscard]] std::vector<std::string> asked() const {
        std::vector<std::string> result;
        for (const Question& question : questions->values())
            result.push_back(question.id);
        return result;
    }
    void makeModelFail(bool isSilent = false) {
        services.classify = [questions = questions, gate = gate, isSilent](
                                const Finding& finding, std::string_view, const FolderContext::Applications&,
                                const std::stop_token& stop) -> AIClassifier::Result {
            questions->add({.id = finding.id});
            gate->pass(stop);
            return std::unexpected(AIClassifier::Error{
                platform::ModelError{.text = "hata: " + finding.id, .isSilent = isSilent}});
        };
    }
    /// Records every signalled state of the batch.
    void watchBatch() {
        QObject::connect(&app(), &AppModel::batchProgressChanged, [this] {
            const auto& progress = app().batchProgress();
            batch.emplace_back(progress ? progress->done : -1, progress ? progress->total : -1);
        });
    }
    bool batchIsOver() { return !app().batchProgress(); }

    std::shared_ptr<Record<Question>> questions = std::make_shared<Record<Question>>();
    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    std::vector<std::pair<std::int64_t, std::int64_t>> batch;
};

TEST_F(AppModelAnalyze, TheModelsVerdictIsWrittenAndRemembered) {
    services.applications = [] { return FolderContext::Applications{.running = {"Takvim", "Posta"}}; };
    startWith({guessed("/a")});
    gate->open();
    analyze("/a", "bir not");
    EXPECT_EQ(currentVerdict(*app().finding("/a")), answer());
    EXPECT_EQ(app().finding("/a")->original, guessed("/a").original);
    EXPECT_THAT(app().analyzing(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return remembered().contains("/a"); }));
    ASSERT_EQ(questions->size(), 1U);
    EXPECT_EQ(questions->values()[0].note, "bir not");
    EXPECT_THAT(questions->values()[0].running, ElementsAre("Takvim", "Posta"));
}

TEST_F(AppModelAnalyze, AFindingIsMarkedWhileTheModelThinks) {
    startWith({guessed("/a")});
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return app().analyzing() == std::set<std::string>{"/a"}; }));
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return app().analyzing().empty(); }));
}

TEST_F(AppModelAnalyze, AFailureLeavesTheFindingAndIsShown) {
    makeModelFail();
    startWith({guessed("/a")});
    gate->open();
    analyze("/a");
    EXPECT_EQ(currentVerdict(*app().finding("/a")), currentVerdict(guessed("/a")));
    EXPECT_THAT(app().store().entries(), IsEmpty());
    EXPECT_THAT(app().analyzing(), IsEmpty());
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "Analiz başarısız");
    EXPECT_EQ(app().alert()->message,
              (AIClassifier::Error{platform::ModelError{.text = "hata: /a"}}.description()));
}

TEST_F(AppModelAnalyze, TwoAlertsWithOneTextAreTwo) {
    makeModelFail();
    startWith({guessed("/a")});
    gate->open();
    analyze("/a");
    const AppModel::AlertInfo first = *app().alert();
    analyze("/a");
    EXPECT_EQ(app().alert()->message, first.message);
    EXPECT_NE(app().alert()->id, first.id);
    app().dismissAlert();
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelAnalyze, WithoutAModelNothingHappensAndNothingIsShown) {
    services.aiStatus = [](const std::stop_token&) { return AIStatus{.unavailable = "Kapalı."}; };
    startWith({guessed("/a")});
    // Its first signal may come after the scan's result.
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().unavailable == "Kapalı."; }));
    gate->open();
    signalled = std::make_shared<Record<std::string>>();
    analyze("/a");
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(signalled->values(), ElementsAre("analyzing", "analyzing"))
        << "marked while it was looked for";
    EXPECT_EQ(app().aiStatus().unavailable, "Kapalı.");
}

TEST_F(AppModelAnalyze, TheModelIsLookedForAnewEachTime) {
    const auto isThere = std::make_shared<std::atomic<bool>>(false);
    services.aiStatus = [isThere](const std::stop_token&) {
        return *isThere ? AIStatus{} : AIStatus{.unavailable = "Kapalı."};
    };
    startWith({guessed("/a")});
    gate->open();
    *isThere = true;
    analyze("/a");
    EXPECT_THAT(asked(), ElementsAre("/a"));
    *isThere = false;
    analyze("/a");
    EXPECT_THAT(asked(), ElementsAre("/a"));
    EXPECT_FALSE(app().aiStatus().isAvailable());
}

TEST_F(AppModelAnalyze, AnUnknownIdIsNotAskedAbout) {
    startWith({guessed("/a")});
    gate->open();
    analyze("/b");
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelAnalyze, AFindingIsAskedAboutOnceAtATime) {
    startWith({guessed("/a"), guessed("/b")});
    const auto first = app().analyze("/a", "");
    const auto together = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return first.isReady() != together.isReady() && questions->size() == 1; }));
    analyze("/a");
    EXPECT_THAT(asked(), ElementsAre("/a"));
    const auto other = app().analyze("/b", "");
    EXPECT_TRUE(waitUntil([&] { return questions->size() == 2; }));
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return first.isReady() && together.isReady() && other.isReady(); }));
}

TEST_F(AppModelAnalyze, AnAnswerAboutWhatWasCleanedMeanwhileIsDropped) {
    startWith({guessed("/a"), guessed("/b")});
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    clean({"/a"});
    signalled = std::make_shared<Record<std::string>>();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_THAT(ids(), ElementsAre("/b"));
    EXPECT_THAT(signalled->values(), ElementsAre("analyzing"));
    EXPECT_THAT(app().store().entries(), IsEmpty());
    EXPECT_THAT(app().analyzing(), IsEmpty());
}

TEST_F(AppModelAnalyze, AnAnswerIsLaidOverWhatAScanHasFoundMeanwhile) {
    startWith({guessed("/a")});
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    Finding grown = guessed("/a");
    grown.size = 12345;
    scanFor({grown});
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_EQ(app().finding("/a")->size, 12345);
    EXPECT_EQ(currentVerdict(*app().finding("/a")), answer());
    EXPECT_EQ(app().store().entries().find("/a")->second.size, 12345);
}

/// A label arrives between a question and its answer.
class AppModelOverwriting : public AppModelAnalyze {
protected:
    void SetUp() override { startWith({guessed("/a"), guessed("/b")}); }
    QCoro::Task<> askAbout(const std::string& id) {
        auto task = app().analyze(id, "");
        EXPECT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
        return task;
    }
    void answerNow(const QCoro::Task<>& task) {
        gate->open();
        ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    }
    void expectLabel(const std::string& id) {
        EXPECT_EQ(app().finding(id)->source, VerdictSource::user);
        EXPECT_EQ(app().finding(id)->level, SafetyLevel::keep);
        EXPECT_EQ(app().store().entries().find(id)->second.verdict.source, VerdictSource::user);
        EXPECT_TRUE(waitUntil([&] {
            return remembered().contains(id) && remembered()[id].verdict.level == SafetyLevel::keep;
        }));
    }
};

TEST_F(AppModelOverwriting, ALabelGivenMeanwhileStays) {
    const auto task = askAbout("/a");
    app().setLevel(SafetyLevel::keep, "/a");
    answerNow(task);
    expectLabel("/a");
    EXPECT_THAT(app().analyzing(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelOverwriting, ALabelThatAScanHasBroughtBackStays) {
    const auto task = askAbout("/a");
    app().setLevel(SafetyLevel::keep, "/a");
    scanFor({guessed("/a")});
    answerNow(task);
    expectLabel("/a");
}

TEST_F(AppModelOverwriting, WhatAScanHasMeanwhileJudgedOtherwiseStays) {
    const auto task = askAbout("/a");
    Finding other = guessed("/a");
    other.explanation = other.original.explanation = "başka bir neden";
    scanFor({other});
    answerNow(task);
    EXPECT_EQ(currentVerdict(*app().finding("/a")), other.original);
    EXPECT_THAT(app().store().entries(), IsEmpty());
}

TEST_F(AppModelOverwriting, ALabelThatWasTakenBackMeanwhileIsNoneAndTheAnswerCounts) {
    const auto task = askAbout("/a");
    app().setLevel(SafetyLevel::keep, "/a");
    app().resetVerdict("/a");
    answerNow(task);
    EXPECT_EQ(currentVerdict(*app().finding("/a")), answer());
}

TEST_F(AppModelOverwriting, AnAnswerAboutTheUsersOwnLabelMayReplaceIt) {
    app().setLevel(SafetyLevel::keep, "/a");
    gate->open();
    analyze("/a");
    EXPECT_EQ(currentVerdict(*app().finding("/a")), answer());
}

TEST_F(AppModelOverwriting, ABatchPassesOverWhatIsLabelledBeforeItsTurn) {
    watchBatch();
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    app().setLevel(SafetyLevel::keep, "/a");
    app().setLevel(SafetyLevel::keep, "/b");
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return batchIsOver(); }));
    expectLabel("/a");
    expectLabel("/b");
    EXPECT_THAT(asked(), ElementsAre("/a")) << "the other had its label before its turn came";
    EXPECT_EQ(batch[batch.size() - 2], (std::pair<std::int64_t, std::int64_t>(2, 2)));
}

TEST_F(AppModelOverwriting, ABatchLeavesWhatTheUserCallsUnknown) {
    app().setLevel(SafetyLevel::unknown, "/a");
    app().setLevel(SafetyLevel::unknown, "/b");
    EXPECT_EQ(app().uncertainCount(), 2);
    EXPECT_EQ(app().batchCount(), 0) << "nothing that a batch would ask about";
    app().analyzeAllUncertain();
    EXPECT_EQ(app().batchProgress(), std::nullopt);
    gate->open();
    analyze("/gone");
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(AppModelAnalyze, ALabelGivenWhileTheModelIsLookedForIsNotAskedAbout) {
    const auto door = std::make_shared<Gate>();
    services.aiStatus = [door](const std::stop_token& stop) {
        door->pass(stop);
        return AIStatus{};
    };
    start();
    stage({.findings = {guessed("/a")}});
    app().scan();
    door->open();
    ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    const auto task = app().analyze("/a", "");  // awaits the status, which arrives as an event
    app().setLevel(SafetyLevel::keep, "/a");
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::keep);
}

// What counts as uncertain, row by row.
TEST_F(AppModelAnalyze, UnknownOrGuessedIsUncertain) {
    Finding labelled = staged("/user", SafetyLevel::unknown);
    labelled.source = VerdictSource::user;
    Finding asked = staged("/ai", SafetyLevel::safe);
    asked.source = VerdictSource::ai;
    startWith({guessed("/guess", SafetyLevel::keep), labelled, asked, staged("/rule", SafetyLevel::keep),
               staged("/unknown", SafetyLevel::unknown)});
    EXPECT_EQ(app().uncertainCount(), 3);
    EXPECT_TRUE(isUncertain(*app().finding("/guess")));
    EXPECT_TRUE(isUncertain(*app().finding("/user")));
    EXPECT_TRUE(isUncertain(*app().finding("/unknown")));
    EXPECT_FALSE(isUncertain(*app().finding("/ai")));
    EXPECT_FALSE(isUncertain(*app().finding("/rule")));
}

TEST_F(AppModelAnalyze, ABatchGoesThroughTheUncertainOneByOne) {
    startWith({guessed("/1"), staged("/known"), guessed("/2"), staged("/3", SafetyLevel::unknown),
               guessed("/4"), guessed("/5")});
    watchBatch();
    std::size_t most = 0;
    QObject::connect(&app(), &AppModel::analyzingChanged,
                     [&] { most = std::max(most, app().analyzing().size()); });
    app().analyzeAllUncertain();
    EXPECT_EQ(app().batchProgress(), (Progress{.done = 0, .total = 5}));
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    EXPECT_EQ(questions->size(), 1U);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return batchIsOver(); }));
    EXPECT_THAT(asked(), ElementsAre("/1", "/2", "/3", "/4", "/5"));
    using Pair = std::pair<std::int64_t, std::int64_t>;
    EXPECT_THAT(batch, ElementsAre(Pair(0, 5), Pair(1, 5), Pair(2, 5), Pair(3, 5), Pair(4, 5), Pair(5, 5),
                                   Pair(-1, -1)));
    EXPECT_EQ(most, 1U);
    EXPECT_EQ(app().uncertainCount(), 0);
    for (const Question& question : questions->values())
        EXPECT_EQ(question.note, "");
}

TEST_F(AppModelAnalyze, ABatchOverNothingDoesNotBegin) {
    startWith({staged("/a")});
    signalled = std::make_shared<Record<std::string>>();
    app().analyzeAllUncertain();
    EXPECT_EQ(app().batchProgress(), std::nullopt);
    EXPECT_THAT(signalled->values(), IsEmpty());
}

TEST_F(AppModelAnalyze, ABatchThatIsGivenUpFinishesWhatItAskedAndNoMore) {
    startWith({guessed("/1"), guessed("/2"), guessed("/3")});
    watchBatch();
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    app().cancelBatch();
    EXPECT_EQ(app().batchProgress(), std::nullopt);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return app().analyzing().empty(); }));
    EXPECT_EQ(currentVerdict(*app().finding("/1")), answer());
    analyze("/gone");
    EXPECT_THAT(asked(), ElementsAre("/1"));
    EXPECT_EQ(batch.size(), 2U) << "0 of 3, and none";
}

TEST_F(AppModelAnalyze, ANewBatchTakesThePlaceOfTheOneThatRuns) {
    startWith({guessed("/1"), guessed("/2")});
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    scanFor({guessed("/1"), guessed("/2"), guessed("/3")});
    watchBatch();
    app().analyzeAllUncertain();
    EXPECT_EQ(app().batchProgress(), (Progress{.done = 0, .total = 3}));
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return batchIsOver(); }));
    EXPECT_EQ(batch.back(), (std::pair<std::int64_t, std::int64_t>(-1, -1)));
    EXPECT_EQ(batch[batch.size() - 2], (std::pair<std::int64_t, std::int64_t>(3, 3)));
    for (std::size_t i = 0; i + 1 < batch.size(); ++i)
        EXPECT_EQ(batch[i].second, 3) << "the first batch was heard of again";
}

TEST_F(AppModelAnalyze, ABatchEndsAtOnceWhereThereIsNoModelAndItsStatusSaysWhy) {
    services.aiStatus = [](const std::stop_token&) { return AIStatus{.unavailable = "Kapalı."}; };
    startWith({guessed("/1"), guessed("/2")});
    watchBatch();
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return batchIsOver(); }));
    using Pair = std::pair<std::int64_t, std::int64_t>;
    EXPECT_THAT(batch, ElementsAre(Pair(0, 2), Pair(-1, -1)));
    EXPECT_EQ(app().aiStatus().unavailable, "Kapalı.");
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelAnalyze, ABatchTellsOnceAtItsEndHowManyFailedAndWhy) {
    services.classify = [questions = questions, gate = gate](
                            const Finding& finding, std::string_view, const FolderContext::Applications&,
                            const std::stop_token& stop) -> AIClassifier::Result {
        questions->add({.id = finding.id});
        gate->pass(stop);
        if (finding.id == "/1")
            return answer();
        if (finding.id == "/4")
            return std::unexpected(AIClassifier::Error{AIClassifier::Failure::guardrail});
        return std::unexpected(AIClassifier::Error{platform::ModelError{.text = "HTTP 500."}});
    };
    startWith({guessed("/1"), guessed("/2"), guessed("/3"), guessed("/4")});
    gate->open();
    int alerts = 0;
    QObject::connect(&app(), &AppModel::alertChanged, [&] {
        ++alerts;
        EXPECT_TRUE(batchIsOver());
    });
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_EQ(alerts, 1);
    EXPECT_THAT(asked(), ElementsAre("/1", "/2", "/3", "/4"));
    EXPECT_EQ(app().alert()->title, "Analiz tamamlanamadı");
    EXPECT_EQ(app().alert()->message,
              "Sorulan 4 klasörden 3 tanesi analiz edilemedi:\n• HTTP 500. (2 klasör)\n• " +
                  std::string(errorDescription(AIClassifier::Failure::guardrail)));
}

TEST_F(AppModelAnalyze, ABatchThatIsGivenUpTellsWhatFailedUntilThen) {
    makeModelFail();
    startWith({guessed("/1"), guessed("/2")});
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    app().cancelBatch();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_EQ(app().alert()->message, "Sorulan 1 klasörden 1 tanesi analiz edilemedi:\n• hata: /1");
    EXPECT_THAT(asked(), ElementsAre("/1"));
}

TEST_F(AppModelAnalyze, ABatchStopsWhenTheModelIsGone) {
    const auto isThere = std::make_shared<std::atomic<bool>>(true);
    services.aiStatus = [isThere](const std::stop_token&) {
        return *isThere ? AIStatus{} : AIStatus{.unavailable = "Kapalı.", .hint = "Sunucuyu başlat."};
    };
    services.classify = [questions = questions, isThere](const Finding& finding, std::string_view,
                                                         const FolderContext::Applications&,
                                                         const std::stop_token&) -> AIClassifier::Result {
        questions->add({.id = finding.id});
        if (finding.id == "/1")
            return answer();
        *isThere = false;
        return std::unexpected(AIClassifier::Error{platform::ModelError{.text = "Bağlantı kesildi."}});
    };
    startWith({guessed("/1"), guessed("/2"), guessed("/3"), guessed("/4")});
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_TRUE(batchIsOver());
    EXPECT_THAT(asked(), ElementsAre("/1", "/2"));
    EXPECT_EQ(app().alert()->message,
              "Sorulan 2 klasörden 1 tanesi analiz edilemedi:\n• Bağlantı kesildi.\n"
              "Model artık yanıt vermiyor; kalan 2 klasör sorulmadı. Sunucuyu başlat.");
    EXPECT_FALSE(app().aiStatus().isAvailable());
}

/// A model whose status query times out once `isSilent` is set.
class AppModelSilence : public AppModelAnalyze {
protected:
    AppModelSilence() {
        services.statusPause = std::chrono::milliseconds(1);
        services.aiStatus = [isSilent = isSilent, looks = looks](const std::stop_token&) {
            ++*looks;
            return *isSilent ? AIStatus{.unavailable = "Yanıt yok.", .hint = {}, .isSilent = true}
                             : AIStatus{};
        };
    }
    std::shared_ptr<std::atomic<bool>> isSilent = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<std::atomic<int>> looks = std::make_shared<std::atomic<int>>(0);
};

TEST_F(AppModelSilence, ABusyModelIsAskedAllTheSameAndStaysAvailable) {
    startWith({guessed("/a")});
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable() && *looks == 2; }));
    *isSilent = true;
    const auto task = app().analyze("/a", "");
    EXPECT_EQ(app().analyzing(), std::set<std::string>{"/a"}) << "at once";
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_EQ(currentVerdict(*app().finding("/a")), answer());
    EXPECT_TRUE(app().aiStatus().isAvailable());
    EXPECT_EQ(std::ranges::count(signalled->values(), "aiStatus"), 1);
}

TEST_F(AppModelSilence, ABusyModelThatFailsIsToldOf) {
    makeModelFail();
    gate->open();
    startWith({guessed("/a")});
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable() && *looks == 2; }));
    *isSilent = true;
    analyze("/a");
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message, "hata: /a");
}

TEST_F(AppModelSilence, AModelThatIsBusyAtTheStartIsAvailableAsSoonAsItAnswers) {
    *isSilent = true;
    start();
    ASSERT_TRUE(waitUntil([&] { return *looks > 3; })) << "it is not asked again";
    EXPECT_FALSE(app().aiStatus().isAvailable());
    *isSilent = false;
    EXPECT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable(); }));
}

TEST_F(AppModelSilence, ABatchGoesOnWhenABusyModelAnswersThatItRefuses) {
    services.classify = [questions = questions](const Finding& finding, std::string_view,
                                                const FolderContext::Applications&,
                                                const std::stop_token&) -> AIClassifier::Result {
        questions->add({.id = finding.id});
        if (finding.id == "/1")
            return std::unexpected(AIClassifier::Error{AIClassifier::Failure::guardrail});
        if (finding.id == "/2")
            return std::unexpected(AIClassifier::Error{platform::ModelError{.text = "HTTP 500."}});
        return answer();
    };
    startWith({guessed("/1"), guessed("/2"), guessed("/3")});
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable() && *looks == 2; }));
    *isSilent = true;
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_THAT(asked(), ElementsAre("/1", "/2", "/3"));
    EXPECT_EQ(app().alert()->message, "Sorulan 3 klasörden 2 tanesi analiz edilemedi:\n• " +
                                          std::string(errorDescription(AIClassifier::Failure::guardrail)) +
                                          "\n• HTTP 500.");
}

TEST_F(AppModelSilence, ABatchStopsWhenNeitherQuestionNorRequestIsAnswered) {
    makeModelFail(true);
    gate->open();
    startWith({guessed("/1"), guessed("/2")});
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable() && *looks == 2; }));
    *isSilent = true;
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_THAT(asked(), ElementsAre("/1"));
    EXPECT_EQ(app().alert()->message,
              "Sorulan 1 klasörden 1 tanesi analiz edilemedi:\n• hata: /1\n"
              "Model artık yanıt vermiyor; kalan 1 klasör sorulmadı.");
}

TEST_F(AppModelAnalyze, AnOldAnswerAboutTheModelDoesNotReplaceANewerOne) {
    const auto first = std::make_shared<Gate>();
    const auto looks = std::make_shared<std::atomic<int>>(0);
    services.aiStatus = [first, looks](const std::stop_token& stop) {
        if (++*looks > 1)
            return AIStatus{};
        first->pass(stop);
        return AIStatus{.unavailable = "eski"};
    };
    const auto held = std::make_shared<int>();
    services.aiStatus = [held, ask = services.aiStatus](const std::stop_token& stop) { return ask(stop); };
    start();
    ASSERT_TRUE(waitUntil([&] { return first->arrived() == 1; }));
    scanFor({guessed("/a")});
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable(); }));
    const long heldByIt = held.use_count();
    first->open();
    ASSERT_TRUE(waitUntil([&] { return held.use_count() < heldByIt; })) << "the old answer is there";
    QCoreApplication::processEvents();
    EXPECT_TRUE(app().aiStatus().isAvailable());
}

}  // namespace
}  // namespace ulvak
