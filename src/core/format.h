#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/file_time.h"

/// Dates and byte counts as Turkish text. Safe from any thread; independent of the environment's locale.
namespace ulvak::Format {

using Clock = std::chrono::system_clock;

/// The distance from `now` in the largest calendar unit that fits, rounded towards zero: "3 gün önce",
/// "2 hafta sonra". "bilinmiyor" for an absent date.
[[nodiscard]] std::string relative(std::optional<FileTime> date, Clock::time_point now = Clock::now());

/// The same in English, for a language model: "3 weeks ago"; "unknown" for an absent date.
[[nodiscard]] std::string relativeEnglish(std::optional<FileTime> date, Clock::time_point now = Clock::now());

/// Decimal units: "Sıfır KB", "1 bayt", "512 MB", "9,1 GB", "1,23 TB". Bytes and KB have no fraction, MB
/// one digit, GB and larger two; trailing zeros go, halves round to even, and the unit is chosen after
/// rounding. Always ASCII digits and a decimal comma.
[[nodiscard]] std::string bytes(std::int64_t count);

}  // namespace ulvak::Format
