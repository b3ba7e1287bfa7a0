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
    file,       ///< whatever holds bytes and is none of the others: sockets, FIFOs and devices too
    directory,  ///< a folder on the same volume
    volume,     ///< the mount point of another volume
    link,       ///< a symbolic link
};

/// What a listing asks the system about each entry.
enum class Attributes : std::uint8_t {
    listed,  ///< what the listing tells by itself: the name, and the kind where it knows that
    all,     ///< everything below; one more call for each entry on some systems
};

struct DirectoryEntry {
    /// The bytes of the name. Valid until the next entry is read.
    std::string_view name;
    /// Of what is only listed, `directory` and `link` are certain, and a `directory` may be a mount point.
    EntryKind kind = EntryKind::file;
    bool isRegularFile = false;  ///< for certain
    // The rest is absent from what is only listed.
    /// Bytes held on disk, files only; not the length: less when sparse, more for the last block.
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
    /// How many names a file has on its whole volume; 1 where the system does not say.
    std::uint32_t names = 1;
    // Which file it is; of those with several names only.
    std::uint32_t volume = 0;
    std::uint64_t number = 0;

    /// The name for system calls: in the reader's buffer a zero byte follows it.
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage)
    [[nodiscard]] const char* terminatedName() const { return name.data(); }
};

/// An open folder. Whatever is opened from it is found relative to it, however long its path has become
/// and whoever renames its parents. Move-only; closes itself. Safe to read from several threads.
class Directory {
public:
    Directory() = default;

    /// Follows links, as whoever names a folder by its path expects. Fails with the system's error.
    [[nodiscard]] static std::expected<Directory, std::error_code> open(const std::string& path);

    /// A folder below this one. `relativePath` is one name or several joined with "/", of any length, in
    /// a buffer that ends in a zero byte. Follows no link and enters no other volume, on the way or at
    /// the end: those fail, as a folder that has vanished does.
    [[nodiscard]] std::expected<Directory, std::error_code> openBelow(const char* relativePath) const;

    /// The folder that holds this one at this moment; whoever moves folders about can make that any folder.
    [[nodiscard]] std::expected<Directory, std::error_code> openParent() const;

    /// Absent when the system does not say.
    [[nodiscard]] std::optional<ItemIdentity> identity() const;

    /// Whether `path`, links followed, leads to this very folder now.
    [[nodiscard]] bool isAt(const std::string& path) const;

    [[nodiscard]] bool isOpen() const { return descriptor_.isOpen(); }
    void close() { descriptor_.close(); }

    /// The system's own handle, for the platform's calls; stays this object's.
    [[nodiscard]] int handle() const { return descriptor_.get(); }

private:
    /// Fails with what `errno` says when it is not open.
    [[nodiscard]] static std::expected<Directory, std::error_code> from(FileDescriptor descriptor);

    FileDescriptor descriptor_;
};

using NameSet = std::set<std::string, std::less<>>;

/// Lists folders one after the other, in the system's order, without "." and "..", and tells of each entry
/// what is asked for. Opens no entry, and reads on only as far as it is asked to. Keep one per thread: its
/// buffer is used again.
class EntryReader {
public:
    explicit EntryReader(Attributes asked = Attributes::all);
    ~EntryReader();
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    /// Starts over with `directory`, freshly opened, which must outlive the listing. A folder that is named
    /// in `excluded` (null for none) is passed over without asking the system about it.
    void start(const Directory& directory, const NameSet* excluded = nullptr);

    /// Takes turns in the listing that `first` has started: each piece of it comes to the reader that asks
    /// next. `first` may read on meanwhile in another thread, and starts nothing else for as long.
    void join(EntryReader& first);

    /// Which piece of the whole listing the last entry came from, counted from 0 in the system's order.
    [[nodiscard]] std::size_t piece() const { return piece_; }

    /// The next entry, or nothing at the end of the listing and after an error. An entry that the
    /// system does not describe is passed over; one that vanished after it was listed may be.
    [[nodiscard]] const DirectoryEntry* next();

    /// Why the listing ended early, if it did.
    [[nodiscard]] std::error_code error() const { return error_; }

    /// For whoever changes a folder while it is listed, of readers that ask for what is `listed`: reads one
    /// piece, from where the handle of `directory` stands, in place of any before. Seeking to 0 starts over.
    /// Whether there was one; a piece that cannot be understood as a whole is an error.
    [[nodiscard]] std::expected<bool, std::error_code> readPiece(const Directory& directory);

    /// The next entry of that piece; nothing at its end.
    [[nodiscard]] const DirectoryEntry* nextOfPiece();

private:
    struct Turns {
        std::mutex mutex;
        std::size_t taken = 0;
    };

    /// The next piece; false at the end of the listing and after an error.
    [[nodiscard]] bool fill();

    Attributes asked_;
    std::unique_ptr<std::byte[]> buffer_;
    std::size_t position_ = 0;
    std::size_t end_ = 0;
    int handle_ = -1;
    Turns own_;
    Turns* turns_ = &own_;  ///< of whoever has started the listing
    std::size_t piece_ = 0;
    const NameSet* excluded_ = nullptr;
    DirectoryEntry entry_;
    std::error_code error_;
};

/// How many folders this process can hold open beside those it has open now.
[[nodiscard]] std::size_t spareHandles();

/// Whether an error says that a folder's contents live elsewhere and would have had to be fetched.
[[nodiscard]] bool isDataless(std::error_code error);

/// Whether an error says that handles have run out, which another thread may mend at any moment.
[[nodiscard]] bool isOutOfHandles(std::error_code error);

/// Whether a folder of this name is a document or bundle that people see as one item: by what follows the
/// last dot of the name, whatever the case of its letters. The same on every system.
[[nodiscard]] bool isPackageName(std::string_view name);

}  // namespace ulvak::platform
