#include "platform/macos/answer_schema.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace ulvak::platform {
namespace {

/// Keeps key order, in which the model answers.
using Json = nlohmann::ordered_json;

bool isText(const Json& object, const char* key) {
    return object.contains(key) && object[key].is_string();
}

/// nullopt if it is not an integer, or out of range.
std::optional<std::int64_t> wholeNumber(const Json& object, const char* key) {
    if (!object.contains(key) || !object[key].is_number_integer())
        return std::nullopt;
    const Json& number = object[key];
    if (number.is_number_unsigned() && !std::in_range<std::int64_t>(number.get<std::uint64_t>()))
        return std::nullopt;
    return number.get<std::int64_t>();
}

std::optional<AnswerProperty> property(const std::string& name, const Json& schema) {
    if (!schema.is_object() || !isText(schema, "type"))
        return std::nullopt;
    AnswerProperty result{.name = name};
    for (const auto& [key, value] : schema.items()) {
        if (key == "description" && value.is_string()) {
            result.description = value.get<std::string>();
        } else if (key == "enum" && value.is_array() && !value.empty() &&
                   std::ranges::all_of(value, [](const Json& choice) { return choice.is_string(); })) {
            result.kind = AnswerProperty::Kind::choice;
            result.choices = value.get<std::vector<std::string>>();
        } else if (key != "type" && key != "minimum" && key != "maximum") {
            return std::nullopt;
        }
    }
    const bool hasRange = schema.contains("minimum") || schema.contains("maximum");
    if (schema["type"] == "string")
        return hasRange ? std::nullopt : std::optional(std::move(result));
    const auto least = wholeNumber(schema, "minimum");
    const auto most = wholeNumber(schema, "maximum");
    if (schema["type"] != "integer" || result.kind != AnswerProperty::Kind::text || !least || !most)
        return std::nullopt;
    result.kind = AnswerProperty::Kind::integer;
    result.least = *least;
    result.most = *most;
    return result.least <= result.most ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace

std::optional<std::vector<AnswerProperty>> answerProperties(std::string_view schema) {
    const Json json = Json::parse(schema, nullptr, false);
    if (!json.is_object() || !isText(json, "type") || json["type"] != "object" ||
        !json.contains("properties") || !json["properties"].is_object() || json["properties"].empty())
        return std::nullopt;
    const Json required = json.value("required", Json::array());
    if (!required.is_array())
        return std::nullopt;
    std::vector<AnswerProperty> properties;
    for (const auto& [name, value] : json["properties"].items()) {
        auto made = property(name, value);
        if (!made || std::ranges::find(required, Json(name)) == required.end())
            return std::nullopt;
        properties.push_back(std::move(*made));
    }
    return properties;
}

}  // namespace ulvak::platform
