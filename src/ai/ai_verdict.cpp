#include "ai/ai_verdict.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "ai/fact_text.h"
#include "core/json_integer.h"
#include "core/text.h"

namespace ulvak {
namespace {

/// Keys in a tree: a hostile answer with many of them costs no more than its length.
using Json = nlohmann::json;
/// Keeps key order, for the schema.
using OrderedJson = nlohmann::ordered_json;

struct AILevelRow {
    AILevel level;
    std::string_view rawValue;
    SafetyLevel safetyLevel;
};

constexpr std::array<AILevelRow, allAILevels.size()> levels = {{
    {AILevel::safe, "safe", SafetyLevel::safe},
    {AILevel::regenerable, "regenerable", SafetyLevel::regenerable},
    {AILevel::caution, "caution", SafetyLevel::caution},
    {AILevel::keep, "keep", SafetyLevel::keep},
}};

const AILevelRow& row(AILevel level) {
    return levels[static_cast<std::size_t>(level)];
}

std::string builtSchema() {
    OrderedJson names = OrderedJson::array();
    for (const AILevelRow& level : levels)
        names.push_back(level.rawValue);
    // clang-format off
    const OrderedJson properties = {
        {"level",      {{"description", "How safe it is to delete this folder"}, {"type", "string"}, {"enum", names}}},
        {"title",      {{"description", "A short name for what this folder is, at most 6 words"}, {"type", "string"}}},
        {"reason",     {{"description", "1 to 3 sentences: what it contains and what happens if it is deleted"}, {"type", "string"}}},
        {"confidence", {{"description", "How confident you are, from 0 to 100"}, {"type", "integer"}, {"minimum", 0}, {"maximum", 100}}},
    };
    // clang-format on
    const OrderedJson schema = {
        {"type", "object"},
        {"properties", properties},
        {"required", {"level", "title", "reason", "confidence"}},
        {"additionalProperties", false},
    };
    return schema.dump();
}

std::unexpected<UnusableAnswer> unusable(std::string_view why) {
    return std::unexpected(UnusableAnswer{"Modelin yanıtı kullanılamıyor: " + std::string(why) +
                                          ". Tekrar dene ya da başka bir model seç."});
}

/// The parsed answer; discarded if it is not JSON or is nested deeper than any answer needs. Serialising such
/// a value would recurse just as deep.
Json parsed(std::string_view text) {
    constexpr int maxDepth = 16;
    bool tooDeep = false;
    const auto watch = [&](int depth, Json::parse_event_t, Json&) {
        tooDeep = tooDeep || depth > maxDepth;
        return !tooDeep;
    };
    Json json = Json::parse(text, watch, false);
    return tooDeep ? Json(Json::value_t::discarded) : json;
}

std::string rawText(const Json& value) {
    constexpr std::size_t maxLength = 100;
    return FactText::answer(value.dump(-1, ' ', false, Json::error_handler_t::replace), maxLength);
}

std::expected<std::string, UnusableAnswer> text(const Json& json, const char* key, std::size_t maxLength) {
    const auto found = json.find(key);
    if (found == json.end() || !found->is_string())
        return unusable(std::string("\"") + key + "\" alanı yok ya da metin değil");
    std::string line = FactText::answer(found->get_ref<const std::string&>(), maxLength);
    if (isBlank(line))
        return unusable(std::string("\"") + key + "\" alanı boş");
    return line;
}

}  // namespace

std::string_view rawValue(AILevel level) {
    return row(level).rawValue;
}

std::optional<AILevel> aiLevel(std::string_view rawValue) {
    const auto found = std::ranges::find(levels, rawValue, &AILevelRow::rawValue);
    return found == levels.end() ? std::nullopt : std::optional(found->level);
}

SafetyLevel safetyLevel(AILevel level) {
    return row(level).safetyLevel;
}

const std::string& AIVerdict::schema() {
    static const std::string built = builtSchema();
    return built;
}

std::expected<AIVerdict, UnusableAnswer> aiVerdictFromJson(std::string_view json) {
    const Json answer = parsed(json);
    if (answer.is_discarded())
        return unusable("JSON değil ya da yarım kalmış");
    if (!answer.is_object())
        return unusable("JSON nesnesi değil");

    const auto levelText = answer.find("level");
    if (levelText == answer.end())
        return unusable("\"level\" alanı yok");
    const auto level =
        levelText->is_string() ? aiLevel(levelText->get_ref<const std::string&>()) : std::optional<AILevel>();
    if (!level)
        return std::unexpected(
            UnusableAnswer{"Unexpected value \"" + rawText(*levelText) + "\" for AILevel"});

    auto title = text(answer, "title", AIVerdict::maxTitleLength);
    if (!title)
        return std::unexpected(std::move(title.error()));
    auto reason = text(answer, "reason", AIVerdict::maxReasonLength);
    if (!reason)
        return std::unexpected(std::move(reason.error()));
    const auto number = answer.find("confidence");
    const auto confidence = number != answer.end() ? jsonInteger(*number) : std::nullopt;
    if (!confidence)
        return unusable("\"confidence\" alanı yok ya da tam sayı değil");
    return AIVerdict{
        .level = *level, .title = std::move(*title), .reason = std::move(*reason), .confidence = *confidence};
}

}  // namespace ulvak
