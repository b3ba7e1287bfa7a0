#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "core/safety_level.h"

namespace ulvak {

/// The levels that a model may choose. There is no unknown: it must commit itself. Everything in this file is
/// safe from any thread.
enum class AILevel : std::uint8_t { safe, regenerable, caution, keep };

inline constexpr std::array allAILevels = {AILevel::safe, AILevel::regenerable, AILevel::caution,
                                           AILevel::keep};

/// As the model writes it.
[[nodiscard]] std::string_view rawValue(AILevel level);

/// The level of exactly this raw value, letter case included.
[[nodiscard]] std::optional<AILevel> aiLevel(std::string_view rawValue);

/// The level of the same name.
[[nodiscard]] SafetyLevel safetyLevel(AILevel level);

/// What a model answers, in the order in which it writes. Texts are on one line and safe to show.
struct AIVerdict {
    AILevel level = AILevel::caution;
    std::string title;            ///< at most `maxTitleLength` characters
    std::string reason;           ///< at most `maxReasonLength` characters
    std::int64_t confidence = 0;  ///< as answered: asked for 0 to 100, which nobody has checked yet

    static constexpr std::size_t maxTitleLength = 200;
    static constexpr std::size_t maxReasonLength = 2'000;

    friend bool operator==(const AIVerdict&, const AIVerdict&) = default;

    /// The JSON schema of an answer, properties in order, with what the model is told about each.
    [[nodiscard]] static const std::string& schema();
};

/// An answer that does not hold what the schema asks for.
struct UnusableAnswer {
    std::string text;  ///< for people, on one line; Turkish, but for an unknown level
};

/// Reads the four properties by name; others are ignored. Nothing about `json` is trusted:
/// a title or a reason in which nothing can be read is none.
[[nodiscard]] std::expected<AIVerdict, UnusableAnswer> aiVerdictFromJson(std::string_view json);

}  // namespace ulvak
