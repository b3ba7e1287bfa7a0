#include "ai/ai_classifier.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ai/ai_verdict.h"
#include "core/text.h"
#include "core/words.h"

namespace ulvak::AIClassifier {
namespace {

using platform::ModelError;

constexpr std::string_view fixedInstructions =
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

/// Deliberately in both languages.
constexpr std::string_view addressing = R"(. Address the user as "sen" when writing Turkish.)";

struct LanguageRow {
    std::string_view name;
    std::string_view wish;  ///< ends the prompt
};

/// Indexed by `Language`.
constexpr std::array<LanguageRow, 2> languages = {{
    {"Turkish", "Başlığı ve açıklamayı Türkçe yaz."},
    {"English", "Write in English."},
}};

constexpr std::int64_t maxConfidence = 100;

std::expected<Verdict, ModelError> ask(std::string_view facts, Language language,
                                       const platform::LanguageModel& model, std::stop_token stop) {
    auto json = model.respond(request(facts, language), std::move(stop));
    if (!json)
        return std::unexpected(std::move(json.error()));
    auto answer = aiVerdictFromJson(*json);
    if (!answer)
        return std::unexpected(ModelError{.text = std::move(answer.error().text)});
    return Verdict{.level = safetyLevel(answer->level),
                   .title = std::move(answer->title),
                   .explanation = std::move(answer->reason),
                   .source = VerdictSource::ai,
                   .confidence = std::clamp<std::int64_t>(answer->confidence, 0, maxConfidence)};
}

}  // namespace

std::string errorDescription(Failure) {
    return std::string(words().ofModel) +
           " güvenlik filtresi bu klasörü yorumlamayı reddetti. Kendin etiketleyebilirsin.";
}

std::string Error::description() const {
    if (const auto* failure = std::get_if<Failure>(&value))
        return errorDescription(*failure);
    return printable(std::get<ModelError>(value).text);
}

platform::ModelRequest request(std::string_view facts, Language language) {
    const LanguageRow& row = languages[static_cast<std::size_t>(language)];
    return {
        .instructions = std::string(fixedInstructions).append(row.name).append(addressing),
        .prompt = std::string("Folder facts:\n")
                      .append(facts)
                      .append("\n\nClassify this folder. ")
                      .append(row.wish),
        .answerName = "AIVerdict",
        .answerSchema = AIVerdict::schema(),
        .temperature = 0.2,
    };
}

Result classifyFacts(std::string_view facts, const platform::LanguageModel& model, std::stop_token stop) {
    auto turkish = ask(facts, Language::turkish, model, stop);
    if (turkish)
        return std::move(*turkish);
    const auto [kind, family] = std::pair(turkish.error().kind, turkish.error().family);
    if (kind == ModelError::Kind::guardrailViolation || kind == ModelError::Kind::refusal)
        return std::unexpected(Error{Failure::guardrail});
    if (kind != ModelError::Kind::unsupportedLanguage || family != ModelError::Family::model ||
        stop.stop_requested())
        return std::unexpected(Error{std::move(turkish.error())});

    // From here on any failure is a platform error, even a refusal: the model does not work for this user,
    // and a shorter text would not change that.
    auto english = ask(facts, Language::english, model, std::move(stop));
    if (!english)
        return std::unexpected(Error{std::move(english.error())});
    return std::move(*english);
}

Result classify(const Finding& finding, std::string_view note, std::span<const std::string> running,
                const platform::LanguageModel& model, const FolderContext::Circumstances& around) {
    using FolderContext::Extent;
    const std::string full = FolderContext::build(finding, note, running, Extent::full, around);
    const std::string minimal = FolderContext::build(finding, note, running, Extent::minimal, around);
    return classify(full, minimal, model, around.stop);
}

Result classify(std::string_view full, std::string_view minimal, const platform::LanguageModel& model,
                std::stop_token stop) {
    Result result = classifyFacts(full, model, stop);
    if (result || !result.error().isGuardrail() || stop.stop_requested())
        return result;
    return classifyFacts(minimal, model, std::move(stop));
}

}  // namespace ulvak::AIClassifier
