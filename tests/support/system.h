#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_time.h"

/// System-specific test helpers. Those that return an `int` return -1 with `errno` set on failure.
namespace ulvak::test {

/// Swaps two entries atomically.
int exchange(const std::string& one, const std::string& other);

/// Allocates this many bytes on disk for an open, empty file, and sets its length to that.
int allocate(int handle, std::int64_t bytes);

/// Why items a test trashes would end up in the invoking user's Trash in spite of a changed HOME; empty if
/// the test gets its own Trash.
[[nodiscard]] std::optional<std::string> whyNoTrashOfItsOwn();

/// Number of open handles in this process.
[[nodiscard]] std::size_t openHandles();

/// All of an entry's metadata that a modification changes, for comparison; does not follow links. Excludes
/// the access time.
[[nodiscard]] std::vector<std::int64_t> stateOf(const std::string& path);

/// The modification time in a stat result.
[[nodiscard]] FileTime modifiedOf(const struct stat& info);

namespace detail {

/// Gives this process a private mount namespace; returns the error, if any. For `withPrivateMounts`.
[[nodiscard]] std::optional<std::string> separateMounts();

/// Number of threads in this process, excluding a sanitizer's; 1 if the system does not tell.
[[nodiscard]] std::size_t threads();

}  // namespace detail
}  // namespace ulvak::test
