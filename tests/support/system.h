#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

/// What tests ask of the system, and each system answers in its own way. Those that return an `int` return -1
/// with `errno` set when they fail.
namespace ulvak::test {

/// Swaps two entries in one step.
int exchange(const std::string& one, const std::string& other);

/// Gives an open, empty file room for that many bytes on disk, and that length.
int allocate(int handle, std::int64_t bytes);

/// How many handles this process has open.
[[nodiscard]] std::size_t openHandles();

namespace detail {

/// Gives this process mounts of its own; what went wrong, or nothing. For `withPrivateMounts`.
[[nodiscard]] std::optional<std::string> separateMounts();

}  // namespace detail
}  // namespace ulvak::test
