#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/file_descriptor.h"
#include "platform/file_time.h"
#include "platform/files.h"

namespace ulvak::platform {

enum class EntryKind : std::uint8_t {
    file,       ///< anything with bytes that is none of the others; includes sockets, FIFOs and devices
    directory,  ///< a folder on the same volume
    volume,     ///< the mount point of another volume
    link,       ///< a symbolic link
};

/// What a listing queries about each entry.
enum class Attributes : std::uint8_t {
    listed,  ///< what the listing itself provides: the name, and the kind if known
    all,     ///< all fields; costs one more call per entry on some systems
};

struct DirectoryEntry {
    /// The bytes of the name. Valid until the next entry is read.
    std::string_view name;
    /// With `listed`, only `directory` and `link` are certain, and a `directory` may be a mount point.
    EntryKind kind = EntryKind::file;
    bool isRegularFile = false;  ///< true only if certain
    // The remaining fields are not set with `listed`.
    /// Bytes allocated on disk, files only. Not the length: less when sparse, more for the last block.
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
    /// Hard links of a file on its whole volume; 1 if the system does not say.
    std::uint32_t names = 1;
    // File identity; only set for files with several hard links.
    std::uint32_t volume = 0;
    std::uint64_t number = 0;

    /// The name for system calls: NUL-terminated in the reader's buffer.
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage)
    [[nodiscard]] const char* terminatedName() const { return name.data(); }
};

/// An open folder. Everything is opened relative to it, no matter how long its path has become or who renames
/// its parents. Move-only; closes itself. Concurrent reads are thread-safe.
class Directory {
public:
    Directory() = default;

    /// Follows links, as expected when a folder is named by its path. Fails with the system's error.
    [[nodiscard]] static std::expected<Directory, std::error_code> open(const std::string& path);

    /// Opens a folder below this one. `relativePath` is one or more names joined with "/", of any length,
    /// NUL-terminated. Follows no link and enters no other volume, neither on the way nor at the end: both
    /// fail, as does a folder that has vanished.
    [[nodiscard]] std::expected<Directory, std::error_code> openBelow(const char* relativePath) const;

    /// The current parent of this folder; if others move folders around, that can be any folder.
    [[nodiscard]] std::expected<Directory, std::error_code> openParent() const;

    /// nullopt if the system does not say.
    [[nodiscard]] std::optional<ItemIdentity> identity() const;

    /// Whether `path`, with links followed, currently leads to this very folder.
    [[nodiscard]] bool isAt(const std::string& path) const;

    [[nodiscard]] bool isOpen() const { return descriptor_.isOpen(); }
    void close() { descriptor_.close(); }

    /// The system handle, for platform calls; still owned by this object.
    [[nodiscard]] int handle() const { return descriptor_.get(); }

private:
    /// Fails with `errno` if it is not open.
    [[nodiscard]] static std::expected<Directory, std::error_code> from(FileDescriptor descriptor);

    FileDescriptor descriptor_;
};

using NameSet = std::set<std::string, std::less<>>;

/// Lists folders one after the other, in the system's order, without "." and "..". Opens no entry, and reads
/// only as far as requested. Keep one per thread: the buffer is reused.
class EntryReader {
public:
    explicit EntryReader(Attributes asked = Attributes::all);
    ~EntryReader();
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    /// Starts listing `directory`, freshly opened, which must outlive the listing. Folders named in
    /// `excluded` (null for none) are skipped without querying the system about them.
    void start(const Directory& directory, const NameSet* excluded = nullptr);

    /// Shares the listing started by `first`: each piece goes to the reader that asks next. Meanwhile `first`
    /// may continue reading on another thread, but must not start another listing.
    void join(EntryReader& first);

    /// Which piece of the whole listing the last entry came from, counted from 0 in the system's order.
    [[nodiscard]] std::size_t piece() const { return piece_; }

    /// The next entry; null at the end of the listing and after an error. Skips entries that the system does
    /// not describe, and possibly entries that vanished after they were listed.
    [[nodiscard]] const DirectoryEntry* next();

    /// Why the listing ended early, if it did.
    [[nodiscard]] std::error_code error() const { return error_; }

    /// For callers that change a folder while listing it, with `Attributes::listed`: reads one piece from the
    /// current position of `directory`'s handle, replacing any earlier piece. Seeking to 0 starts over.
    /// Returns false at the end. A piece that cannot be fully parsed is an error.
    [[nodiscard]] std::expected<bool, std::error_code> readPiece(const Directory& directory);

    /// The next entry of that piece; null at its end.
    [[nodiscard]] const DirectoryEntry* nextOfPiece();

private:
    struct Turns {
        std::mutex mutex;
        std::size_t taken = 0;
    };

    /// Reads the next piece; false at the end of the listing and after an error.
    [[nodiscard]] bool fill();

    Attributes asked_;
    std::unique_ptr<std::byte[]> buffer_;
    std::size_t position_ = 0;
    std::size_t end_ = 0;
    int handle_ = -1;
    Turns own_;
    Turns* turns_ = &own_;  ///< of the reader that started the listing
    std::size_t piece_ = 0;
    const NameSet* excluded_ = nullptr;
    DirectoryEntry entry_;
    std::error_code error_;
};

/// How many more folders this process can hold open.
[[nodiscard]] std::size_t spareHandles();

/// Whether an error means that a folder is dataless: its contents are remote and would have to be fetched.
[[nodiscard]] bool isDataless(std::error_code error);

/// Whether an error means that handles have run out, which another thread may remedy at any moment.
[[nodiscard]] bool isOutOfHandles(std::error_code error);

/// Whether a folder of this name is a document or bundle that is shown as a single item. Judged by the
/// extension, case-insensitively. The same on every system.
[[nodiscard]] bool isPackageName(std::string_view name);

}  // namespace ulvak::platform
