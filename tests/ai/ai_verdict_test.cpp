#include "ai/ai_verdict.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "platform/macos/answer_schema.h"

namespace ulvak {
namespace {

using Json = nlohmann::ordered_json;

std::string answer(const std::string& level, const std::string& confidence,
                   const std::string& title = "\"t\"", const std::string& reason = "\"r\"") {
    return R"({"level":)" + level + R"(,"title":)" + title + R"(,"reason":)" + reason + R"(,"confidence":)" +
           confidence + "}";
}

std::string errorOf(const std::string& json) {
    const auto verdict = aiVerdictFromJson(json);
    return verdict ? "no error" : verdict.error().text;
}

TEST(AILevel, FourLevelsMapToTheSafetyLevelsOfTheSameName) {
    std::set<std::string_view> seen;
    for (const AILevel level : allAILevels) {
        EXPECT_EQ(aiLevel(rawValue(level)), level);
        EXPECT_EQ(info(safetyLevel(level)).rawValue, rawValue(level));
        seen.insert(rawValue(level));
    }
    EXPECT_EQ(seen, (std::set<std::string_view>{"safe", "regenerable", "caution", "keep"}));
    EXPECT_EQ(aiLevel("unknown"), std::nullopt);
    EXPECT_EQ(aiLevel("Safe"), std::nullopt);
}

TEST(AIVerdict, SchemaHasFourPropertiesInOrderWithTheirDescriptions) {
    EXPECT_EQ(
        AIVerdict::schema(),
        R"({"type":"object","properties":{)"
        R"("level":{"description":"How safe it is to delete this folder","type":"string",)"
        R"("enum":["safe","regenerable","caution","keep"]},)"
        R"("title":{"description":"A short name for what this folder is, at most 6 words","type":"string"},)"
        R"("reason":{"description":"1 to 3 sentences: what it contains and what happens if it is deleted",)"
        R"("type":"string"},)"
        R"("confidence":{"description":"How confident you are, from 0 to 100","type":"integer",)"
        R"("minimum":0,"maximum":100}},)"
        R"("required":["level","title","reason","confidence"],"additionalProperties":false})");
}

TEST(AIVerdict, ReadsTheFourPropertiesByNameInAnyOrderAndIgnoresOthers) {
    const auto verdict = aiVerdictFromJson(
        R"({"extra":[{}],"confidence":70,"reason":"Önbellek.","title":"Derleme çıktısı","level":"regenerable"})");
    ASSERT_TRUE(verdict) << verdict.error().text;
    EXPECT_EQ(*verdict, (AIVerdict{.level = AILevel::regenerable,
                                   .title = "Derleme çıktısı",
                                   .reason = "Önbellek.",
                                   .confidence = 70}));
}

TEST(AIVerdict, LevelUnknownFailsWithTheRawTextOfTheValue) {
    EXPECT_EQ(errorOf(answer(R"("unknown")", "50")), R"(Unexpected value ""unknown"" for AILevel)");
}

TEST(AIVerdict, LevelsOutsideTheFourFail) {
    EXPECT_EQ(errorOf(answer(R"("SAFE")", "50")), R"(Unexpected value ""SAFE"" for AILevel)");
    EXPECT_EQ(errorOf(answer(R"("")", "50")), R"(Unexpected value """" for AILevel)");
    EXPECT_EQ(errorOf(answer("3", "50")), R"(Unexpected value "3" for AILevel)");
    EXPECT_EQ(errorOf(answer("null", "50")), R"(Unexpected value "null" for AILevel)");
    EXPECT_EQ(errorOf(answer(R"({"a": [1]})", "50")), R"(Unexpected value "{"a":[1]}" for AILevel)");
}

TEST(AIVerdict, HostileLevelStaysShortAndOnOneLine) {
    const std::string error = errorOf(answer("\"\\u001b[2J\\n" + std::string(5'000, 'x') + "\"", "50"));
    EXPECT_LT(error.size(), 200U);
    EXPECT_FALSE(error.contains('\x1b'));
    EXPECT_FALSE(error.contains('\n'));
}

TEST(AIVerdict, ConfidenceIsAnyWholeNumberThatFits) {
    struct Row {
        const char* written;
        std::int64_t read;
    };
    constexpr Row rows[] = {{"0", 0},     {"100", 100}, {"140", 140},
                            {"-5", -5},   {"85.0", 85}, {"9223372036854775807", INT64_MAX},
                            {"1e2", 100}, {"-0", 0},    {"-9223372036854775808", INT64_MIN}};
    for (const auto& [written, read] : rows) {
        const auto verdict = aiVerdictFromJson(answer(R"("safe")", written));
        ASSERT_TRUE(verdict) << written << ": " << verdict.error().text;
        EXPECT_EQ(verdict->confidence, read) << written;
    }
}

TEST(AIVerdict, ConfidencesThatAreNoIntegersFail) {
    for (const char* written : {"1e99", "-1e99", "\"85\"", "85.5", "null", "true", "[85]", "{}",
                                "9223372036854775808", "123456789012345678901234567890", "1e400"})
        EXPECT_NE(errorOf(answer(R"("safe")", written)), "no error") << written;
}

TEST(AIVerdict, AnswersThatAreNotJsonFail) {
    for (const char* written : {"", " ", "Silebilirsin.", "{", "```json\n{}\n```", "{\"level\":\"safe\"",
                                "\xff\xfe", "{\"level\":\"safe\",\"title\":\"a\nb\"}", "nul"})
        EXPECT_TRUE(errorOf(written).contains("JSON değil")) << written;
}

TEST(AIVerdict, AnswerThatIsCutOffAnywhereFails) {
    const std::string whole = answer(R"("safe")", "50");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(errorOf(whole.substr(0, length)), "no error") << length;
    EXPECT_EQ(errorOf(whole), "no error");
}

TEST(AIVerdict, AnswersOfAnotherSchemaFail) {
    EXPECT_TRUE(errorOf("[]").contains("nesnesi değil"));
    EXPECT_TRUE(errorOf("\"safe\"").contains("nesnesi değil"));
    EXPECT_TRUE(errorOf("{}").contains("\"level\""));
    EXPECT_TRUE(errorOf(R"({"verdict":{"level":"safe"}})").contains("\"level\""));
    EXPECT_TRUE(errorOf(R"({"level":"safe","reason":"r","confidence":1})").contains("\"title\""));
    EXPECT_TRUE(errorOf(R"({"level":"safe","title":"t","confidence":1})").contains("\"reason\""));
    EXPECT_TRUE(errorOf(R"({"level":"safe","title":"t","reason":"r"})").contains("\"confidence\""));
    EXPECT_TRUE(errorOf(answer(R"("safe")", "1", "7")).contains("\"title\""));
    EXPECT_TRUE(errorOf(answer(R"("safe")", "1", "\"t\"", "null")).contains("\"reason\""));
}

TEST(AIVerdict, AnswersWithoutATitleOrAReasonToReadFail) {
    for (const char* blank : {R"("")", R"(" ")", R"("\t\n")", R"("\u00a0\u3000")", R"("\u200b\u2060\ufeff")",
                              R"("\u3164")", R"("\u0000\u202e")"}) {
        EXPECT_TRUE(errorOf(answer(R"("safe")", "85", blank)).contains("\"title\" alanı boş")) << blank;
        EXPECT_TRUE(errorOf(answer(R"("safe")", "85", "\"t\"", blank)).contains("\"reason\" alanı boş"))
            << blank;
    }
    EXPECT_EQ(errorOf(answer(R"("safe")", "85", R"("\u200b7")", R"("—")")), "no error");
}

TEST(AIVerdict, DeeplyNestedAnswersFailWithoutExhaustingTheStack) {
    const std::string open(200'000, '[');
    const std::string close(200'000, ']');
    EXPECT_NE(errorOf(open), "no error");
    EXPECT_NE(errorOf(open + close), "no error");
    EXPECT_NE(errorOf(answer(open + close, "50")), "no error");
}

TEST(AIVerdict, TextsComeOutOnOneLineWithoutControlCharacters) {
    const auto verdict = aiVerdictFromJson(
        answer(R"("keep")", "50", R"(" a\tb\u0007\u202e ")", R"("Bir.\n\nİki.\r\n\u001b[31mÜç\u0000")"));
    ASSERT_TRUE(verdict);
    EXPECT_EQ(verdict->title, "a b\uFFFD\uFFFD");
    EXPECT_EQ(verdict->reason, "Bir.  İki.  \uFFFD[31mÜç\uFFFD");
}

TEST(AIVerdict, EndlessTextsAreCut) {
    std::string endless;
    for (int i = 0; i < 10'000; ++i)
        endless += "ü";
    const auto verdict =
        aiVerdictFromJson(answer(R"("keep")", "50", Json(endless).dump(), Json(endless).dump()));
    ASSERT_TRUE(verdict);
    EXPECT_EQ(verdict->title.size(), 2 * (AIVerdict::maxTitleLength - 1) + 3);
    EXPECT_TRUE(verdict->title.ends_with("ü…"));
    EXPECT_EQ(verdict->reason.size(), 2 * (AIVerdict::maxReasonLength - 1) + 3);
}

TEST(AIVerdict, ItsSchemaIsOneThatTheModelOfAMacCanBeHeldTo) {
    using platform::AnswerProperty;
    const auto properties = platform::answerProperties(AIVerdict::schema());
    ASSERT_TRUE(properties);
    ASSERT_EQ(properties->size(), 4U);
    EXPECT_EQ(properties->at(0).name, "level");
    EXPECT_EQ(properties->at(0).choices,
              (std::vector<std::string>{"safe", "regenerable", "caution", "keep"}));
    EXPECT_EQ(properties->at(1).name, "title");
    EXPECT_EQ(properties->at(2).kind, AnswerProperty::Kind::text);
    EXPECT_EQ(properties->at(3).kind, AnswerProperty::Kind::integer);
    EXPECT_EQ(properties->at(3).most, 100);
    for (const AnswerProperty& property : *properties)
        EXPECT_FALSE(property.description.empty()) << property.name;
}

}  // namespace
}  // namespace ulvak
