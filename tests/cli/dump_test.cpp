#include "cli/dump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <expected>
#include <limits>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "core/words.h"
#include "support/findings.h"

namespace ulvak {
namespace {

using namespace std::chrono_literals;

const UserFolders folders{.home = "/home/ayşe", .temp = "/tmp/t", .cache = "/tmp/C", .trash = ""};

Finding finding(SafetyLevel level, std::int64_t size, std::string title, const std::string& path,
                VerdictSource source = VerdictSource::rule) {
    return test::asFound(
        {.id = path, .size = size, .level = level, .title = std::move(title), .source = source});
}

std::string listing(const std::vector<Finding>& findings) {
    return Diagnostics::listing({}, findings, folders);
}

/// The listing after the summary and its empty line.
std::string sections(const std::vector<Finding>& findings) {
    const std::string text = listing(findings);
    return text.substr(text.find("\n\n") + 2);
}

TEST(Dump, SummaryIsFollowedByAnEmptyLine) {
    EXPECT_EQ(
        Diagnostics::listing({.files = 812345, .bytes = 231'400'000'000, .denied = 12, .elapsed = 48'999ms},
                             {}, folders),
        "Tarandı: 812345 dosya, 231,4 GB, erişilemeyen: 12, 48 sn\n\n");
}

TEST(Dump, LessThanASecondIsZeroSeconds) {
    EXPECT_EQ(Diagnostics::listing({.elapsed = 900ms}, {}, folders),
              "Tarandı: 0 dosya, Sıfır KB, erişilemeyen: 0, 0 sn\n\n");
}

TEST(Dump, LevelsStandInDisplayOrderAndEmptyOnesAreLeftOut) {
    EXPECT_EQ(
        sections({finding(SafetyLevel::keep, 5'000'000'000, "Belgeler", "/home/ayşe/Documents"),
                  finding(SafetyLevel::unknown, 4'000'000'000, "şey", "/opt/şey", VerdictSource::heuristic),
                  finding(SafetyLevel::safe, 3'000'000'000, "Geçici", "/tmp/t/x"),
                  finding(SafetyLevel::safe, 123'456'789, "Önbellek", "/tmp/C/y", VerdictSource::user)}),
        "== Güvenle silinebilir: 3,12 GB (2)\n"
        "  3 GB       [Kural] Geçici  —  Geçici klasör/x\n"
        "  123,5 MB   [Senin etiketin] Önbellek  —  Sistem önbelleği/y\n"
        "== Bilinmiyor: 4 GB (1)\n"
        "  4 GB       [Tahmin] şey  —  /opt/şey\n"
        "== Dokunma: 5 GB (1)\n"
        "  5 GB       [Kural] Belgeler  —  ~/Documents\n");
}

TEST(Dump, ThirtyFindingsOfALevelPrintTwentyFiveLinesUnderTheTotalOfAll) {
    std::vector<Finding> findings;
    for (int i = 0; i < 30; ++i)
        findings.push_back(finding(SafetyLevel::caution, 1'000'000'000, "n" + std::to_string(i), "/n"));
    const std::string text = sections(findings);
    EXPECT_TRUE(text.starts_with("== Dikkat: 30 GB (30)\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 26);
    EXPECT_TRUE(text.contains("] n24 "));
    EXPECT_FALSE(text.contains("] n25 "));
}

TEST(Dump, ASumThatOverflowsEndsTheProgram) {
    const std::vector<Finding> tooMuch = {
        finding(SafetyLevel::safe, std::numeric_limits<std::int64_t>::max(), "Bir", "/a"),
        finding(SafetyLevel::safe, 1, "İki", "/b")};
    EXPECT_DEATH((void)listing(tooMuch), "");
}

TEST(Dump, AFindingWithoutAUrlEndsTheProgram) {
    const auto list = []() noexcept { (void)listing({Finding{.level = SafetyLevel::safe, .title = "hiç"}}); };
    EXPECT_DEATH(list(), "");
}

TEST(Dump, PathIsThatOfTheFirstMember) {
    Finding group = finding(SafetyLevel::safe, 1'000'000, "Kayıtlar (2 öğe)", "/tmp/t/a");
    group.urls = {"/tmp/t/a", "/tmp/t/b"};
    EXPECT_TRUE(sections({group}).ends_with("] Kayıtlar (2 öğe)  —  Geçici klasör/a\n"));
}

TEST(Dump, HostileNamesStayOnOneLineOfValidText) {
    EXPECT_EQ(
        sections({finding(SafetyLevel::safe, 1'000'000, "a\n== b\x1b[2J\xff",
                          "/x/a\n== b\x1b[2J\xff\u0085\u202e")}),
        "== Güvenle silinebilir: 1 MB (1)\n"
        "  1 MB       [Kural] a\uFFFD== b\uFFFD[2J\uFFFD  —  /x/a\uFFFD== b\uFFFD[2J\uFFFD\uFFFD\uFFFD\n");
}

/// Gives the answers in order.
class ScriptedModel : public platform::LanguageModel {
public:
    using Answer = std::expected<std::string, platform::ModelError>;

    explicit ScriptedModel(std::vector<Answer> answers) : answers_(std::move(answers)) {}

    [[nodiscard]] std::optional<platform::ModelAbsence> absence(std::stop_token) const override {
        return absent;
    }
    [[nodiscard]] Answer respond(const platform::ModelRequest& request, std::stop_token) const override {
        prompts.push_back(request.prompt);
        return answers_.at(prompts.size() - 1);
    }

    std::optional<platform::ModelAbsence> absent;
    mutable std::vector<std::string> prompts;

private:
    std::vector<Answer> answers_;
};

std::string answers(const std::vector<Finding>& findings, const ScriptedModel& model) {
    std::string text;
    Diagnostics::askModel(findings, model, [&](std::string_view piece) { text += piece; }, folders);
    return text;
}

TEST(Dump, AsksTheModelAboutWhatIsUnknownOrGuessedInListOrder) {
    const ScriptedModel model(
        {R"({"level":"safe","title":"Eski kayıtlar","reason":"Silinebilir.","confidence":140})",
         R"({"level":"keep","title":"Veri","reason":"Kalsın.","confidence":7})"});
    EXPECT_EQ(
        answers({finding(SafetyLevel::caution, 9, "kural", "/k"),
                 finding(SafetyLevel::safe, 2'000'000, "kayıtlar", "/home/ayşe/x", VerdictSource::heuristic),
                 finding(SafetyLevel::unknown, 3'000'000'000, "şey", "/y")},
                model),
        "\nAI: available\n"
        "\n• ~/x (2 MB)\n"
        "  → Güvenle silinebilir %100: Eski kayıtlar\n"
        "    Silinebilir.\n"
        "\n• /y (3 GB)\n"
        "  → Dokunma %7: Veri\n"
        "    Kalsın.\n");
    ASSERT_EQ(model.prompts.size(), 2U);
    EXPECT_TRUE(model.prompts[0].contains("Path: ~/x\n"));
    EXPECT_FALSE(model.prompts[0].contains("The user says"));
}

TEST(Dump, FailedAnswerIsSaidAndTheNextFindingAsked) {
    const ScriptedModel model({std::unexpected(platform::ModelError{.text = "kırık\nhat"}),
                               R"({"level":"caution","title":"a","reason":"b","confidence":0})"});
    const std::string text = answers({finding(SafetyLevel::unknown, 1'000'000, "x", "/x\n"),
                                      finding(SafetyLevel::unknown, 1'000'000, "y", "/y")},
                                     model);
    EXPECT_TRUE(text.starts_with("\nAI: available\n\n• /x\uFFFD: HATA kırık\uFFFDhat\n\n• /y (1 MB)\n"))
        << text;
}

TEST(Dump, FilterThatRefusesBothTextsIsTheClassifiersOwnError) {
    const auto refusal = std::unexpected(platform::ModelError{.kind = platform::ModelError::Kind::refusal});
    const ScriptedModel model({refusal, refusal});
    EXPECT_EQ(answers({finding(SafetyLevel::unknown, 1'000'000, "x", "/x")}, model),
              "\nAI: available\n\n• /x: HATA " + std::string(words().ofModel) +
                  " güvenlik filtresi bu klasörü yorumlamayı reddetti. Kendin etiketleyebilirsin.\n");
}

TEST(Dump, AbsentModelEndsTheOutputWithItsStatus) {
    ScriptedModel model({});
    model.absent = platform::ModelAbsence{.reason = platform::ModelAbsenceReason::notEnabled, .detail = "x"};
    EXPECT_EQ(answers({finding(SafetyLevel::unknown, 1'000'000, "x", "/x")}, model),
              "\nAI: unavailable(\"" + std::string(words().modelAbsence[1]) + "\")\n");
}

TEST(Dump, WhatCanBeDoneAboutAnAbsentModelIsNoPartOfTheListing) {
    ScriptedModel model({});
    for (const char* hint : {"Sunucuyu\tbaşlat.", ""}) {
        model.absent = platform::ModelAbsence{.detail = hint};
        testing::internal::CaptureStderr();
        const std::string text = answers({finding(SafetyLevel::unknown, 1'000'000, "x", "/x")}, model);
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(text.contains("Sunucuyu"));
        EXPECT_EQ(said, *hint != '\0' ? "Sunucuyu\uFFFDbaşlat.\n" : "");
    }
}

}  // namespace
}  // namespace ulvak
