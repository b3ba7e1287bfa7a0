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

/// Looks at single places and folders. Nothing here writes, waits for what is neither a folder nor a regular
/// file, or fetches contents that live elsewhere; and where the system lets the user ask for it, nothing here
/// renews an access date. Paths and names are bytes. Safe from any thread; blocks while the disk answers.
namespace ulvak::platform {

class Directory;

/// The number of a volume, and that of a file or folder on it: two names with the same are one.
using FileNumber = std::pair<std::uint64_t, std::uint64_t>;

/// What tells an item or an open folder from whatever else takes its name. A file system gives a number that
/// has become free to the next file, so the date of birth belongs to it where the system knows that.
struct ItemIdentity {
    FileNumber number;
    std::optional<FileTime> born;

    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;
};

/// A change to the disk that failed, as the system reported it.
struct FileError {
    std::error_code code;  ///< `std::generic_category` wherever the system gave a number
    std::string path;      ///< what it failed at, bytes
    std::string detail;    ///< the service's own words, for people; empty when there is only the code
};

/// For as long as one lives, what this thread reads renews no access date and fetches nothing that lives
/// elsewhere, where that is asked for thread by thread and not file by file. Every call of the platform that
/// looks at what the user keeps has one of its own; one around many of them saves each the asking. They nest.
class QuietAccess {
public:
    QuietAccess();
    ~QuietAccess();  // NOLINT(performance-trivially-destructible): not on every system
    QuietAccess(const QuietAccess&) = delete;
    QuietAccess& operator=(const QuietAccess&) = delete;
};

struct FileInfo {
    bool isDirectory = false;
    /// Bytes held on disk (not the length); 0 when the system does not say.
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
    FileNumber volumeAndNumber;
    std::uint64_t names = 1;  ///< of a file, wherever they are
};

/// What is at `path`; a symbolic link is followed. Absent when nothing is there, when a link leads
/// nowhere, or when this user may not look.
[[nodiscard]] std::optional<FileInfo> fileInfo(const std::string& path);

/// When the item was last read or listed; a link is followed. Absent when the system does not say.
[[nodiscard]] std::optional<FileTime> lastAccess(const std::string& path);

/// Whether there is something named `name` in `folder`. A link there counts when what it leads to exists, but
/// not when that lies on another volume which may never answer: a server that is gone must not be waited for.
[[nodiscard]] bool existsIn(const std::string& folder, const std::string& name);

/// Whether what is at `path` is a folder of this user's and no link. Absent when nothing is there.
[[nodiscard]] std::optional<bool> isOwnFolder(const std::string& path);

/// `path` with every link on the way resolved; absent when nothing is there.
[[nodiscard]] std::optional<std::string> resolvedPath(const std::string& path);

/// What the link at `path` says; absent when none is there.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string& path);

/// The names in an open folder, hidden ones included, sorted by their bytes. From the start, wherever a
/// listing of `folder` stands. Fails with the system's error.
[[nodiscard]] std::expected<std::vector<std::string>, std::error_code> entryNames(const Directory& folder);

/// The same of the folder at `path`, in the system's order. Empty when it cannot be listed.
[[nodiscard]] std::vector<std::string> listNames(const std::string& path);

/// How many bytes the regular file `name` of `folder` holds. Absent for anything else, links included, and
/// for a placeholder, whose contents would have to be fetched.
[[nodiscard]] std::optional<std::int64_t> fileLength(const Directory& folder, const std::string& name);

/// The first bytes, at most `count`, of what `fileLength` knows; empty when they cannot be read.
[[nodiscard]] std::string fileBeginning(const Directory& folder, const std::string& name, std::size_t count);

/// The regular files below a folder, folders entered where they stand in the system's order. Follows no link
/// below the folder itself, leaves no volume, enters no package, opens no file, and goes at most `maxLevels`
/// folders deep, each of which it holds open. What cannot be listed is passed over. For one thread at a time.
class FileSample {
public:
    struct File {
        std::string_view name;           ///< valid until the next call of `next`
        std::int64_t allocatedSize = 0;  ///< bytes held on disk; 0 when the system does not say
    };

    static constexpr std::size_t maxLevels = 256;

    explicit FileSample(const std::string& path, std::stop_token stop = {});
    ~FileSample();
    FileSample(const FileSample&) = delete;
    FileSample& operator=(const FileSample&) = delete;

    /// Nothing at the end, and soon after a stop was asked for.
    [[nodiscard]] std::optional<File> next();

private:
    struct Walk;
    std::unique_ptr<Walk> walk_;
};

}  // namespace ulvak::platform
