#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/file_time.h"

/// Reads about single files and folders. Nothing here writes, blocks on anything but a folder or a regular
/// file, or fetches remote contents; and where the system allows it, nothing updates an access date. Paths
/// and names are bytes. Thread-safe; blocks on the disk.
namespace ulvak::platform {

class Directory;

/// Volume number and inode number: two names with the same pair are the same file.
using FileNumber = std::pair<std::uint64_t, std::uint64_t>;

/// Distinguishes an item or an open folder from anything else that takes its name. File systems reuse inode
/// numbers, so the creation date is included where the system has one.
struct ItemIdentity {
    FileNumber number;
    std::optional<FileTime> born;

    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;
};

/// A failed change to the disk, as reported by the system.
struct FileError {
    std::error_code code;  ///< `std::generic_category` wherever the system gave a number
    std::string path;      ///< where it failed, bytes
    std::string detail;    ///< the service's own message, for people; empty if there is only the code
};

/// While one exists, this thread's reads update no access dates and fetch no remote contents, on systems
/// where that is set per thread rather than per file. Every platform call that reads the user's files has its
/// own; one around many calls saves each the system calls. Nests.
class QuietAccess {
public:
    QuietAccess();
    ~QuietAccess();  // NOLINT(performance-trivially-destructible): not on every system
    QuietAccess(const QuietAccess&) = delete;
    QuietAccess& operator=(const QuietAccess&) = delete;
};

struct FileInfo {
    bool isDirectory = false;
    /// Bytes allocated on disk (not the length); 0 if the system does not say.
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
    FileNumber volumeAndNumber;
    std::uint64_t names = 1;  ///< hard links of a file, wherever they are
};

/// What is at `path`, following a symbolic link. nullopt if nothing is there, if a link is broken, or if this
/// user has no permission to look.
[[nodiscard]] std::optional<FileInfo> fileInfo(const std::string& path);

/// When the item was last read or listed, following a link. nullopt if the system does not say.
[[nodiscard]] std::optional<FileTime> lastAccess(const std::string& path);

/// Whether `folder` contains an entry `name`. A link counts if its target exists, unless that is on another
/// volume that may never answer: a dead server must not be waited for.
[[nodiscard]] bool existsIn(const std::string& folder, const std::string& name);

/// Whether `path` is a folder owned by this user, and not a link. nullopt if nothing is there.
[[nodiscard]] std::optional<bool> isOwnFolder(const std::string& path);

/// `path` with all links resolved; nullopt if nothing is there.
[[nodiscard]] std::optional<std::string> resolvedPath(const std::string& path);

/// The target text of the link at `path`; nullopt if there is none.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string& path);

/// The names in an open folder, including hidden ones, sorted bytewise. Always from the start, independent of
/// any listing of `folder` in progress. Fails with the system's error.
[[nodiscard]] std::expected<std::vector<std::string>, std::error_code> entryNames(const Directory& folder);

/// The names in the folder at `path`, in the system's order. Empty if it cannot be listed.
[[nodiscard]] std::vector<std::string> listNames(const std::string& path);

/// The length in bytes of the regular file `name` in `folder`. nullopt for anything else, including links,
/// and for placeholders, whose contents would have to be fetched.
[[nodiscard]] std::optional<std::int64_t> fileLength(const Directory& folder, const std::string& name);

/// The first bytes, at most `count`, of a file that `fileLength` accepts; empty if they cannot be read.
[[nodiscard]] std::string fileBeginning(const Directory& folder, const std::string& name, std::size_t count);

/// The regular files below a folder, depth first in the system's order. Follows no link below the folder
/// itself, leaves no volume, enters no package, opens no file, and descends at most `maxLevels` folders, each
/// of which it keeps open. Skips whatever cannot be listed. Not thread-safe.
class FileSample {
public:
    struct File {
        std::string_view name;           ///< valid until the next call of `next`
        std::int64_t allocatedSize = 0;  ///< bytes allocated on disk; 0 if the system does not say
    };

    static constexpr std::size_t maxLevels = 256;

    explicit FileSample(const std::string& path, std::stop_token stop = {});
    ~FileSample();
    FileSample(const FileSample&) = delete;
    FileSample& operator=(const FileSample&) = delete;

    /// nullopt at the end, and soon after a stop request.
    [[nodiscard]] std::optional<File> next();

private:
    struct Walk;
    std::unique_ptr<Walk> walk_;
};

}  // namespace ulvak::platform
