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

/// What differs between systems, for the shared code in this folder: the calls below are implemented once in
/// `linux/` and once in `macos/`. A call that returns -1, or a descriptor that is not open, has set `errno`.
/// Thread-safe.
namespace ulvak::platform::posix {

/// `errno` as an error code.
[[nodiscard]] inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Converts seconds and nanoseconds since 1970, clamping.
[[nodiscard]] inline FileTime fileTime(std::int64_t seconds, std::int64_t nanoseconds) {
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(seconds, std::int64_t{1'000'000}, &microseconds) ||
        __builtin_add_overflow(microseconds, nanoseconds / 1000, &microseconds))
        return seconds < 0 ? FileTime::min() : FileTime::max();
    return FileTime(std::chrono::microseconds(microseconds));
}

/// st_blocks counts units of 512 bytes, whatever the file system's own block size.
[[nodiscard]] inline std::int64_t allocatedBytes(std::uint64_t blocks) {
    constexpr std::uint64_t unit = 512;
    constexpr auto maxBlocks = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / unit;
    return static_cast<std::int64_t>((blocks < maxBlocks ? blocks : maxBlocks) * unit);
}

/// Opens a folder for listing, following links.
[[nodiscard]] FileDescriptor openFolder(int parent, const char* path);

/// Like `openFolder`, for a folder below `parent`, but follows no link and enters no other volume (EXDEV).
/// `path` must be no longer than `stepLength` allows.
[[nodiscard]] FileDescriptor openFolderBelow(int parent, const char* path);

/// Like `openFolderBelow`, as an intermediate step only: the folder need not be listable.
[[nodiscard]] FileDescriptor openStepBelow(int parent, const char* path);

/// How much of a path one call can open: all of it, or as much as fits and ends before a "/".
[[nodiscard]] std::size_t stepLength(std::string_view path);

/// Opens a regular file for reading; follows no link and never blocks if it is something else.
[[nodiscard]] FileDescriptor openFile(int parent, const char* name);

struct Item {
    bool isFolder = false;
    bool isRegularFile = false;
    bool isMountPoint = false;
    bool isPlaceholder = false;      ///< its contents are remote and would have to be fetched
    std::int64_t length = 0;         ///< bytes
    std::int64_t allocatedSize = 0;  ///< bytes on disk
};

/// The entry at a name, not following a link. Triggers no automount.
[[nodiscard]] std::optional<Item> itemAt(int parent, const char* name);

/// Renames an entry within a folder, never replacing anything. Returns 0 or -1: EEXIST if the new name is
/// taken; EINVAL, ENOSYS or ENOTSUP if the file system cannot do that atomically.
[[nodiscard]] int moveToFreeName(int folder, const char* name, const char* freeName);

/// Atomically swaps two entries of a folder; 0 or -1.
[[nodiscard]] int exchange(int folder, const char* one, const char* other);

/// Whether the file system of an open folder may copy what is renamed there.
[[nodiscard]] bool movingCopies(int folder);

/// Grants this user the right to list and change an open folder, if the user owns it and lacks that right.
/// Returns whether it did. Grants nothing to anybody else.
[[nodiscard]] bool permit(int folder);

/// The same for the folder `name` of `parent`, if it has that number. For folders that may not even be
/// opened.
[[nodiscard]] bool permitBelow(int parent, const char* name, const FileNumber& number);

/// The identity of the entry at a name, not following a link; of the open file or folder `parent` itself if
/// the name is empty. Triggers no automount.
[[nodiscard]] std::optional<ItemIdentity> identityAt(int parent, const char* name);

/// A descriptor of the entry at a name (a link's own) that keeps its inode number from being reused. Not open
/// if nothing is there, or if it is not needed.
[[nodiscard]] FileDescriptor holdAt(int parent, const char* name);

/// Removes a dataless folder and its contents without fetching them; any other folder only if it is empty.
/// Returns 0 or -1; ENOTSUP on systems without dataless folders.
[[nodiscard]] int removePlaceholder(int parent, const char* name);

/// The volume number, as in `FileInfo`.
[[nodiscard]] std::uint64_t volumeNumber(const struct stat& info);

/// Waits until written data is on the disk, including the drive's own cache; 0 or -1.
[[nodiscard]] int flushToDisk(int handle);

/// How many handles this process has open; nullopt if the system does not say.
[[nodiscard]] std::optional<std::size_t> openHandles();

}  // namespace ulvak::platform::posix
