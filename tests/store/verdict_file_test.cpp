#include "store/verdict_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "core/text.h"
#include "support/turkish_locale.h"

namespace ulvak {
namespace {

using nlohmann::ordered_json;
using testing::Key;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const VerdictEntry byUser{.verdict = {.level = SafetyLevel::keep,
                                      .title = "Düğün videoları",
                                      .explanation = "Benim.",
                                      .source = VerdictSource::user},
                          .size = 123'456'789'012,
                          .date = {786'000'000.25}};

const VerdictEntry byModel{.verdict = {.level = SafetyLevel::regenerable,
                                       .title = "npm önbelleği",
                                       .explanation = "Silinirse \"yeniden\" iner.\n",
                                       .source = VerdictSource::ai,
                                       .confidence = 85},
                           .size = 0,
                           .date = {0}};

constexpr std::string_view goodVerdict = R"({"level":"safe","title":"t","explanation":"e","source":"user"})";

/// A file with one entry, made of these three members.
std::string file(std::string_view verdict, std::string_view size = "1", std::string_view date = "2") {
    return R"({"/a":{"verdict":)" + std::string(verdict) + R"(,"size":)" + std::string(size) + R"(,"date":)" +
           std::string(date) + "}}";
}

/// A verdict with one additional member.
std::string verdictWith(std::string_view member) {
    return std::string(goodVerdict.substr(0, goodVerdict.size() - 1)) + "," + std::string(member) + "}";
}

VerdictEntries decoded(std::string_view text) {
    auto entries = decodeEntries(text);
    EXPECT_TRUE(entries) << text << ": " << entries.error().what;
    return entries.value_or(VerdictEntries());
}

std::string encoded(const VerdictEntries& entries) {
    const auto text = encodeEntries(entries);
    EXPECT_TRUE(text);
    return text.value_or("");
}

void expectRejected(const std::string& text) {
    EXPECT_FALSE(decodeEntries(text)) << text;
}

TEST(StoredDate, CountsSecondsSinceTheStartOf2001) {
    using std::chrono::sys_days;
    using std::chrono::year;
    EXPECT_EQ(StoredDate::from(sys_days{year{2001} / 1 / 1}).secondsSince2001, 0);
    EXPECT_EQ(StoredDate::from(FileTime{}).secondsSince2001, -978'307'200);
    const FileTime date =
        sys_days{year{2025} / 11 / 28} + std::chrono::hours(5) + std::chrono::microseconds(250'000);
    EXPECT_EQ(StoredDate::from(date).secondsSince2001, 785'998'800.25);
}

TEST(VerdictFile, IsCompactWithItsKeysInOrder) {
    EXPECT_EQ(
        encoded({{"/ev/video", byUser}, {"/ev/.npm", byModel}}),
        R"({"/ev/.npm":{"verdict":{"level":"regenerable","title":"npm önbelleği","explanation":"Silinirse \"yeniden\" iner.\n",)"
        R"("source":"ai","confidence":85},"size":0,"date":0.0},)"
        R"("/ev/video":{"verdict":{"level":"keep","title":"Düğün videoları","explanation":"Benim.","source":"user"},)"
        R"("size":123456789012,"date":786000000.25}})");
    EXPECT_EQ(encoded({}), "{}");
}

TEST(VerdictFile, ReadsWhatAnotherEncoderWrites) {
    const auto entries = decoded(
        R"({"\/Users\/ay\u015fe\/.npm":{"verdict":{"level":"regenerable","title":"npm \u00f6nbelle\u011fi",)"
        R"("explanation":"Silinirse \"yeniden\" iner.\n","source":"ai","confidence":85},"size":0,"date":0},)"
        R"("\/Users\/ayşe\/😀":{"verdict":{"level":"keep","title":"Düğün videoları","explanation":"Benim.",)"
        R"("source":"user"},"size":123456789012,"date":786000000.25}})");
    EXPECT_EQ(entries, (VerdictEntries{{"/Users/ayşe/.npm", byModel}, {"/Users/ayşe/😀", byUser}}));
}

TEST(VerdictFile, MayHaveWhiteSpaceAndItsKeysInAnyOrder) {
    const auto entries = decoded(
        "\n{ \"/a\" : {\t\"date\": 786000000.25, \"size\": 123456789012,\r\n \"verdict\": "
        "{\"source\":\"user\", \"explanation\":\"Benim.\", \"title\":\"Düğün videoları\", "
        "\"level\":\"keep\"} } }\n");
    EXPECT_EQ(entries, (VerdictEntries{{"/a", byUser}}));
}

TEST(VerdictFile, IgnoresMembersThatNobodyKnows) {
    const std::string others = R"("x":[{"size":"y","verdict":{"level":1}},null,[[]]],"Size":"z","":{},)";
    const auto entries = decoded(R"({"/a":{)" + others + R"("verdict":{)" + others +
                                 R"("level":"safe","title":"t","explanation":"e","source":"user"},)" +
                                 others + R"("size":5,"date":6,"note":{"verdict":3}}})");
    ASSERT_THAT(entries, SizeIs(1));
    EXPECT_EQ(entries.at("/a"), (VerdictEntry{.verdict = {.level = SafetyLevel::safe,
                                                          .title = "t",
                                                          .explanation = "e",
                                                          .source = VerdictSource::user},
                                              .size = 5,
                                              .date = {6}}));
}

TEST(VerdictFile, WithoutEntriesIsSound) {
    EXPECT_THAT(decoded("{}"), SizeIs(0));
    EXPECT_THAT(decoded(" {\n} "), SizeIs(0));
}

TEST(VerdictFile, ThatIsNoJsonIsRejected) {
    const std::string good = file(goodVerdict);
    ASSERT_TRUE(decodeEntries(good));
    for (std::size_t length = 0; length < good.size(); ++length)
        expectRejected(good.substr(0, length));
    expectRejected(good + "}");
    expectRejected(good + good);
    expectRejected(good + '\0');
    expectRejected(good + std::string(100, '\0') + "x");
    expectRejected("/* */" + good);
    expectRejected("{\"/\xff\":" + good.substr(6));
    expectRejected("{\"\\ud800\":" + good.substr(6));
    expectRejected("{'/a':" + good.substr(6));
    EXPECT_NE(decodeEntries("{").error().what, "");
}

TEST(VerdictFile, ThatIsNoObjectIsRejected) {
    for (const char* text : {"null", "true", "1", "1.5", "\"\"", "[]", "[{}]", "[[]]"})
        expectRejected(text);
}

TEST(VerdictFile, WithOneEntryThatIsNoObjectIsRejectedAsAWhole) {
    for (const char* entry : {"null", "true", "1", "-1", "1.5", "\"\"", "[]", "{}"}) {
        const std::string good = file(goodVerdict);
        expectRejected(good.substr(0, good.size() - 1) + R"(,"/b":)" + entry + "}");
        expectRejected(std::string(R"({"/b":)") + entry + "," + good.substr(1));
    }
}

TEST(VerdictFile, WithAMissingMemberIsRejected) {
    const ordered_json good = ordered_json::parse(file(goodVerdict));
    for (const char* key : {"verdict", "size", "date"}) {
        ordered_json json = good;
        json["/a"].erase(key);
        expectRejected(json.dump());
    }
    for (const char* key : {"level", "title", "explanation", "source"}) {
        ordered_json json = good;
        json["/a"]["verdict"].erase(key);
        expectRejected(json.dump());
    }
}

TEST(VerdictFile, DoesNotTakeAMemberOfOneEntryForThatOfTheNext) {
    const std::string good = file(goodVerdict);
    expectRejected(good.substr(0, good.size() - 1) + R"(,"/b":{"size":1,"date":2}})");
    expectRejected(good.substr(0, good.size() - 1) + R"(,"/b":{"verdict":)" + std::string(goodVerdict) +
                   "}}");
}

TEST(VerdictFile, WithAMemberOfTheWrongTypeIsRejected) {
    for (const char* verdict : {"null", "true", "1", "\"safe\"", "[]", "{}", R"([{"level":"safe"}])"})
        expectRejected(file(verdict));
    for (const char* size : {"null", "true", "\"1\"", "[]", "[1]", "{}"})
        expectRejected(file(goodVerdict, size));
    for (const char* date : {"null", "false", "\"2\"", "\"2001-01-01T00:00:00Z\"", "[]", "[2]", "{}"})
        expectRejected(file(goodVerdict, "1", date));
    for (const char* member :
         {R"("level":"Safe")", R"("level":1)", R"("title":null)", R"("title":["t"])", R"("explanation":{})",
          R"("source":"model")", R"("confidence":"85")", R"("confidence":[85])", R"("confidence":85.5)"})
        expectRejected(file(verdictWith(member)));
}

TEST(VerdictFile, SizeIsAnIntegerHoweverItIsWritten) {
    const std::pair<const char*, std::int64_t> sizes[] = {{"0", 0},
                                                          {"-0", 0},
                                                          {"5.0", 5},
                                                          {"5e0", 5},
                                                          {"1.5e1", 15},
                                                          {"-7", -7},
                                                          {"-7.0", -7},
                                                          {"9223372036854775807", INT64_MAX},
                                                          {"-9223372036854775808", INT64_MIN}};
    for (const auto& [text, size] : sizes) {
        const auto entries = decoded(file(goodVerdict, text));
        ASSERT_THAT(entries, SizeIs(1)) << text;
        EXPECT_EQ(entries.at("/a").size, size) << text;
    }
}

TEST(VerdictFile, WithASizeThatIsNoIntegerOrDoesNotFitIsRejected) {
    for (const char* size :
         {"5.5", "1e-1", "9223372036854775808", "-9223372036854775809", "18446744073709551615",
          "18446744073709551616", "9223372036854775808.0", "1e19", "1e400"})
        expectRejected(file(goodVerdict, size));
}

TEST(VerdictFile, ConfidenceMayBeNullOrAWholeNumberWithAFraction) {
    EXPECT_EQ(decoded(file(verdictWith(R"("confidence":null)"))).at("/a").verdict.confidence, std::nullopt);
    EXPECT_EQ(decoded(file(verdictWith(R"("confidence":85.0)"))).at("/a").verdict.confidence, 85);
}

TEST(VerdictFile, DateIsAnyNumberAndComesBackToTheLastBit) {
    for (const char* date :
         {"0", "-0.0", "-978307200", "785998800.123456", "785998800.1234567", "0.1", "1e300", "5e-324",
          "1.7976931348623157e308", "12345678901234567890", "785998800.00000011920928955"}) {
        const auto entries = decoded(file(goodVerdict, "1", date));
        ASSERT_THAT(entries, SizeIs(1)) << date;
        EXPECT_EQ(entries.at("/a").date.secondsSince2001, ordered_json::parse(date).get<double>()) << date;
        EXPECT_EQ(decoded(encoded(entries)), entries) << date;
    }
}

TEST(VerdictFile, IsNotWrittenWithADateThatIsNoNumber) {
    for (const double date :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        VerdictEntry entry = byUser;
        entry.date = {date};
        EXPECT_EQ(encodeEntries({{"/a", byUser}, {"/b", entry}}), std::nullopt);
    }
}

TEST(VerdictFile, TheLastOfMembersWithOneNameCounts) {
    const std::string one =
        file(R"(1,"verdict":)" + verdictWith(R"("level":"keep")"), R"("x","size":[],"size":7)");
    const auto entries =
        decoded(one.substr(0, one.size() - 1) + "," + R"("/b":{"verdict":)" + std::string(goodVerdict) +
                R"(,"size":1,"date":1},)" + R"("/b":{"verdict":)" + std::string(goodVerdict) +
                R"(,"size":2,"date":2}})");
    ASSERT_THAT(entries, UnorderedElementsAre(Key("/a"), Key("/b")));
    EXPECT_EQ(entries.at("/a").verdict.level, SafetyLevel::keep);
    EXPECT_EQ(entries.at("/a").size, 7);
    EXPECT_EQ(entries.at("/b").size, 2);
    expectRejected(file(std::string(goodVerdict) + R"(,"verdict":1)"));
}

TEST(VerdictFile, NestingInWhatIsIgnoredNeverExhaustsTheStack) {
    const auto nested = [](std::size_t levels) {
        return file(goodVerdict, R"(1,"x":)" + std::string(levels, '[') + std::string(levels, ']'));
    };
    EXPECT_TRUE(decodeEntries(nested(maxVerdictNesting - 2)));
    EXPECT_FALSE(decodeEntries(nested(maxVerdictNesting - 1)));
    EXPECT_FALSE(decodeEntries(nested(5'000'000)));
    EXPECT_FALSE(decodeEntries(std::string(5'000'000, '[')));
    std::string objects = "{\"/a\":";
    for (int i = 0; i < 1'000'000; ++i)
        objects += "{\"verdict\":";
    EXPECT_FALSE(decodeEntries(objects));
}

TEST(VerdictFile, ManyMembersThatNobodyKnowsCostNoMoreThanTheirLength) {
    std::string others;
    for (int i = 0; i < 300'000; ++i)
        others += "\"k" + std::to_string(i) + "\":0,";
    const auto entries = decoded(R"({"/a":{)" + others + R"("verdict":{)" + others +
                                 std::string(goodVerdict.substr(1)) + R"(,"size":5,"date":6}})");
    EXPECT_THAT(entries, SizeIs(1));
}

TEST(VerdictFile, TenThousandEntriesComeBackEqual) {
    VerdictEntries entries;
    for (int i = 0; i < 10'000; ++i) {
        VerdictEntry entry = i % 2 == 0 ? byUser : byModel;
        entry.size = i;
        entry.date = {786'000'000 + i / 7.0};
        entries.emplace("/home/ayşe/Projeler/" + std::to_string(i) + "/node_modules", entry);
    }
    EXPECT_EQ(decoded(encoded(entries)), entries);
}

TEST(VerdictFile, WritesIdsThatAreUtf8AsTheyAre) {
    for (const std::string id : {"", "/", "/a b", "/İıŞğ", "/e\u0301", "/\u00e9", "/😀", "/a\uFFFD",
                                 "/\uFFFE\u2028", "/\"\\\n\x1b[31m\x7f", "/a\uFFFD1"}) {
        const auto json = ordered_json::parse(encoded({{id, byUser}}));
        ASSERT_EQ(json.size(), 1U);
        EXPECT_EQ(json.items().begin().key(), id);
        EXPECT_EQ(json.front().size(), 3U) << "nothing of ours beside the three members";
        EXPECT_EQ(decoded(json.dump()), (VerdictEntries{{id, byUser}}));
    }
    const std::string zero("/a\0b", 4);
    EXPECT_EQ(decoded(encoded({{zero, byUser}})), (VerdictEntries{{zero, byUser}}));
}

TEST(VerdictFile, IdsThatAreNotUtf8ComeBackToTheByte) {
    const VerdictEntries entries = {{"/\xff", byUser},
                                    {"/\xfe", byModel},
                                    {"/\x80", byUser},
                                    {"/\uFFFD", byModel},
                                    {"/\uFFFD\uFFFD"
                                     "1",
                                     byUser},
                                    {"/foto\xf0\x9f\x98", byModel},
                                    {"\xed\xa0\x80", byUser},
                                    {"\xc0\xaf", byModel},
                                    {"/plain", byUser}};
    const std::string text = encoded(entries);
    EXPECT_EQ(wellFormed(text), text);
    EXPECT_EQ(decoded(text), entries);
    EXPECT_EQ(encoded(decoded(text)), text);
}

TEST(VerdictFile, AnIdThatIsNotUtf8IsOneMoreOrdinaryEntryToOtherReaders) {
    const auto json = ordered_json::parse(encoded({{"/foto\xff", byUser}, {"/a", byModel}}));
    ASSERT_EQ(json.size(), 2U);
    const auto& entry = json.at("/foto\uFFFD");
    EXPECT_EQ(entry.at("idBytes"), "2f666f746fff");
    EXPECT_EQ(entry.at("verdict").at("level"), "keep");
    EXPECT_EQ(entry.at("size"), byUser.size);
    EXPECT_EQ(entry.at("date"), byUser.date.secondsSince2001);
}

TEST(VerdictFile, ManyIdsThatLookAlikeAllComeBack) {
    VerdictEntries entries;
    for (int i = 0; i < 4096; ++i) {
        std::string id = "/";
        for (int bit = 0; bit < 12; ++bit)
            id += (i >> bit) % 2 == 0 ? "\xfe" : "\xff";
        entries.emplace(id, byUser);
    }
    EXPECT_EQ(decoded(encoded(entries)), entries);
}

TEST(VerdictFile, BytesThatDoNotBelongToTheNameSayNothing) {
    const auto nameWith = [](const std::string& name, const std::string& idBytes) {
        const auto entries = decoded(R"({")" + name + R"(":{"verdict":)" + std::string(goodVerdict) +
                                     R"(,"size":1,"date":2,"idBytes":)" + idBytes + "}}");
        return entries.empty() ? "(none)" : entries.begin()->first;
    };
    EXPECT_EQ(nameWith("/\uFFFD", R"("2fff")"), "/\xff");
    EXPECT_EQ(nameWith("/\uFFFD\uFFFD2", R"("2fff")"), "/\xff");
    for (const char* idBytes :
         {R"("2f61")", R"("2FFF")", R"("2ff")", R"("")", R"("62ff")", "5", "null", "[]", "{}"})
        EXPECT_EQ(nameWith("/\uFFFD", idBytes), "/\uFFFD") << idBytes;
}

TEST(VerdictFile, TextsThatAreNotUtf8AreRepairedAndSpoilNoOtherEntry) {
    VerdictEntry named = byUser;
    named.verdict.title = "foto\xff";
    const auto entries = decoded(encoded({{"/a", byModel}, {"/foto", named}}));
    EXPECT_EQ(entries.at("/a"), byModel);
    EXPECT_EQ(entries.at("/foto").verdict.title, "foto\uFFFD");
}

TEST(VerdictFile, ATurkishLocaleChangesNoByte) {
    VerdictEntry entry = byModel;
    entry.size = 1'234'567'890;
    entry.date = {785'998'800.125};
    const VerdictEntries entries = {{"/IĞDIR/ıİ", byUser}, {"/i\xff", entry}};
    const std::string before = encoded(entries);
    const test::TurkishLocale locale;
    if (const auto reason = locale.whyNot())
        GTEST_SKIP() << *reason;
    EXPECT_EQ(encoded(entries), before);
    EXPECT_EQ(decoded(before), entries);
}

}  // namespace
}  // namespace ulvak
