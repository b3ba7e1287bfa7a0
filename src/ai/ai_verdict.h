#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "core/safety_level.h"

namespace ulvak {

/// The levels a model may choose. There is no `unknown`: it must commit. Everything in this file is
/// thread-safe.
enum class AILevel : std::uint8_t { safe, regenerable, caution, keep };

inline constexpr std::array allAILevels = {AILevel::safe, AILevel::regenerable, AILevel::caution,
                                           AILevel::keep};

/// The spelling the model uses.
[[nodiscard]] std::string_view rawValue(AILevel level);

/// The level with exactly this raw value, case-sensitive.
[[nodiscard]] std::optional<AILevel> aiLevel(std::string_view rawValue);

/// The level with the same name.
[[nodiscard]] SafetyLevel safetyLevel(AILevel level);

/// A model's answer, fields in the order it writes them. Texts are one line and safe to show.
struct AIVerdict {
    AILevel level = AILevel::caution;
    std::string title;            ///< at most `maxTitleLength` characters
    std::string reason;           ///< at most `maxReasonLength` characters
    std::int64_t confidence = 0;  ///< as answered; 0 to 100 is requested but not yet checked

    static constexpr std::size_t maxTitleLength = 200;
    static constexpr std::size_t maxReasonLength = 2'000;

    friend bool operator==(const AIVerdict&, const AIVerdict&) = default;

    /// The JSON schema of an answer, properties in order, with descriptions for the model.
    [[nodiscard]] static const std::string& schema();
};

/// An answer that does not match the schema.
struct UnusableAnswer {
    std::string text;  ///< one line, for people; Turkish, except for an unknown level
};

/// Reads the four properties by name and ignores others. Nothing in `json` is trusted; a title or reason
/// without readable text counts as missing.
[[nodiscard]] std::expected<AIVerdict, UnusableAnswer> aiVerdictFromJson(std::string_view json);

}  // namespace ulvak
