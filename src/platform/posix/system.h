#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/quiet_access.h"
#include "platform/removal.h"

/// What each system does in its own way, for the code of this folder, which they share: the calls below are
/// defined once in `linux/` and once in `macos/`. Handles belong to the caller, who closes them. Where a call
/// returns -1 it has set `errno`. Safe from any thread.
namespace ulvak::platform::posix {

/// What `errno` says.
[[nodiscard]] inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Opens a folder for being listed, links followed.
[[nodiscard]] int openFolder(int parent, const char* path);

/// As `openFolder` for a folder below `parent`, but follows no link and enters no other volume (EXDEV).
/// `path` is no longer than `stepLength` says.
[[nodiscard]] int openFolderBelow(int parent, const char* path);

/// As `openFolderBelow`, only to go on from: a folder that may be entered but not listed will do.
[[nodiscard]] int openStepBelow(int parent, const char* path);

/// How much of a path one call opens: all of it, or as much as fits and ends before a "/".
[[nodiscard]] std::size_t stepLength(std::string_view path);

/// Opens a regular file for reading, no link followed, without waiting for whatever else it may be.
[[nodiscard]] int openFile(int parent, const char* name);

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

/// A handle of what is at a name, a link's own, that keeps its number from being used again; -1 where there
/// is none, or no need.
[[nodiscard]] int holdAt(int parent, const char* name);

/// Removes a folder whose contents live elsewhere, and those with it, without fetching them; any other folder
/// only when it is empty. 0 or -1; ENOTSUP where no contents live elsewhere.
[[nodiscard]] int removePlaceholder(int parent, const char* name);

/// The number of the volume that something lies on, as `FileInfo` has it.
[[nodiscard]] std::uint64_t volumeNumber(const struct stat& info);

/// Until what was written is on the disk, the drive's own memory included; 0 or -1.
[[nodiscard]] int flushToDisk(int handle);

/// How many handles this process has open; nothing when the system does not say.
[[nodiscard]] std::optional<std::size_t> openHandles();

/// The names in an open folder, in pieces, from where its handle stands: seeking to 0 starts over. For
/// whoever removes what is listed and must not pay for more than names.
class NameReader {
public:
    NameReader();
    ~NameReader();
    NameReader(const NameReader&) = delete;
    NameReader& operator=(const NameReader&) = delete;

    struct Entry {
        const char* name = nullptr;  ///< ends in a zero byte; valid until the next `read`
        bool isFolder = false;       ///< for certain; what the system does not know is none
    };

    /// The next piece of `folder`: whether there is one (1), none any more (0), or it failed (-1).
    [[nodiscard]] int read(int folder);

    /// The next entry of the piece, without "." and ".."; null at its end.
    [[nodiscard]] const Entry* next();

private:
    std::unique_ptr<std::byte[]> buffer_;
    std::size_t position_ = 0;
    std::size_t end_ = 0;
    Entry entry_;
};

}  // namespace ulvak::platform::posix
