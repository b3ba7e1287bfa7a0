#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace ulvak {

/// How safe it is to delete something. The declaration order is that of `allSafetyLevels`; lists shown to
/// people are sorted by `order`, which puts `unknown` before `keep`.
enum class SafetyLevel : std::uint8_t { safe, regenerable, caution, keep, unknown };

inline constexpr std::array allSafetyLevels = {SafetyLevel::safe, SafetyLevel::regenerable,
                                               SafetyLevel::caution, SafetyLevel::keep, SafetyLevel::unknown};

/// Everything shown of a level. The texts are Turkish, UTF-8 in NFC.
struct SafetyLevelInfo {
    SafetyLevel level = SafetyLevel::unknown;
    std::string_view rawValue;  ///< in JSON and on the command line
    int order = 0;              ///< display rank
    std::string_view title;     ///< on badges, buttons, sidebar rows and cards
    std::string_view symbol;    ///< name of a symbol image
    std::string_view color;     ///< one of the platform's standard named colours
    std::string_view summary;   ///< one sentence under the title
};

[[nodiscard]] const SafetyLevelInfo& info(SafetyLevel level);

/// The level with exactly this raw value, case-sensitive.
[[nodiscard]] std::optional<SafetyLevel> safetyLevel(std::string_view rawValue);

/// Whether nothing is lost, or nothing that does not come back by itself.
[[nodiscard]] constexpr bool isEasilyDeleted(SafetyLevel level) {
    return level == SafetyLevel::safe || level == SafetyLevel::regenerable;
}

/// Stable sort into display order: safe, regenerable, caution, unknown, keep.
void sortForDisplay(std::span<SafetyLevel> levels);

/// `allSafetyLevels` in display order.
[[nodiscard]] std::array<SafetyLevel, allSafetyLevels.size()> displayedSafetyLevels();

}  // namespace ulvak
