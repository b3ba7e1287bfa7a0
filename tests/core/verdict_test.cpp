#include "core/verdict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/verdict_json.h"
#include "core/words.h"

namespace ulvak {
namespace {

using nlohmann::ordered_json;
using testing::ElementsAre;

const Verdict withConfidence{.level = SafetyLevel::regenerable,
                             .title = "npm önbelleği",
                             .explanation = "Silinirse \"yeniden\" iner.\n",
                             .source = VerdictSource::ai,
                             .confidence = 85};

Verdict withoutConfidence() {
    Verdict verdict = withConfidence;
    verdict.confidence.reset();
    return verdict;
}

/// A decodable object of which tests corrupt one key.
ordered_json valid() {
    return {{"level", "safe"}, {"title", "t"}, {"explanation", "e"}, {"source", "rule"}, {"confidence", 7}};
}

TEST(VerdictSource, AreDeclaredInThisOrder) {
    EXPECT_THAT(allVerdictSources, ElementsAre(VerdictSource::rule, VerdictSource::ai,
                                               VerdictSource::heuristic, VerdictSource::user));
}

TEST(VerdictSource, ShowsItselfWithTheseTextsAndSymbols) {
    const VerdictSourceInfo expected[] = {
        {VerdictSource::rule, "rule", "Kural", "book.closed"},
        {VerdictSource::ai, "ai", words().model, "apple.intelligence"},
        {VerdictSource::heuristic, "heuristic", "Tahmin", "wand.and.stars"},
        {VerdictSource::user, "user", "Senin etiketin", "person.fill"},
    };
    ASSERT_EQ(std::size(expected), allVerdictSources.size());
    for (const VerdictSourceInfo& row : expected) {
        const VerdictSourceInfo& shown = info(row.source);
        EXPECT_EQ(shown.source, row.source);
        EXPECT_EQ(shown.rawValue, row.rawValue);
        EXPECT_EQ(shown.label, row.label);
        EXPECT_EQ(shown.symbol, row.symbol);
    }
}

TEST(VerdictSource, IsFoundByExactlyItsRawValue) {
    for (const VerdictSource source : allVerdictSources)
        EXPECT_EQ(verdictSource(info(source).rawValue), source);
    for (const std::string text : {"", "Rule", "AI", "ai ", "kural", "heuristics"})
        EXPECT_EQ(verdictSource(text), std::nullopt) << text;
}

TEST(Verdict, BadgeHasThePercentSignBeforeTheConfidenceWithoutABlank) {
    const std::string model(words().model);
    EXPECT_EQ(badgeText(withConfidence), model + " %85");
    Verdict verdict = withConfidence;
    verdict.confidence = 0;
    EXPECT_EQ(badgeText(verdict), model + " %0");
    verdict.confidence = 100;
    EXPECT_EQ(badgeText(verdict), model + " %100");
}

TEST(Verdict, BadgeWithoutConfidenceIsTheLabel) {
    for (const VerdictSource source : allVerdictSources)
        EXPECT_EQ(badgeText({.source = source}), info(source).label);
}

TEST(Verdict, WritesItsKeysInOrder) {
    EXPECT_EQ(
        toJson(withConfidence).dump(),
        R"({"level":"regenerable","title":"npm önbelleği","explanation":"Silinirse \"yeniden\" iner.\n",)"
        R"("source":"ai","confidence":85})");
}

TEST(Verdict, WritesNamesThatAreNotUtf8AsTextThatCanBeWritten) {
    const auto json = toJson({.title = "\xff.npm", .explanation = "a\xc3"});
    EXPECT_EQ(json.at("title"), "\uFFFD.npm");
    EXPECT_EQ(json.at("explanation"), "a\uFFFD");
    EXPECT_NO_THROW((void)json.dump());
}

TEST(Verdict, LeavesAnAbsentConfidenceOutAndComesBackEqual) {
    const ordered_json json = toJson(withoutConfidence());
    EXPECT_EQ(json.size(), 4U);
    EXPECT_FALSE(json.contains("confidence"));
    const auto back = verdictFromJson(json);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, withoutConfidence());
}

TEST(Verdict, EveryLevelSourceAndConfidenceComesBackEqual) {
    for (const SafetyLevel level : allSafetyLevels) {
        for (const VerdictSource source : allVerdictSources) {
            for (const std::int64_t confidence :
                 {std::int64_t{0}, std::int64_t{100}, std::int64_t{-1}, INT64_MIN, INT64_MAX}) {
                const Verdict verdict{.level = level,
                                      .title = "",
                                      .explanation = "ığüşöç",
                                      .source = source,
                                      .confidence = confidence};
                const auto back = verdictFromJson(ordered_json::parse(toJson(verdict).dump()));
                ASSERT_TRUE(back) << back.error().what;
                EXPECT_EQ(*back, verdict);
            }
        }
    }
}

TEST(Verdict, ANullOrMissingConfidenceIsAbsent) {
    ordered_json json = valid();
    json["confidence"] = nullptr;
    EXPECT_EQ(verdictFromJson(json)->confidence, std::nullopt);
    json.erase("confidence");
    EXPECT_EQ(verdictFromJson(json)->confidence, std::nullopt);
}

TEST(Verdict, AConfidenceIsAnIntegerHoweverItIsWritten) {
    for (const char* number : {"85", "85.0", "8.5e1"}) {
        ordered_json json = valid();
        json["confidence"] = ordered_json::parse(number);
        const auto verdict = verdictFromJson(json);
        ASSERT_TRUE(verdict) << number;
        EXPECT_EQ(verdict->confidence, 85) << number;
    }
    for (const char* number :
         {"9223372036854775808", "9223372036854775808.0", "-9223372036854775809", "1e300", "-1e300", "0.5"}) {
        ordered_json json = valid();
        json["confidence"] = ordered_json::parse(number);
        EXPECT_FALSE(verdictFromJson(json)) << number;
    }
}

TEST(Verdict, ReadsKeysInAnyOrderAndIgnoresOthers) {
    const auto verdict = verdictFromJson(ordered_json::parse(
        R"({"note":[1],"source":"user","explanation":"e","level":"keep","order":null,"title":"t","Level":"safe"})"));
    ASSERT_TRUE(verdict);
    EXPECT_EQ(
        *verdict,
        (Verdict{
            .level = SafetyLevel::keep, .title = "t", .explanation = "e", .source = VerdictSource::user}));
}

TEST(Verdict, FailsOnAnUnknownLevelOrSourceWithoutFallingBack) {
    for (const std::string text : {"Safe", "SAFE", "", "silinebilir", "unknown "}) {
        ordered_json json = valid();
        json["level"] = text;
        EXPECT_FALSE(verdictFromJson(json)) << text;
    }
    for (const std::string text : {"Rule", "", "model"}) {
        ordered_json json = valid();
        json["source"] = text;
        EXPECT_FALSE(verdictFromJson(json)) << text;
    }
}

TEST(Verdict, FailsWhenARequiredKeyIsMissing) {
    ASSERT_TRUE(verdictFromJson(valid()));
    for (const char* key : {"level", "title", "explanation", "source"}) {
        ordered_json json = valid();
        json.erase(key);
        const auto verdict = verdictFromJson(json);
        ASSERT_FALSE(verdict) << key;
        EXPECT_THAT(verdict.error().what, testing::HasSubstr(key));
    }
}

TEST(Verdict, FailsWhenAKeyHasTheWrongType) {
    const ordered_json wrong[] = {
        nullptr, true, 1, 1.5, ordered_json::array({"safe"}), ordered_json::object()};
    for (const char* key : {"level", "title", "explanation", "source"}) {
        for (const ordered_json& value : wrong) {
            ordered_json json = valid();
            json[key] = value;
            EXPECT_FALSE(verdictFromJson(json)) << key << ": " << value;
        }
    }
    for (const ordered_json& value :
         {ordered_json("85"), ordered_json(true), ordered_json(85.5), ordered_json::array(),
          ordered_json(std::numeric_limits<std::uint64_t>::max())}) {
        ordered_json json = valid();
        json["confidence"] = value;
        EXPECT_FALSE(verdictFromJson(json)) << value;
    }
}

TEST(Verdict, FailsOnWhatIsNoObject) {
    for (const ordered_json& json :
         {ordered_json(nullptr), ordered_json("safe"), ordered_json(1), ordered_json::array(),
          ordered_json::array({valid()}), ordered_json::object()})
        EXPECT_FALSE(verdictFromJson(json)) << json;
}

TEST(Verdict, IsEqualOnlyWhenAllFiveFieldsAre) {
    EXPECT_EQ(withConfidence, withConfidence);
    std::vector<Verdict> others(5, withConfidence);
    others[0].level = SafetyLevel::safe;
    others[1].title += " ";
    others[2].explanation.clear();
    others[3].source = VerdictSource::user;
    others[4].confidence = 84;
    for (const Verdict& other : others) {
        EXPECT_NE(other, withConfidence);
        EXPECT_NE(std::hash<Verdict>{}(other), std::hash<Verdict>{}(withConfidence));
    }
    EXPECT_EQ(std::hash<Verdict>{}(Verdict(withConfidence)), std::hash<Verdict>{}(withConfidence));
}

TEST(Verdict, AnAbsentConfidenceIsNotZero) {
    Verdict zero = withoutConfidence();
    zero.confidence = 0;
    EXPECT_NE(zero, withoutConfidence());
    EXPECT_NE(std::hash<Verdict>{}(zero), std::hash<Verdict>{}(withoutConfidence()));
}

TEST(Verdict, TitleAndExplanationAreNotInterchangeable) {
    const Verdict one{.title = "a", .explanation = "b"};
    const Verdict other{.title = "b", .explanation = "a"};
    EXPECT_NE(one, other);
    EXPECT_NE(std::hash<Verdict>{}(one), std::hash<Verdict>{}(other));
}

}  // namespace
}  // namespace ulvak
