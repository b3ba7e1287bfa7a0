#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The part of JSON schema that the system's model can be held to: one object of texts, choices and whole
/// numbers, all of them required. Needs nothing of the system.
namespace ulvak::platform {

struct AnswerProperty {
    enum class Kind : std::uint8_t { text, choice, integer };

    std::string name;
    std::string description;  ///< may be empty
    Kind kind = Kind::text;
    std::vector<std::string> choices;
    std::int64_t least = 0;  ///< whole numbers only, both ends included
    std::int64_t most = 0;

    friend bool operator==(const AnswerProperty&, const AnswerProperty&) = default;
};

/// The properties in the schema's order. Nothing when the schema says what could not be kept to here.
[[nodiscard]] std::optional<std::vector<AnswerProperty>> answerProperties(std::string_view schema);

}  // namespace ulvak::platform
