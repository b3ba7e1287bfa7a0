#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_time.h"

/// What tests ask of the system, and each system answers in its own way. Those that return an `int` return -1
/// with `errno` set when they fail.
namespace ulvak::test {

/// Swaps two entries in one step.
int exchange(const std::string& one, const std::string& other);

/// Gives an open, empty file room for that many bytes on disk, and that length.
int allocate(int handle, std::int64_t bytes);

/// Why what a test moves to the Trash would come to lie in that of whoever runs it, in spite of a HOME of its
/// own; nothing where it has a Trash of its own too.
[[nodiscard]] std::optional<std::string> whyNoTrashOfItsOwn();

/// How many handles this process has open.
[[nodiscard]] std::size_t openHandles();

/// All that the system keeps of an entry, a link's own, and that changes when somebody changes it: whatever
/// is left as it was compares equal. The access date is not among it.
[[nodiscard]] std::vector<std::int64_t> stateOf(const std::string& path);

/// When an entry was last changed, by what a look at it says.
[[nodiscard]] FileTime modifiedOf(const struct stat& info);

namespace detail {

/// Gives this process mounts of its own; what went wrong, or nothing. For `withPrivateMounts`.
[[nodiscard]] std::optional<std::string> separateMounts();

/// How many this process has, without those of a sanitizer; 1 where the system does not tell.
[[nodiscard]] std::size_t threads();

}  // namespace detail
}  // namespace ulvak::test
