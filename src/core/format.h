#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/file_time.h"

/// Formats dates and byte counts as Turkish text. Thread-safe; independent of the environment's locale.
namespace ulvak::Format {

using Clock = std::chrono::system_clock;

/// The time between `date` and `now` in the largest calendar unit that fits, rounded towards zero: "3 gün
/// önce", "2 hafta sonra". "bilinmiyor" without a date.
[[nodiscard]] std::string relative(std::optional<FileTime> date, Clock::time_point now = Clock::now());

/// The same in English, for a language model: "3 weeks ago"; "unknown" without a date.
[[nodiscard]] std::string relativeEnglish(std::optional<FileTime> date, Clock::time_point now = Clock::now());

/// Decimal units: "Sıfır KB", "1 bayt", "512 MB", "9,1 GB", "1,23 TB". Bytes and KB have no fraction digits,
/// MB at most one, GB and larger at most two. Trailing zeros are dropped, halves round to even, and the unit
/// is chosen after rounding. Always ASCII digits and a decimal comma.
[[nodiscard]] std::string bytes(std::int64_t count);

}  // namespace ulvak::Format
