#include "ai/ai_classifier.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ai/ai_verdict.h"
#include "ai/fake_model.h"
#include "core/words.h"

namespace ulvak {
namespace {

using AIClassifier::Language;
using platform::ModelError;
using test::FakeModel;
using Kind = ModelError::Kind;
using Family = ModelError::Family;

constexpr Family families[] = {Family::model, Family::session};

std::string answer(const char* level = "safe", const char* confidence = "80") {
    return std::string(R"({"level":")") + level + R"(","title":"Başlık","reason":"Neden.","confidence":)" +
           confidence + "}";
}

FakeModel::Answer error(Kind kind, Family family = Family::model, std::string text = "service text") {
    return std::unexpected(ModelError{.kind = kind, .family = family, .text = std::move(text)});
}

AIClassifier::Result classify(const FakeModel& model) {
    return AIClassifier::classify("full facts", "minimal facts", model);
}

/// The platform error that was passed through; adds a failure if there is none.
ModelError platformError(const AIClassifier::Result& result) {
    if (result || result.error().isGuardrail()) {
        ADD_FAILURE() << "no error of the platform's";
        return {};
    }
    return std::get<ModelError>(result.error().value);
}

std::size_t characters(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Repeated here on purpose: any changed word changes what the model is told.
constexpr std::string_view expectedInstructions =
    R"(You are a macOS storage expert helping a user who is running out of disk space. You receive facts about ONE folder or file. Decide what happens if it is deleted.

Levels:
- safe: nothing of value is lost (temporary files, logs, crash reports, leftover recordings).
- regenerable: an app or tool recreates or re-downloads it automatically (caches, build output, downloaded packages).
- caution: deletable, but the user loses something real (settings, history, databases, backups, installed programs, large downloads).
- keep: the user's own documents, source code, the only copy of something, or data an app needs to run.

Rules:
- Base your answer only on the given facts and hints. Never mention things that are not in the facts.
- Databases (.sqlite, .db), chat or session history and settings are caution, not regenerable.
- A backup copy is caution: the original stays, but the backup is lost.
- Being a developer only makes benchmark, trace, build and test output regenerable, not other data.
- If unsure, choose caution and lower the confidence.
- Write the title and the reason in )";

TEST(AIClassifier, FixedInstructionsAreTheseWordForWord) {
    EXPECT_EQ(characters(expectedInstructions), 1088U);
    EXPECT_EQ(
        AIClassifier::request("", Language::turkish).instructions,
        std::string(expectedInstructions) + R"(Turkish. Address the user as "sen" when writing Turkish.)");
}

TEST(AIClassifier, RequestInTurkishAsksForTurkish) {
    const platform::ModelRequest request = AIClassifier::request("Path: ~/x\nSize: 1 MB", Language::turkish);
    EXPECT_TRUE(request.instructions.ends_with(
        R"(reason in Turkish. Address the user as "sen" when writing Turkish.)"));
    EXPECT_EQ(
        request.prompt,
        "Folder facts:\nPath: ~/x\nSize: 1 MB\n\nClassify this folder. Başlığı ve açıklamayı Türkçe yaz.");
    EXPECT_EQ(request.answerSchema, AIVerdict::schema());
    EXPECT_EQ(request.temperature, 0.2);
}

TEST(AIClassifier, RequestInEnglishEndsWithWriteInEnglishAndStillSpeaksOfSen) {
    const platform::ModelRequest request = AIClassifier::request("facts", Language::english);
    EXPECT_EQ(request.prompt, "Folder facts:\nfacts\n\nClassify this folder. Write in English.");
    EXPECT_TRUE(request.instructions.ends_with(
        R"(reason in English. Address the user as "sen" when writing Turkish.)"));
}

TEST(AIClassifier, AnswerBecomesAVerdictOfTheModel) {
    const FakeModel model({answer("regenerable", "85")});
    const auto verdict = classify(model);
    ASSERT_TRUE(verdict);
    EXPECT_EQ(*verdict, (Verdict{.level = SafetyLevel::regenerable,
                                 .title = "Başlık",
                                 .explanation = "Neden.",
                                 .source = VerdictSource::ai,
                                 .confidence = 85}));
    ASSERT_EQ(model.asked().size(), 1U);
    EXPECT_TRUE(model.asked()[0].prompt.contains("full facts"));
}

TEST(AIClassifier, ConfidenceIsHeldBetween0And100) {
    for (const auto& [answered, held] : {std::pair("140", 100), {"-5", 0}, {"0", 0}, {"100", 100}}) {
        const auto verdict = classify(FakeModel({answer("safe", answered)}));
        ASSERT_TRUE(verdict) << answered;
        EXPECT_EQ(verdict->confidence, held) << answered;
    }
}

TEST(AIClassifier, LevelUnknownIsAnErrorOfTheRequestAndNotAskedAgain) {
    const FakeModel model({answer("unknown")});
    const auto result = classify(model);
    EXPECT_EQ(platformError(result).text, R"(Unexpected value ""unknown"" for AILevel)");
    EXPECT_EQ(result.error().description(), R"(Unexpected value ""unknown"" for AILevel)");
    EXPECT_EQ(model.asked().size(), 1U);
}

TEST(AIClassifier, RefusalOfTheFullTextIsAskedAgainWithTheMinimalOne) {
    for (const Kind kind : {Kind::refusal, Kind::guardrailViolation}) {
        for (const Family family : families) {
            const FakeModel model({error(kind, family), answer("caution")});
            const auto verdict = classify(model);
            ASSERT_TRUE(verdict);
            EXPECT_EQ(verdict->level, SafetyLevel::caution);
            ASSERT_EQ(model.asked().size(), 2U);
            EXPECT_EQ(model.asked()[1], AIClassifier::request("minimal facts", Language::turkish));
        }
    }
}

TEST(AIClassifier, RefusalOfBothTextsIsTheGuardrailFailure) {
    const FakeModel model({error(Kind::refusal), error(Kind::guardrailViolation, Family::session)});
    const auto result = classify(model);
    ASSERT_FALSE(result);
    EXPECT_TRUE(result.error().isGuardrail());
    EXPECT_EQ(result.error().description(),
              std::string(words().ofModel) +
                  " güvenlik filtresi bu klasörü yorumlamayı reddetti. Kendin etiketleyebilirsin.");
    EXPECT_EQ(model.asked().size(), 2U);
}

TEST(AIClassifier, UnsupportedLanguageIsAskedAgainInEnglish) {
    const FakeModel model({error(Kind::unsupportedLanguage), answer("keep")});
    const auto verdict = classify(model);
    ASSERT_TRUE(verdict);
    EXPECT_EQ(verdict->level, SafetyLevel::keep);
    ASSERT_EQ(model.asked().size(), 2U);
    EXPECT_EQ(model.asked()[1], AIClassifier::request("full facts", Language::english));
}

TEST(AIClassifier, RefusalInTheEnglishRetrySurfacesAsThePlatformsOwn) {
    for (const Kind kind :
         {Kind::refusal, Kind::guardrailViolation, Kind::unsupportedLanguage, Kind::other}) {
        const FakeModel model({error(Kind::unsupportedLanguage), error(kind, Family::model, "in English")});
        EXPECT_EQ(platformError(classify(model)), (ModelError{.kind = kind, .text = "in English"}));
        EXPECT_EQ(model.asked().size(), 2U);  // the minimal text is not tried
    }
}

TEST(AIClassifier, UnsupportedLanguageOfTheSessionFamilyIsPassedOn) {
    const FakeModel model({error(Kind::unsupportedLanguage, Family::session)});
    EXPECT_EQ(
        platformError(classify(model)),
        (ModelError{.kind = Kind::unsupportedLanguage, .family = Family::session, .text = "service text"}));
    EXPECT_EQ(model.asked().size(), 1U);
}

TEST(AIClassifier, UnsupportedLanguageOfTheMinimalTextIsAskedAgainInEnglish) {
    const FakeModel model({error(Kind::refusal), error(Kind::unsupportedLanguage), answer()});
    EXPECT_TRUE(classify(model));
    ASSERT_EQ(model.asked().size(), 3U);
    EXPECT_EQ(model.asked()[2], AIClassifier::request("minimal facts", Language::english));
}

TEST(AIClassifier, NothingIsAskedAgainAfterAStop) {
    for (const Kind kind : {Kind::refusal, Kind::guardrailViolation, Kind::unsupportedLanguage}) {
        std::stop_source stop;
        const FakeModel model({error(kind), answer()}, [&] { stop.request_stop(); });
        EXPECT_FALSE(AIClassifier::classify("full facts", "minimal facts", model, stop.get_token()));
        EXPECT_EQ(model.asked().size(), 1U);
    }
}

TEST(AIClassifier, AnyOtherErrorIsPassedOnUnchangedAndNotAskedAgain) {
    const FakeModel model({error(Kind::other, Family::session, "bozuk")});
    EXPECT_EQ(platformError(classify(model)), (ModelError{.family = Family::session, .text = "bozuk"}));
    EXPECT_EQ(model.asked().size(), 1U);
}

TEST(AIClassifier, DescriptionOfAPlatformErrorIsFitForATerminal) {
    const auto result = classify(FakeModel({error(Kind::other, Family::model, "a\x1b[2J\n• b\xff")}));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().description(), "a\uFFFD[2J\uFFFD• b\uFFFD");
}

}  // namespace
}  // namespace ulvak
