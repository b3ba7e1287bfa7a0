#include "platform/macos/answer_schema.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace ulvak::platform {
namespace {

/// Keeps the order of keys, in which the model answers.
using Json = nlohmann::ordered_json;

bool isText(const Json& object, const char* key) {
    return object.contains(key) && object[key].is_string();
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
    if (schema["type"] != "integer" || result.kind != AnswerProperty::Kind::text ||
        !schema.contains("minimum") || !schema["minimum"].is_number_integer() ||
        !schema.contains("maximum") || !schema["maximum"].is_number_integer())
        return std::nullopt;
    result.kind = AnswerProperty::Kind::integer;
    result.least = schema["minimum"].get<std::int64_t>();
    result.most = schema["maximum"].get<std::int64_t>();
    return result.least <= result.most ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace

std::optional<std::vector<AnswerProperty>> answerProperties(std::string_view schema) {
    const Json json = Json::parse(schema, nullptr, false);
    if (!json.is_object() || !isText(json, "type") || json["type"] != "object" ||
        !json.contains("properties") || !json["properties"].is_object() || json["properties"].empty())
        return std::nullopt;
    std::vector<AnswerProperty> properties;
    for (const auto& [name, value] : json["properties"].items()) {
        auto made = property(name, value);
        const Json required = json.value("required", Json::array());
        if (!made || std::ranges::find(required, Json(name)) == required.end())
            return std::nullopt;
        properties.push_back(std::move(*made));
    }
    return properties;
}

}  // namespace ulvak::platform
