#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The subset of JSON schema that the system's model supports: one object of strings, choices and integers,
/// all required. Independent of the system.
namespace ulvak::platform {

struct AnswerProperty {
    enum class Kind : std::uint8_t { text, choice, integer };

    std::string name;
    std::string description;  ///< may be empty
    Kind kind = Kind::text;
    std::vector<std::string> choices;
    std::int64_t least = 0;  ///< integers only; both bounds inclusive
    std::int64_t most = 0;

    friend bool operator==(const AnswerProperty&, const AnswerProperty&) = default;
};

/// The properties in schema order. nullopt if the schema contains anything unsupported.
[[nodiscard]] std::optional<std::vector<AnswerProperty>> answerProperties(std::string_view schema);

}  // namespace ulvak::platform
