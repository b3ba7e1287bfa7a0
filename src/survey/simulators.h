#pragma once

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "classify/simulator_info.h"
#include "platform/file_time.h"

/// The simulator devices installed by the developer tools. Thread-safe.
namespace ulvak::Simulators {

/// Queries the developer tools. Blocks until they answer, or until a stop request has killed them. Empty on
/// any failure, and where there are no such tools.
[[nodiscard]] SimulatorMap load(std::stop_token stop = {});

/// More bytes and more nesting than any such tool prints.
inline constexpr std::size_t maxListBytes = 64 * 1024 * 1024;
inline constexpr int maxNesting = 64;

/// Parses the tools' JSON. Empty unless it is an object whose "devices" is an object of arrays of objects,
/// and for more than `maxListBytes` bytes or `maxNesting` levels.
[[nodiscard]] SimulatorMap parse(std::string_view json);

/// Turns "com.apple.CoreSimulator.SimRuntime.iOS-17-2" into "iOS 17.2". A name without a version keeps the
/// space that would precede it.
[[nodiscard]] std::string readableRuntime(std::string_view identifier);

/// Parses an internet date and time with a time zone and without fractional seconds ("2024-01-02T03:04:05Z",
/// "2024-01-02T03:04:05+03:00"); nullopt for anything else.
[[nodiscard]] std::optional<FileTime> parseIso8601(std::string_view text);

}  // namespace ulvak::Simulators
