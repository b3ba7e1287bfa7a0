#pragma once

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "classify/simulator_info.h"
#include "platform/file_time.h"

/// The simulator devices that the developer tools have installed. Safe from any thread.
namespace ulvak::Simulators {

/// Asks the developer tools; blocks until they have answered, or have been killed after a stop request. Empty
/// on any failure, and where there are no such tools.
[[nodiscard]] SimulatorMap load(std::stop_token stop = {});

/// More bytes, or more levels, than any such tool prints.
inline constexpr std::size_t maxListBytes = 64 * 1024 * 1024;
inline constexpr int deepestNesting = 64;

/// Reads the tools' JSON. Empty unless it is an object whose "devices" is an object of arrays of objects, and
/// for one of more than `maxListBytes` bytes or `deepestNesting` levels.
[[nodiscard]] SimulatorMap parse(std::string_view json);

/// "com.apple.CoreSimulator.SimRuntime.iOS-17-2" is "iOS 17.2". A name without a version keeps the blank
/// that would stand before it.
[[nodiscard]] std::string readableRuntime(std::string_view identifier);

/// An internet date and time with its time zone and without fractions of a second
/// ("2024-01-02T03:04:05Z", "2024-01-02T03:04:05+03:00"), or nothing.
[[nodiscard]] std::optional<FileTime> parseIso8601(std::string_view text);

}  // namespace ulvak::Simulators
