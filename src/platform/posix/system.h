#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/file_descriptor.h"
#include "platform/file_time.h"
#include "platform/removal.h"

/// What each system does in its own way, for the code of this folder, which they share: the calls below are
/// defined once in `linux/` and once in `macos/`. A call that returns -1, or a descriptor that is not open,
/// has set `errno`. Safe from any thread.
namespace ulvak::platform::posix {

/// What `errno` says.
[[nodiscard]] inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// What file systems keep as seconds and nanoseconds since 1970.
[[nodiscard]] inline FileTime fileTime(std::int64_t seconds, std::int64_t nanoseconds) {
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(seconds, std::int64_t{1'000'000}, &microseconds) ||
        __builtin_add_overflow(microseconds, nanoseconds / 1000, &microseconds))
        return seconds < 0 ? FileTime::min() : FileTime::max();
    return FileTime(std::chrono::microseconds(microseconds));
}

/// The kernels count in units of 512 bytes, whatever the file system's own block size.
[[nodiscard]] inline std::int64_t allocatedBytes(std::uint64_t blocks) {
    constexpr std::uint64_t unit = 512;
    constexpr auto maxBlocks = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / unit;
    return static_cast<std::int64_t>((blocks < maxBlocks ? blocks : maxBlocks) * unit);
}

/// Opens a folder for being listed, links followed.
[[nodiscard]] FileDescriptor openFolder(int parent, const char* path);

/// As `openFolder` for a folder below `parent`, but follows no link and enters no other volume (EXDEV).
/// `path` is no longer than `stepLength` says.
[[nodiscard]] FileDescriptor openFolderBelow(int parent, const char* path);

/// As `openFolderBelow`, only to go on from: a folder that may be entered but not listed will do.
[[nodiscard]] FileDescriptor openStepBelow(int parent, const char* path);

/// How much of a path one call opens: all of it, or as much as fits and ends before a "/".
[[nodiscard]] std::size_t stepLength(std::string_view path);

/// Opens a regular file for reading, no link followed, without waiting for whatever else it may be.
[[nodiscard]] FileDescriptor openFile(int parent, const char* name);

struct Item {
    bool isFolder = false;
    bool isRegularFile = false;
    bool isMountPoint = false;
    bool isPlaceholder = false;      ///< its contents live elsewhere and would have to be fetched
    std::int64_t length = 0;         ///< bytes
    std::int64_t allocatedSize = 0;  ///< bytes on disk
};

/// What is at a name, a link itself. Starts no mount.
[[nodiscard]] std::optional<Item> itemAt(int parent, const char* name);

/// Gives an entry of a folder a name in it that nothing has; 0 or -1, EEXIST when something has it. EINVAL,
/// ENOSYS or ENOTSUP where the file system cannot do that in one step.
[[nodiscard]] int moveToFreeName(int folder, const char* name, const char* freeName);

/// Swaps two entries of a folder in one step; 0 or -1.
[[nodiscard]] int exchange(int folder, const char* one, const char* other);

/// Whether the file system of an open folder may copy what gets another name there.
[[nodiscard]] bool movingCopies(int folder);

/// Lets this user list and change an open folder, if it is his and he may not yet; whether that was so.
/// Nobody else gets any right.
[[nodiscard]] bool permit(int folder);

/// The same for the folder `name` of `parent`, if it has that number: one that may not even be opened.
[[nodiscard]] bool permitBelow(int parent, const char* name, const FileNumber& number);

/// Of what is at a name, a link's own; of the open file or folder `parent` itself where the name is empty.
/// Starts no mount.
[[nodiscard]] std::optional<ItemIdentity> identityAt(int parent, const char* name);

/// A descriptor of what is at a name, a link's own, that keeps its number from being used again; none where
/// there is none, or no need.
[[nodiscard]] FileDescriptor holdAt(int parent, const char* name);

/// Removes a folder whose contents live elsewhere, and those with it, without fetching them; any other folder
/// only when it is empty. 0 or -1; ENOTSUP where no contents live elsewhere.
[[nodiscard]] int removePlaceholder(int parent, const char* name);

/// The number of the volume that something lies on, as `FileInfo` has it.
[[nodiscard]] std::uint64_t volumeNumber(const struct stat& info);

/// Until what was written is on the disk, the drive's own memory included; 0 or -1.
[[nodiscard]] int flushToDisk(int handle);

/// How many handles this process has open; nothing when the system does not say.
[[nodiscard]] std::optional<std::size_t> openHandles();

}  // namespace ulvak::platform::posix
