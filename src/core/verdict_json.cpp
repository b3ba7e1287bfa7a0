#include "core/verdict_json.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "core/json_integer.h"
#include "core/text.h"

namespace ulvak {
namespace {

std::expected<std::string, DataCorrupted> requiredText(const nlohmann::ordered_json& json, const char* key) {
    const auto found = json.find(key);
    if (found == json.end() || !found->is_string())
        return std::unexpected(DataCorrupted{std::string(key) + " is missing or not a string"});
    return found->get<std::string>();
}

std::expected<std::optional<std::int64_t>, DataCorrupted> optionalInteger(const nlohmann::ordered_json& json,
                                                                          const char* key) {
    const auto found = json.find(key);
    if (found == json.end() || found->is_null())
        return std::nullopt;
    const auto integer = jsonInteger(*found);
    if (!integer)
        return std::unexpected(DataCorrupted{std::string(key) + " is not an integer"});
    return integer;
}

}  // namespace

nlohmann::ordered_json toJson(const Verdict& verdict) {
    nlohmann::ordered_json json = {
        {"level", info(verdict.level).rawValue},
        {"title", wellFormed(verdict.title)},
        {"explanation", wellFormed(verdict.explanation)},
        {"source", info(verdict.source).rawValue},
    };
    if (verdict.confidence)
        json["confidence"] = *verdict.confidence;
    return json;
}

std::expected<Verdict, DataCorrupted> verdictFromJson(const nlohmann::ordered_json& json) {
    if (!json.is_object())
        return std::unexpected(DataCorrupted{"a verdict is not an object"});
    auto levelText = requiredText(json, "level");
    if (!levelText)
        return std::unexpected(levelText.error());
    auto title = requiredText(json, "title");
    if (!title)
        return std::unexpected(title.error());
    auto explanation = requiredText(json, "explanation");
    if (!explanation)
        return std::unexpected(explanation.error());
    auto sourceText = requiredText(json, "source");
    if (!sourceText)
        return std::unexpected(sourceText.error());
    auto confidence = optionalInteger(json, "confidence");
    if (!confidence)
        return std::unexpected(confidence.error());

    const auto level = safetyLevel(*levelText);
    const auto source = verdictSource(*sourceText);
    if (!level || !source)
        return std::unexpected(DataCorrupted{"unknown level or source"});
    return Verdict{.level = *level,
                   .title = std::move(*title),
                   .explanation = std::move(*explanation),
                   .source = *source,
                   .confidence = *confidence};
}

}  // namespace ulvak
